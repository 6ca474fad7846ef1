#include "subcommands/KeyframesCommand.h"

#include "asking/Planning.h"
#include "reading/PathFile.h"
#include "subcommands/PathOptions.h"
#include "terminal/Messages.h"
#include "writing/Output.h"

namespace OrvantaNS::command {

namespace {

class KeyframesCommand : public Subcommand {
public:
    KeyframesCommand()
        : Subcommand("keyframes", "Print where the camera stands over the whole clip",
                     "  orvanta keyframes session.jsonl --size 640x400 --format csv -o keyframes.csv\n"
                     "  orvanta keyframes session.jsonl --size 9:16 --whole 30:34 -o path.json\n"
                     "  orvanta keyframes --path path.json --sample 30 -o frames.csv") {}

protected:
    void addOptions(CLI::App& app) override {
        recording_.addTo(app);
        app.get_option("RECORDING")->required(false);
        request_.addTo(app);
        easing_.addTo(app);
        wishes_.addTo(app);
        CLI::Option* const path =
            app.add_option("--path", path_, "Take this camera path in JSON instead of asking an engine")
                ->type_name("FILE");
        for (const char* const other : {"RECORDING", "--size", "--fade", "--clip", "--engine"}) {
            path->excludes(app.get_option(other));
        }
        output_.addTo(app);
        app.parse_complete_callback([this] {
            if (recording_.path.empty() && path_.empty()) {
                throw CLI::RequiredError("RECORDING (or --path)");
            }
        });
    }

    bool speaksJson() const override { return output_.value().name == "json"; }

    ExitStatus run() override {
        output_.options(); // A wrong option is told before the work, not after it.
        CameraPlan plan = path_.empty() ? planned() : readBack();
        wishes_.layOver(plan);
        output_.write(plan);
        return kDone;
    }

private:
    CameraPlan planned() {
        const RequestOptions request = request_.value();
        const auto easing = easing_.value();
        refuseOverwriting(output_.output.path, recording_.path);
        Recording recording = recording_.read();
        completeRequest(recording, request);
        const KeyframeAnswer answer = answerKeyframes(recording, request.engine);
        if (!answer.remark.empty()) {
            if (recording_.strict) {
                throw NoAnswer(answer.remark);
            }
            tellNote(answer.remark);
        }
        return planOf(recording, request.engine, answer.keyframes, easing.value_or(CameraEasing()));
    }

    CameraPlan readBack() {
        const auto easing = easing_.value();
        CameraPlan plan = readPathFile(path_);
        plan.setup.easing = easing.value_or(plan.setup.easing);
        return plan;
    }

    RecordingArgument recording_;
    RequestArguments request_;
    EasingArgument easing_;
    WishesArguments wishes_;
    std::string path_;
    PathOutputArguments output_;
};

} // namespace

std::unique_ptr<Subcommand> makeKeyframesCommand() { return std::make_unique<KeyframesCommand>(); }

} // namespace OrvantaNS::command
