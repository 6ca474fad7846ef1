#include "terminal/Interrupt.h"

#include <csignal>

#if defined(__unix__) || defined(__APPLE__)
#define ORVANTA_HAS_SIGACTION
#endif

namespace OrvantaNS::command {

namespace {

volatile std::sig_atomic_t interruptFlag = 0;

extern "C" void raiseInterruptFlag(int signal) { interruptFlag = signal; }

} // namespace

void catchInterrupts() {
#if defined(ORVANTA_HAS_SIGACTION)
    struct sigaction action = {};
    action.sa_handler = raiseInterruptFlag;
    sigemptyset(&action.sa_mask);
    // Without SA_RESTART whatever waits for input returns. The handler serves once: the second Ctrl-C is the system's.
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigaction(SIGINT, &action, nullptr);
    for (const int signal : {SIGTERM, SIGHUP}) {
        struct sigaction before = {};
        // Whoever ignores them, as nohup does, wants the run to outlive them.
        if (sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN) {
            sigaction(signal, &action, nullptr);
        }
    }
#else
    std::signal(SIGINT, raiseInterruptFlag);
#endif
}

int interruptSignal() { return static_cast<int>(interruptFlag); }

bool interrupted() { return interruptFlag != 0; }

void throwIfInterrupted() {
    if (interrupted()) {
        throw Interrupted();
    }
}

} // namespace OrvantaNS::command
