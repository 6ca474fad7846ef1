// What the process ends with.
#pragma once

namespace OrvantaNS::command {

enum ExitStatus : int {
    kDone = 0,
    kFailed = 1,        ///< The engine failed or has no answer, or the result could not be written.
    kBadInput = 2,      ///< The recording or an option cannot be used.
    kInterrupted = 130, ///< Ctrl-C: 128 and the signal's number, as shells have it.
};

} // namespace OrvantaNS::command
