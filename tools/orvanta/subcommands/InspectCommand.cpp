#include "subcommands/InspectCommand.h"

#include "subcommands/OptionGroups.h"
#include "terminal/Messages.h"
#include "writing/Inspection.h"
#include "writing/Output.h"
#include "writing/PlanReport.h"

namespace OrvantaNS::command {

namespace {

class InspectCommand : public Subcommand {
public:
    InspectCommand()
        : Subcommand("inspect", "Print what the value engine or the director makes of a recording",
                     "  orvanta inspect session.jsonl --size 640x400 --format json -o stages.json\n"
                     "  orvanta inspect session.jsonl --size 640x400 --engine director --calm 2") {}

protected:
    void addOptions(CLI::App& app) override {
        recording_.addTo(app);
        size_.addTo(app);
        fade_.addTo(app);
        clip_.addTo(app);
        engine_.addTo(app);
        output_.addTo(app);
    }

    bool speaksJson() const override { return output_.isJson(); }
    ExitStatus run() override {
        RequestOptions request;
        request.size = size_.value();
        request.fadeSeconds = fade_.value();
        request.clip = clip_.value();
        request.engine = engine_.value();
        if (request.engine == EngineChoice::Voting) {
            throw OptionError("the voting engine has no stages to inspect; ask the value engine or the director");
        }
        output_.output.check(recording_);
        Recording recording = recording_.read();
        completeRequest(recording, request);
        if (request.engine == EngineChoice::Director) {
            const DirectorPlan plan = askPlan(recording.params, request.engine.director);
            writeOutput(output_.output.path, output_.isJson() ? planJson(plan, recording) : planText(plan, recording));
        } else {
            inspect(recording);
        }
        return kDone;
    }

private:
    void inspect(const Recording& recording) const {
        Inspection inspection;
        try {
            OV_DATA_STORE store;
            runStages(recording.params, store, [&inspection](OV_PIPELINE_STAGE stage, const OV_DATA_STORE& reached) {
                keepStage(inspection, stage, reached);
            });
        } catch (const OrvantaException& failure) {
            inspection.failure = failure.what();
            if (failure.errorCode() == OVERR_NO_KEYFRAMES && !recording_.strict) {
                // No failure to a user: the whole recording stays on show.
                const KeyframeAnswer answer = wholeRecordingAnswer(recording);
                tellNote(answer.remark);
                inspection.keyframes = answer.keyframes;
                write(inspection, recording);
                return;
            }
            if (isStandardOutput(output_.output.path)) {
                // The stages before a failure are what tells why it came.
                write(inspection, recording);
            }
            throw;
        }
        write(inspection, recording);
    }

    void write(const Inspection& inspection, const Recording& recording) const {
        writeOutput(output_.output.path,
                    output_.isJson() ? inspectionJson(inspection, recording) : inspectionText(inspection, recording));
    }

    RecordingArgument recording_;
    SizeArgument size_;
    FadeArgument fade_;
    ClipArgument clip_;
    EngineArgument engine_;
    TextOutputArguments output_;
};

} // namespace

std::unique_ptr<Subcommand> makeInspectCommand() { return std::make_unique<InspectCommand>(); }

} // namespace OrvantaNS::command
