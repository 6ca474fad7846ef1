// The command `orvanta`.
#include "subcommands/CommandLine.h"
#include "terminal/PlainStreams.h"

int main(int argc, char** argv) {
    const OrvantaNS::command::PlainStreams streams;
    return OrvantaNS::command::CommandLine().run(argc, argv);
}
