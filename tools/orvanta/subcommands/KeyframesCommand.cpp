#include "subcommands/KeyframesCommand.h"

#include <utility>

#include "subcommands/OptionGroups.h"
#include "terminal/Messages.h"
#include "writing/Output.h"

namespace OrvantaNS::command {

namespace {

class KeyframesCommand : public Subcommand {
public:
    KeyframesCommand()
        : Subcommand("keyframes", "Print where the camera stands over the whole clip",
                     "  orvanta keyframes session.jsonl --size 640x400 --format csv -o keyframes.csv") {}

protected:
    void addOptions(CLI::App& app) override {
        recording_.addTo(app);
        request_.addTo(app);
        output_.addTo(app);
    }

    bool speaksJson() const override { return output_.value().name == "json"; }
    ExitStatus run() override {
        const RequestOptions request = request_.value();
        refuseOverwriting(output_.output.path, recording_.path);
        Recording recording = recording_.read();
        completeRequest(recording, request);
        KeyframeAnswer answer = answerKeyframes(recording, request.engine);
        if (!answer.remark.empty()) {
            if (recording_.strict) {
                throw NoAnswer(answer.remark);
            }
            tellNote(answer.remark);
        }
        const bool hasReasons = request.engine != EngineChoice::Voting || !answer.remark.empty();
        output_.write({recording, request.engine, std::move(answer.keyframes), hasReasons});
        return kDone;
    }

private:
    RecordingArgument recording_;
    RequestArguments request_;
    KeyframeOutputArguments output_;
};

} // namespace

std::unique_ptr<Subcommand> makeKeyframesCommand() { return std::make_unique<KeyframesCommand>(); }

} // namespace OrvantaNS::command
