// The output frame's size, as an option can state it.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "Rectangle.h"
#include "asking/EngineChoice.h"
#include "asking/TimeOption.h"

namespace OrvantaNS::command {

/// Width and height of the output frame, pixels.
struct FrameSize {
    std::int32_t width = 0;
    std::int32_t height = 0;
    friend bool operator==(const FrameSize&, const FrameSize&) = default;
};

/// What --size may say.
struct SizeOption {
    enum class Kind : std::uint8_t {
        Pixels, ///< WIDTHxHEIGHT
        Scale,  ///< A share of the recording's own size, above 0 and below 1.
        Aspect, ///< WIDTH:HEIGHT
    };
    Kind kind = Kind::Pixels;
    FrameSize pixels;          ///< For `Pixels`.
    double scale = 0.0;        ///< For `Scale`.
    double aspectWidth = 0.0;  ///< For `Aspect`.
    double aspectHeight = 0.0; ///< For `Aspect`.
};

/// Throws `OptionError`, also when a colon stands where pixels are meant ("640:400"). Whether pixels suit the engine is for
/// `checkSize` to say.
SizeOption parseSize(std::string_view text);

/// The size for a recording whose first region is `region`.
///
/// - A scale gives that share of the region, rounded down to even numbers.
/// - An aspect gives the largest even size of that shape that fits the region. A shape close to the region's own would
///   leave the camera nowhere to go; where the fit covers more than three quarters of the region, half of it is taken.
///   The voting engine wants both dimensions smaller than the region's, so for it the fit leaves out the last row and
///   column.
///
/// Throws `OptionError` when the region has no size to take a share of.
FrameSize resolveSize(const SizeOption& size, const Rectangle& region, EngineChoice engine);

/// What is asked of an engine: the limits of the size depend on it.
enum class Question : std::uint8_t {
    Timeline, ///< The keyframes of a clip, or the frame at a moment.
    Window,   ///< The frame for a window, which is never too small.
    Nothing,  ///< No engine is asked: any size goes.
};

/// Throws `OptionError` for a size that the engine would refuse for a recording whose first region is `region`. `name`
/// stands for the recording in the message.
void checkSize(const FrameSize& size, const Rectangle& region, EngineChoice engine, Question question,
               std::string_view name);

} // namespace OrvantaNS::command
