// Ctrl-C, and a system that ends the process, as a question that can be asked at any time.
#pragma once

#include <stdexcept>

namespace OrvantaNS::command {

/// The run was stopped by Ctrl-C, or by a signal that asks the process to end.
class Interrupted : public std::runtime_error {
public:
    Interrupted() : std::runtime_error("cancelled") {}
};

/// From here on the first Ctrl-C (or SIGTERM, or SIGHUP unless it is ignored) only raises the flag and ends a blocking read;
/// the second one ends the process.
void catchInterrupts();

/// The signal that was caught; 0 for none.
int interruptSignal();

/// True once Ctrl-C was pressed.
bool interrupted();

/// Throws `Interrupted` once Ctrl-C was pressed.
void throwIfInterrupted();

} // namespace OrvantaNS::command
