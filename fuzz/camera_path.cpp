// Fuzz target: the camera's path and wishes. The input is a setup, keyframes, wishes and moments, number by number.

#include <cmath>
#include <cstdint>
#include <stdexcept>
#include <vector>

#include "ByteReader.h"
#include "CameraPath.h"
#include "CameraWishes.h"
#include "Check.h"

namespace {

using namespace OrvantaNS;

constexpr int kMostEntries = 12;

long long tickOf(fuzz::ByteReader& reader) {
    return reader.u8() < 224 ? static_cast<long long>(reader.i32()) : reader.extremeTick();
}

Rectangle rectOf(fuzz::ByteReader& reader) {
    const std::int32_t left = reader.coordinate();
    const std::int32_t right = reader.coordinate();
    const std::int32_t top = reader.coordinate();
    return {left, right, top, reader.coordinate()};
}

CameraStretch stretchOf(fuzz::ByteReader& reader) {
    const long long start = tickOf(reader);
    return {start, tickOf(reader)};
}

CameraSetup setupOf(fuzz::ByteReader& reader) {
    CameraSetup setup;
    setup.region = rectOf(reader);
    setup.targetWidth = reader.coordinate();
    setup.targetHeight = reader.coordinate();
    setup.timeScale = reader.timeScale();
    setup.fadeDuration = tickOf(reader);
    setup.clipStart = tickOf(reader);
    setup.clipStop = tickOf(reader);
    if (reader.u8() % 2 == 0) {
        // Refused where it is no easing.
        const double x1 = reader.u8() / 255.0;
        const double y1 = reader.i16() / 3000.0;
        const double x2 = reader.u8() / 255.0;
        setup.easing = CameraEasing(x1, y1, x2, reader.i16() / 3000.0);
    }
    return setup;
}

std::vector<OV_TIME_RECT> keyframesOf(fuzz::ByteReader& reader) {
    std::vector<OV_TIME_RECT> keyframes;
    for (int i = reader.u8() % kMostEntries; i > 0; --i) {
        const long long time = tickOf(reader);
        keyframes.push_back({time, rectOf(reader)});
    }
    return keyframes;
}

CameraWishes wishesOf(fuzz::ByteReader& reader) {
    CameraWishes wishes;
    for (int i = reader.u8() % 4; i > 0; --i) {
        const CameraStretch stretch = stretchOf(reader);
        wishes.pins.push_back({stretch, rectOf(reader)});
    }
    for (int i = reader.u8() % 4; i > 0; --i) {
        wishes.whole.push_back(stretchOf(reader));
    }
    for (int i = reader.u8() % 4; i > 0; --i) {
        wishes.keepOut.push_back(stretchOf(reader));
    }
    const std::uint8_t limits = reader.u8();
    if ((limits & 1U) != 0) {
        wishes.leastZoom = reader.timeScale();
    }
    if ((limits & 2U) != 0) {
        wishes.greatestZoom = reader.timeScale();
    }
    if ((limits & 4U) != 0) {
        wishes.leastRest = tickOf(reader);
    }
    return wishes;
}

void checkFrame(const CameraFrame& frame, const CameraSetup& setup) {
    const double width = static_cast<double>(setup.region.right) - setup.region.left;
    const double height = static_cast<double>(setup.region.bottom) - setup.region.top;
    const auto inside = [](double low, double size, double limit) {
        return size > limit ? low <= 0.0 : low >= 0.0 && low + size <= limit;
    };
    FUZZ_CHECK(std::isfinite(frame.left) && std::isfinite(frame.top));
    FUZZ_CHECK(std::isfinite(frame.width) && std::isfinite(frame.height));
    FUZZ_CHECK(frame.width > 0.0 && frame.height > 0.0);
    FUZZ_CHECK(inside(frame.left, frame.width, width));
    FUZZ_CHECK(inside(frame.top, frame.height, height));
    FUZZ_CHECK(frame.overhangs == (frame.width > width || frame.height > height));
    const double shape = static_cast<double>(setup.targetWidth) / setup.targetHeight;
    FUZZ_CHECK(std::fabs(frame.width / frame.height / shape - 1.0) < 1e-12);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::ByteReader reader(data, size);
    try {
        const CameraSetup setup = setupOf(reader);
        const std::vector<OV_TIME_RECT> keyframes = keyframesOf(reader);
        const CameraPath path(keyframes, setup);
        for (const CameraMove& move : path.moves()) {
            checkFrame(move.from, setup);
            checkFrame(move.to, setup);
            FUZZ_CHECK(move.start <= move.stop && move.keyframe < keyframes.size());
            FUZZ_CHECK(path.frameAt(move.start) == (setup.fadeDuration == 0 ? move.to : move.from));
            checkFrame(path.frameAt(move.start / 2 + move.stop / 2), setup);
        }
        for (int i = 0; i < kMostEntries; ++i) {
            checkFrame(path.frameAt(tickOf(reader)), setup);
            const double seconds = reader.f64();
            if (!std::isnan(seconds * setup.timeScale)) {
                checkFrame(path.frameAtSeconds(seconds), setup);
            }
        }
        const CameraWishes wishes = wishesOf(reader);
        const std::vector<CameraWishedKeyframe> wished = applyWishes(keyframes, setup, wishes);
        std::vector<OV_TIME_RECT> again;
        for (std::size_t i = 0; i < wished.size(); ++i) {
            FUZZ_CHECK(wishes.empty() || i == 0 || wished[i - 1].frame.time < wished[i].frame.time);
            again.push_back(wished[i].frame);
        }
        checkFrame(CameraPath(again, setup).frameAt(tickOf(reader)), setup);
    } catch (const std::invalid_argument&) {
        // What is out of range is refused.
    }
    return 0;
}
