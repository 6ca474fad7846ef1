#include "RequestDecoder.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "frame/Geometry.h"
#include "frame/TimeModel.h"
#include "frame/WrappingArithmetic.h"

namespace OrvantaNS::fuzz {

namespace {

// What one step of the input's little program does.
enum Operation : std::uint8_t {
    kCursor,
    kCursorStep,
    kPress,
    kRelease,
    kClick,
    kDrag,
    kWindow,
    kWindowRun,
    kDirty,
    kDirtyRun,
    kCaret,
    kRegion,
    kWheel,
    kOddAction,
    kStroke,
    kPause,
    kJump,
    kInvalidWindow,
    kOperationCount,
};

// Pixels and tame targets stay below this, so that no product of two of them comes near 32 bits.
constexpr std::int32_t kTamePixels = 1 << 14;

class Decoder {
public:
    explicit Decoder(ByteReader& bytes) : bytes_(bytes) {}

    DecodedRequest decode() {
        head();
        while (!bytes_.empty()) {
            step();
        }
        finish();
        return request_;
    }

private:
    void head() {
        Params& params = request_.params;
        region_ = {0, 1280, 0, 800};
        const std::uint8_t form = bytes_.u8();
        params.setTargetWidth(form % 4 == 0 ? bytes_.coordinate() : 640);
        params.setTargetHeight(form % 4 == 0 ? bytes_.coordinate() : (form % 4 == 1 ? 400 : 1136));
        params.setWindowsFlag((form & 4) != 0);
        params.setTimeScale(bytes_.timeScale());
        fade_ = bytes_.u8();
        clip_ = bytes_.u8();
        request_.cancelAfter = (form & 8) != 0 ? bytes_.u16() : 0;
        if ((form & 16) != 0) {
            region_ = rectangle();
        }
        if ((form & 32) == 0) {
            params.recordingRegions().push_back({0, region_});
        }
    }

    // Ticks of some seconds, however odd the scale; at least one tick when the seconds are not 0.
    long long ticks(double seconds) const {
        const double ticks = std::floor(seconds * request_.params.timeScale());
        const long long whole = std::fabs(ticks) < 1e17 ? static_cast<long long>(ticks) : 1000;
        return whole == 0 && seconds != 0.0 ? 1 : whole;
    }

    // Most events share a moment with another one or lie near one of the limits that rules have, seconds.
    void advance() {
        constexpr std::array<double, 16> kSteps{0.0,  0.0, 0.0, 0.016, 0.03, 0.1, 0.2, 0.25,
                                                0.26, 0.5, 0.6, 1.0,   1.5,  2.0, 3.0, 10.0};
        const std::uint8_t choice = bytes_.u8();
        const double seconds = kSteps[choice % kSteps.size()];
        time_ = wrapAdd(time_, ticks(seconds));
        switch (choice / kSteps.size()) {
        case 14:
            time_ = wrapAdd(time_, 1LL);
            break;
        case 15:
            time_ = wrapSub(time_, 1LL);
            break;
        default:
            break;
        }
        last_ = std::max(last_, time_);
    }

    Rectangle rectangle() {
        const std::uint8_t choice = bytes_.u8();
        Rectangle rect = previous_;
        if (choice < 96) {
            const std::int32_t x = bytes_.coordinate();
            const std::int32_t y = bytes_.coordinate();
            rect = {x, wrapAdd(x, std::int32_t{bytes_.u16() % 1024}), y, wrapAdd(y, std::int32_t{bytes_.u16() % 1024})};
        } else if (choice < 128) {
            // As before.
        } else if (choice < 160) {
            rect = grown(previous_, choice % 36 - 18);
        } else if (choice < 176) {
            rect = region_;
        } else if (choice < 208) {
            const std::int32_t dx = bytes_.i16() % 64;
            const std::int32_t dy = bytes_.i16() % 64;
            rect = relativeTo(previous_, dx, dy);
        } else if (choice < 224) {
            // A small thing around the cursor, such as a menu or a tooltip.
            rect = {x_, wrapAdd(x_, std::int32_t{bytes_.u8()}), y_, wrapAdd(y_, std::int32_t{bytes_.u8()})};
        } else if (choice < 232) {
            std::swap(rect.left, rect.right);
        } else if (choice < 236) {
            rect = {};
        } else {
            rect = {bytes_.coordinate(), bytes_.coordinate(), bytes_.coordinate(), bytes_.coordinate()};
        }
        previous_ = rect;
        return rect;
    }

