// Writes the man pages and the shell completions of `orvanta` into a folder, at build time.
#include <exception>
#include <string>

#include <fmt/format.h>

#include "subcommands/CommandLine.h"
#include "subcommands/Documents.h"
#include "writing/Output.h"
#include "writing/ToolVersion.h"

int main(int argc, char** argv) {
    using namespace OrvantaNS::command;
    if (argc != 2) {
        fmt::print(stderr, "usage: orvanta_documents FOLDER\n");
        return 2;
    }
    try {
        const std::string folder = std::string(argv[1]) + "/";
        const CommandLine line;
        writeOutput(folder + "orvanta.1", manPage(line.app(), line.app(), toolVersion()));
        for (const CLI::App* app : line.app().get_subcommands({})) {
            writeOutput(folder + "orvanta-" + app->get_name() + ".1", manPage(line.app(), *app, toolVersion()));
        }
        writeOutput(folder + "orvanta.bash", bashCompletion(line.app()));
        writeOutput(folder + "_orvanta", zshCompletion(line.app()));
        writeOutput(folder + "orvanta.fish", fishCompletion(line.app()));
        return 0;
    } catch (const std::exception& error) {
        fmt::print(stderr, "orvanta_documents: {}\n", error.what());
        return 1;
    }
}
