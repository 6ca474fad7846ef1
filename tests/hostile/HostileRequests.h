// Requests and reporters for the tests of what a broken or hostile host can send.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "OrvantaException.h"
#include "OrvantaRecords.h"
#include "Params.h"
#include "ProgressReporter.h"
#include "frame/WrappingArithmetic.h"

namespace OrvantaNS::testing {

/// Counts its calls and asks to stop at one of them.
class CountingReporter : public ProgressReporter {
public:
    /// `cancelAt` counts from 1; 0 never asks to stop.
    explicit CountingReporter(std::uint64_t cancelAt = 0) : cancelAt_(cancelAt) {}

    bool isCancelled() override {
        ++asked;
        return asked == cancelAt_;
    }
    void reportProgress(double percent) override { percentages.push_back(percent); }

    std::uint64_t asked = 0;
    std::vector<double> percentages;

private:
    std::uint64_t cancelAt_;
};

/// Wants to stop once `patience` has passed, and notes when it was asked for the first time after that.
class ImpatientReporter : public ProgressReporter {
public:
    using Clock = std::chrono::steady_clock;

    explicit ImpatientReporter(std::chrono::milliseconds patience) : wish_(Clock::now() + patience) {}

    bool isCancelled() override { return Clock::now() >= wish_; }
    void reportProgress(double) override {}

    /// Seconds from the wish to now.
    double secondsSinceWish() const { return std::chrono::duration<double>(Clock::now() - wish_).count(); }

private:
    Clock::time_point wish_;
};

/// The code with which `question` fails; none when it answers. Anything but the library's exception goes through.
inline std::optional<OVERR_CODES> codeOf(const std::function<void()>& question) {
    try {
        question();
    } catch (const OrvantaException& error) {
        return error.errorCode();
    }
    return std::nullopt;
}

/// Two windows that take turns every 5 seconds, strokes, clicks and changes in them, from tick `start` on for `seconds`
/// at `scale` ticks per second. Gives slices that merge.
inline Params busyRequest(long long start, double seconds, double scale) {
    Params params;
    params.setTimeScale(scale).setTargetWidth(640).setTargetHeight(400);
    const auto at = [&](double s) { return wrapAdd(start, truncateToInt64(s * scale)); };
    params.setFadeDuration(truncateToInt64(scale));
    params.setClipInterval(start, at(seconds));
    params.recordingRegions().push_back({start, {0, 1280, 0, 800}});
    for (double s = 0.5; s + 5.0 < seconds; s += 5.0) {
        const bool left = static_cast<long long>(s / 5.0) % 2 == 0;
        const std::int32_t x = left ? 0 : 700;
        const Rectangle window{x, x + 500, 100, 700};
        for (double w = 0.0; w < 4.9; w += 0.2) {
            params.foreWindows().push_back({at(s + w), window});
        }
        for (int i = 0; i < 20; ++i) {
            params.cursorLocations().push_back({at(s + 1.0 + i * 0.03), x + 10 + i * 15, 200 + i * 10});
        }
        params.cursorActions().push_back({at(s + 2.0), 0});
        params.cursorActions().push_back({at(s + 2.1), 1});
        for (double d = 2.0; d < 4.0; d += 0.25) {
            params.dirtyRects().push_back({at(s + d), {x + 250, x + 420, 350, 480}});
            params.dirtyRects().push_back({at(s + d), {x + 250, x + 420, 350, 480}});
        }
    }
    return params;
}

} // namespace OrvantaNS::testing
