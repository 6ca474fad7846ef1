// The command `orvanta`.
#include "subcommands/CommandLine.h"

int main(int argc, char** argv) { return OrvantaNS::command::CommandLine().run(argc, argv); }
