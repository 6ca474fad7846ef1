// What the process is connected to.
#pragma once

#include <cstdio>

namespace OrvantaNS::command {

/// True when the standard output is a terminal.
bool outputIsTerminal();

/// The standard error when it is a terminal that can redraw a line, else null: `TERM=dumb` cannot.
std::FILE* progressTerminal();

/// Columns of the terminal that `file` is; 80 when it is none or does not tell.
int terminalColumns(std::FILE* file);

} // namespace OrvantaNS::command