    void cursorTo(std::int32_t x, std::int32_t y) {
        x_ = x;
        y_ = y;
        request_.params.cursorLocations().push_back({time_, x, y});
    }

    void action(std::int32_t code) { request_.params.cursorActions().push_back({time_, code}); }

    void step() {
        Params& params = request_.params;
        const auto operation = static_cast<Operation>(bytes_.u8() % kOperationCount);
        advance();
        switch (operation) {
        case kCursor: {
            const std::int32_t x = bytes_.coordinate();
            cursorTo(x, bytes_.coordinate());
            break;
        }
        case kCursorStep: {
            const std::uint8_t move = bytes_.u8();
            cursorTo(wrapAdd(x_, move % 16 - 8), wrapAdd(y_, move / 16 - 8));
            break;
        }
        case kPress:
            action(bytes_.u8() % 3 * 2);
            break;
        case kRelease:
            action(bytes_.u8() % 3 * 2 + 1);
            break;
        case kClick: {
            const std::int32_t code = bytes_.u8() % 3 * 2;
            action(code);
            time_ = wrapAdd(time_, ticks(0.1));
            action(code + 1);
            break;
        }
        case kDrag:
            action(0);
            stroke();
            action(1);
            break;
        case kWindow:
            params.foreWindows().push_back({time_, rectangle()});
            break;
        case kWindowRun:
            run(params.foreWindows());
            break;
        case kDirty:
            params.dirtyRects().push_back({time_, rectangle()});
            break;
        case kDirtyRun:
            run(params.dirtyRects());
            break;
        case kCaret:
            params.caretRects().push_back({time_, rectangle()});
            break;
        case kRegion:
            params.recordingRegions().push_back({time_, rectangle()});
            break;
        case kWheel:
            action(6 + bytes_.u8() % 2);
            break;
        case kOddAction:
            action(bytes_.u8() % 2 == 0 ? bytes_.coordinate() : bytes_.u8() % 16 - 4);
            break;
        case kStroke:
            stroke();
            break;
        case kPause:
            time_ = wrapAdd(time_, ticks(bytes_.u8() * 0.5));
            break;
        case kJump:
            time_ = bytes_.extremeTick();
            break;
        case kInvalidWindow:
            params.foreWindows().push_back({time_, bytes_.u8() % 2 == 0 ? Rectangle{} : Rectangle{9, 3, 8, 2}});
            break;
        case kOperationCount:
            break;
        }
        last_ = std::max(last_, time_);
    }

    // A hand's motion in even steps; two records a moment for the streams that read every second one.
    void stroke() {
        const std::int32_t x = bytes_.coordinate();
        const std::int32_t y = bytes_.coordinate();
        const int steps = 2 + bytes_.u8() % 16;
        const std::int64_t fromX = x_;
        const std::int64_t fromY = y_;
        for (int i = 0; i <= steps; ++i) {
            cursorTo(static_cast<std::int32_t>(fromX + (x - fromX) * i / steps),
                     static_cast<std::int32_t>(fromY + (y - fromY) * i / steps));
            time_ = wrapAdd(time_, ticks(0.033));
        }
    }

    void run(std::vector<OV_TIME_RECT>& stream) {
        Rectangle rect = rectangle();
        const std::uint8_t form = bytes_.u8();
        const std::int32_t drift = form % 8;
        for (int i = 0; i < 2 + form / 8; ++i) {
            stream.push_back({time_, rect});
            if ((form & 16) != 0) {
                stream.push_back({time_, rect});
            }
            rect = relativeTo(rect, -drift, -drift);
            time_ = wrapAdd(time_, ticks((form & 32) != 0 ? 0.1 : 0.3));
        }
    }

