// Ctrl-C, as a question that can be asked at any time.
#pragma once

#include <stdexcept>

namespace OrvantaNS::command {

/// The run was stopped by Ctrl-C.
class Interrupted : public std::runtime_error {
public:
    Interrupted() : std::runtime_error("cancelled") {}
};

/// From here on the first Ctrl-C only raises the flag and ends a blocking read; the second one ends the process.
void catchInterrupts();

/// True once Ctrl-C was pressed.
bool interrupted();

/// Throws `Interrupted` once Ctrl-C was pressed.
void throwIfInterrupted();

} // namespace OrvantaNS::command
