// What becomes of exceptions: a message and an exit status.
#pragma once

#include "terminal/Messages.h"

namespace OrvantaNS::command {

/// What the exception in flight means for the user. To be called from a handler.
Failure currentFailure();

} // namespace OrvantaNS::command
