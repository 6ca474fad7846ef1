#include "subcommands/KeyframesCommand.h"

#include "subcommands/OptionGroups.h"
#include "writing/Output.h"

namespace OrvantaNS::command {

namespace {

class KeyframesCommand : public Subcommand {
public:
    KeyframesCommand()
        : Subcommand("keyframes", "Print where the camera stands over the whole clip",
                     "  orvanta keyframes session.jsonl --size 640x400 --format csv -o keyframes.csv") {}

    ExitStatus run() override {
        const RequestOptions request = request_.value();
        refuseOverwriting(output_.output.path, recording_.path);
        Recording recording = recording_.read();
        completeRequest(recording, request);
        output_.write({recording, request.engine, askKeyframes(recording.params, request.engine),
                       request.engine == EngineChoice::Value});
        return kDone;
    }

protected:
    void addOptions(CLI::App& app) override {
        recording_.addTo(app);
        request_.addTo(app);
        output_.addTo(app);
    }

private:
    RecordingArgument recording_;
    RequestArguments request_;
    KeyframeOutputArguments output_;
};

} // namespace

std::unique_ptr<Subcommand> makeKeyframesCommand() { return std::make_unique<KeyframesCommand>(); }

} // namespace OrvantaNS::command
