// Builds requests and stores for tests, benchmarks and examples in a few readable words.
#pragma once

#include <initializer_list>
#include <utility>
#include <vector>

#include "Params.h"
#include "frame/DataStore.h"

namespace OrvantaNS::testing {

/// A rectangle in the order people say it: corner and size, not the record's left, right, top, bottom.
constexpr Rectangle box(std::int32_t x, std::int32_t y, std::int32_t w, std::int32_t h) { return {x, x + w, y, y + h}; }

/// A box whose four numbers are worked out in this order, which the arguments of a function need not be: for random
/// ones.
struct OrderedBox {
    std::int32_t x;
    std::int32_t y;
    std::int32_t w;
    std::int32_t h;
};
constexpr Rectangle box(const OrderedBox& numbers) { return box(numbers.x, numbers.y, numbers.w, numbers.h); }

/// A request under construction. Times are in seconds of the request's clock; calls chain:
/// `recording().cursor(0.5, 100, 100).click(1.0)`.
class Scene {
public:
    /// A request of `size`-large recording from 0 to 60 seconds at 1000 ticks a second, target 640 by 400, fade 1 s.
    explicit Scene(std::int32_t width = 1280, std::int32_t height = 800) {
        params_.setTimeScale(1000.0).setTargetWidth(640).setTargetHeight(400).setFadeDuration(1000);
        params_.setClipInterval(0, 60000);
        params_.recordingRegions().push_back({0, {0, width, 0, height}});
    }

    Scene& length(double seconds) {
        params_.setClipInterval(0, ticks(seconds));
        return *this;
    }
    Scene& target(int width, int height) {
        params_.setTargetWidth(width).setTargetHeight(height);
        return *this;
    }
    Scene& fade(double seconds) {
        params_.setFadeDuration(ticks(seconds));
        return *this;
    }
    Scene& region(double time, Rectangle rect) {
        params_.recordingRegions().push_back({ticks(time), rect});
        return *this;
    }
    Scene& cursor(double time, std::int32_t x, std::int32_t y) {
        params_.cursorLocations().push_back({ticks(time), x, y});
        return *this;
    }
    Scene& action(double time, std::int32_t code) {
        params_.cursorActions().push_back({ticks(time), code});
        return *this;
    }
    /// A press of the first button at `time` and its release 0.1 s later.
    Scene& click(double time) { return action(time, 0).action(time + 0.1, 1); }
    Scene& window(double time, Rectangle rect) {
        params_.foreWindows().push_back({ticks(time), rect});
        return *this;
    }
    Scene& dirty(double time, Rectangle rect) {
        params_.dirtyRects().push_back({ticks(time), rect});
        return *this;
    }
    Scene& caret(double time, Rectangle rect) {
        params_.caretRects().push_back({ticks(time), rect});
        return *this;
    }

    Params& params() { return params_; }
    const Params& params() const { return params_; }
    operator const Params&() const { return params_; }

private:
    static long long ticks(double seconds) {
        return static_cast<long long>(seconds * 1000.0 + (seconds < 0 ? -0.5 : 0.5));
    }

    Params params_;
};

inline Scene recording(std::int32_t width = 1280, std::int32_t height = 800) { return Scene(width, height); }

/// A store whose value objects have the given rectangles, with type, times and value as a trigger object's of 1 s.
inline OV_DATA_STORE storeOf(std::initializer_list<Rectangle> rects) {
    OV_DATA_STORE store;
    for (const Rectangle& rect : rects) {
        store.valueObjects.push_back({Click, 0.0, 1.0, rect, 0.0});
    }
    return store;
}

} // namespace OrvantaNS::testing
