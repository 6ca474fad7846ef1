#include "subcommands/InfoCommand.h"

#include "subcommands/OptionGroups.h"
#include "writing/Info.h"
#include "writing/Output.h"

namespace OrvantaNS::command {

namespace {

class InfoCommand : public Subcommand {
public:
    InfoCommand()
        : Subcommand("info", "Print what a recording holds, and what is odd about it", "  orvanta info session.jsonl") {
    }

protected:
    void addOptions(CLI::App& app) override {
        recording_.addTo(app);
        output_.addTo(app);
    }

    bool speaksJson() const override { return output_.isJson(); }

    ExitStatus run() override {
        output_.output.check(recording_);
        const Recording recording = recording_.read();
        writeOutput(output_.output.path, output_.isJson() ? infoJson(recording) : infoText(recording));
        return kDone;
    }

private:
    RecordingArgument recording_;
    TextOutputArguments output_;
};

} // namespace

std::unique_ptr<Subcommand> makeInfoCommand() { return std::make_unique<InfoCommand>(); }

} // namespace OrvantaNS::command