    void finish() {
        Params& params = request_.params;
        params.setFadeDuration(fade_ < 192 ? ticks(fade_ % 16 * 0.25) : (fade_ < 224 ? -ticks(2.0) : last_));
        const long long end = wrapAdd(last_, ticks(3.0));
        constexpr long long kHighest = std::numeric_limits<long long>::max();
        switch (clip_ % 16) {
        case 8:
            params.setClipInterval(end / 4, end);
            break;
        case 9:
            params.setClipInterval(end, 0);
            break;
        case 10:
            params.setClipInterval(end / 2, end / 2);
            break;
        case 11:
            params.setClipInterval(0, kHighest);
            break;
        case 12:
            params.setClipInterval(std::numeric_limits<long long>::lowest(), kHighest);
            break;
        case 13:
            params.setClipInterval(wrapSub(kHighest, ticks(60.0)), kHighest);
            break;
        case 14:
            params.setClipInterval(-ticks(20.0), end);
            break;
        case 15:
            break;
        default:
            params.setClipInterval(0, end);
            break;
        }
        request_.queryTime = clip_ < 224 ? end / 16 * (clip_ / 16) : (clip_ < 240 ? time_ : kHighest - clip_);
    }

    ByteReader& bytes_;
    DecodedRequest request_;
    Rectangle region_;
    Rectangle previous_{100, 400, 100, 300};
    long long time_ = 0;
    long long last_ = 0;
    std::int32_t x_ = 200;
    std::int32_t y_ = 200;
    std::uint8_t fade_ = 0;
    std::uint8_t clip_ = 0;
};

bool isTameRect(const Rectangle& rect) {
    return rect.left <= rect.right && rect.top <= rect.bottom && rect.left >= -kTamePixels &&
           rect.right <= kTamePixels && rect.top >= -kTamePixels && rect.bottom <= kTamePixels;
}

bool areTame(const std::vector<OV_TIME_RECT>& samples) {
    return std::all_of(samples.begin(), samples.end(),
                       [](const OV_TIME_RECT& sample) { return isTameRect(sample.rect); });
}

template <typename Sample> bool isSortedByTime(const std::vector<Sample>& samples) {
    return std::is_sorted(samples.begin(), samples.end(),
                          [](const Sample& a, const Sample& b) { return a.time < b.time; });
}

} // namespace

DecodedRequest decodeRequest(ByteReader& bytes) { return Decoder(bytes).decode(); }

double zoneSecondsBound(const Params& params) {
    const std::vector<OV_TIME_RECT>& regions = params.recordingRegions();
    double low = ticksToSeconds(params.clipStart(), params.timeScale());
    double high = low;
    const auto widen = [&](long long ticks) {
        const double seconds = ticksToSeconds(ticks, params.timeScale());
        low = std::min(low, seconds);
        high = std::max(high, seconds);
    };
    widen(params.clipStop());
    for (const OV_TIME_RECT& region : regions) {
        widen(region.time);
    }
    // A negative fade makes zones overlap by up to its length at both ends.
    const double fade = std::fabs(ticksToSeconds(params.fadeDuration(), params.timeScale()));
    return (high - low + 2.0 * fade) * static_cast<double>(regions.size());
}

bool isTame(const Params& params) {
    const auto isTamePoint = [](const OV_MOUSE_LOCATION& location) {
        return std::abs(static_cast<std::int64_t>(location.x)) <= kTamePixels &&
               std::abs(static_cast<std::int64_t>(location.y)) <= kTamePixels;
    };
    return areTame(params.foreWindows()) && areTame(params.dirtyRects()) && areTame(params.recordingRegions()) &&
           std::all_of(params.cursorLocations().begin(), params.cursorLocations().end(), isTamePoint) &&
           params.targetWidth() >= 1 && params.targetWidth() <= kTamePixels && params.targetHeight() >= 1 &&
           params.targetHeight() <= kTamePixels;
}

bool isSorted(const Params& params) {
    return isSortedByTime(params.foreWindows()) && isSortedByTime(params.cursorActions()) &&
           isSortedByTime(params.cursorLocations()) && isSortedByTime(params.dirtyRects()) &&
           isSortedByTime(params.caretRects()) && isSortedByTime(params.recordingRegions());
}

} // namespace OrvantaNS::fuzz
