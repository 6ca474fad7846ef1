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
    void addOptions(CLI::App& app) override { recording_.addTo(app); }

    ExitStatus run() override {
        writeOutput({}, infoText(recording_.read()));
        return kDone;
    }

private:
    RecordingArgument recording_;
};

} // namespace

std::unique_ptr<Subcommand> makeInfoCommand() { return std::make_unique<InfoCommand>(); }

} // namespace OrvantaNS::command
