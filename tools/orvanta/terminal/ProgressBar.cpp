#include "terminal/ProgressBar.h"

#include <algorithm>

#include "terminal/Interrupt.h"

namespace OrvantaNS::command {

void ProgressBar::reportProgress(double percent) {
    // Written so that a value that is not a number changes nothing.
    if (percent >= 0.0) {
        furthest_ = std::max(furthest_, std::min(percent, 100.0));
        line_.show(furthest_ / 100.0);
    }
}

bool ProgressBar::isCancelled() { return interrupted(); }

} // namespace OrvantaNS::command
