#include "subcommands/Failures.h"

#include <exception>
#include <new>

#include <fmt/format.h>

#include "OrvantaException.h"
#include "asking/OptionError.h"
#include "reading/InputError.h"
#include "terminal/Interrupt.h"

namespace OrvantaNS::command {

namespace {

Failure inputFailure(const InputError& error) {
    const InputPlace& place = error.place();
    Failure failure{error.what(), kBadInput};
    failure.file = place.file;
    failure.line = place.line;
    failure.column = place.column;
    failure.excerpt = place.excerpt;
    failure.caret = place.caret;
    return failure;
}

/// The engines' own texts are for developers of hosts; these are for whoever typed the command.
std::string engineText(OVERR_CODES code) {
    switch (code) {
    case OVERR_BAD_TARGET_SIZE:
    case OVERR_TARGET_TOO_LARGE:
        return "the engine does not take this size for this recording";
    case OVERR_BAD_TIME_SCALE:
        return "the engine does not take the recording's time scale";
    case OVERR_BAD_REGION:
        return "the engine finds no recording region or window that it can work with";
    case OVERR_NO_LIVE_ZONES:
        return "no stretch of the clip is left to work on: it is too short, or the recorded region changes too often";
    case OVERR_MERGE_FAILED:
        return "the engine met a state that it cannot handle; please report it together with the recording";
    case OVERR_NO_KEYFRAMES:
        return "there is no keyframe: the whole recording stays on show";
    case OVERR_USER_CANCELLED:
        break;
    }
    return "cancelled";
}

} // namespace

Failure currentFailure() {
    try {
        throw;
    } catch (const InputError& error) {
        return inputFailure(error);
    } catch (const OptionError& error) {
        return {error.what(), kBadInput};
    } catch (const Interrupted& error) {
        // 128 and the signal's number, as shells have it; Ctrl-C gives 130.
        constexpr int kSignalBase = 128;
        const int signal = interruptSignal();
        return {error.what(), signal == 0 ? kInterrupted : static_cast<ExitStatus>(kSignalBase + signal)};
    } catch (const OrvantaException& error) {
        const int code = static_cast<int>(error.errorCode());
        return {fmt::format("{} (code {})", engineText(error.errorCode()), code), kFailed, code};
    } catch (const std::bad_alloc&) {
        return {"out of memory", kFailed};
    } catch (const std::exception& error) {
        return {error.what(), kFailed};
    }
}

} // namespace OrvantaNS::command
