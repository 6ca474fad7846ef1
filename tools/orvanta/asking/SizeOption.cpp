#include "asking/SizeOption.h"

#include <cmath>
#include <limits>
#include <numeric>
#include <string>

#include <fmt/format.h>

#include "frame/Geometry.h"
#include "terminal/TextFormat.h"

namespace OrvantaNS::command {

namespace {

/// A fit that covers more of the region than this leaves the camera no room to move.
constexpr double kLargestShare = 0.75;

std::optional<std::int32_t> parsePixels(std::string_view text) {
    const auto number = text.find('.') == std::string_view::npos ? parseDecimal(text) : std::nullopt;
    if (!number || *number > std::numeric_limits<std::int32_t>::max()) {
        return std::nullopt;
    }
    return static_cast<std::int32_t>(*number);
}

/// Video encoders want even sizes. Rounding down keeps what fits fitting.
std::int32_t evenBelow(double pixels) { return static_cast<std::int32_t>(std::floor(pixels / 2.0)) * 2; }

FrameSize scaledSize(double scale, double regionWidth, double regionHeight) {
    return {evenBelow(scale * regionWidth), evenBelow(scale * regionHeight)};
}

FrameSize fittedSize(double aspect, double regionWidth, double regionHeight, EngineChoice engine) {
    const double margin = engine == EngineChoice::Voting ? 1.0 : 0.0;
    const double roomWidth = regionWidth - margin;
    const double roomHeight = regionHeight - margin;
    double width = roomWidth;
    double height = roomWidth / aspect;
    if (height > roomHeight) {
        width = roomHeight * aspect;
        height = roomHeight;
    }
    if (width * height > kLargestShare * regionWidth * regionHeight) {
        width /= 2.0;
        height /= 2.0;
    }
    return {evenBelow(width), evenBelow(height)};
}

/// The smallest side of an output frame that the engines take, pixels.
constexpr std::int32_t kSmallestSide = 64;

/// Two numbers with a colon that are pixels rather than a shape: whole, and both large enough for a frame.
bool looksLikePixels(double width, double height) {
    return width >= kSmallestSide && height >= kSmallestSide && std::floor(width) == width &&
           std::floor(height) == height && width <= std::numeric_limits<std::int32_t>::max() &&
           height <= std::numeric_limits<std::int32_t>::max();
}

/// "Did you mean 640x400? The shape alone is written 8:5."
std::string pixelsQuestion(double width, double height) {
    const auto wide = static_cast<std::int32_t>(width);
    const auto high = static_cast<std::int32_t>(height);
    const std::int32_t common = std::gcd(wide, high);
    const std::string shape = looksLikePixels(wide / common, high / common)
                                  ? fmt::format("{:.4g}:1", width / height)
                                  : fmt::format("{}:{}", wide / common, high / common);
    return fmt::format("did you mean {}x{}? The shape alone is written {}", wide, high, shape);
}

} // namespace

SizeOption parseSize(std::string_view text) {
    SizeOption size;
    const auto fail = [&](std::string_view reason) {
        return OptionError(fmt::format("--size {}: {}", printable(text), reason));
    };
    if (const std::size_t cross = text.find_first_of("xX"); cross != std::string_view::npos) {
        const auto width = parsePixels(text.substr(0, cross));
        const auto height = parsePixels(text.substr(cross + 1));
        if (!width || !height) {
            throw fail("expected WIDTHxHEIGHT in whole pixels");
        }
        size.kind = SizeOption::Kind::Pixels;
        size.pixels = {*width, *height};
        return size;
    }
    if (const std::size_t colon = text.find(':'); colon != std::string_view::npos) {
        const auto width = parseDecimal(text.substr(0, colon));
        const auto height = parseDecimal(text.substr(colon + 1));
        if (!width || !height || *width <= 0.0 || *height <= 0.0) {
            throw fail("expected an aspect such as 9:16");
        }
        if (looksLikePixels(*width, *height)) {
            throw fail(pixelsQuestion(*width, *height));
        }
        size.kind = SizeOption::Kind::Aspect;
        size.aspectWidth = *width;
        size.aspectHeight = *height;
        return size;
    }
    const auto scale = parseDecimal(text);
    if (!scale) {
        throw fail("expected WIDTHxHEIGHT, a scale such as 0.5 or an aspect such as 9:16");
    }
    if (*scale <= 0.0 || *scale >= 1.0) {
        throw fail("a scale must be above 0 and below 1");
    }
    size.kind = SizeOption::Kind::Scale;
    size.scale = *scale;
    return size;
}

FrameSize resolveSize(const SizeOption& size, const Rectangle& region, EngineChoice engine) {
    if (size.kind == SizeOption::Kind::Pixels) {
        return size.pixels;
    }
    const double regionWidth = width(region);
    const double regionHeight = height(region);
    if (regionWidth <= 0.0 || regionHeight <= 0.0) {
        throw OptionError("--size: the recording's first region is empty, so only WIDTHxHEIGHT has a meaning");
    }
    return size.kind == SizeOption::Kind::Scale
               ? scaledSize(size.scale, regionWidth, regionHeight)
               : fittedSize(size.aspectWidth / size.aspectHeight, regionWidth, regionHeight, engine);
}

void checkSize(const FrameSize& size, const Rectangle& region, EngineChoice engine, Question question,
               std::string_view name) {
    const std::string recordingSize = fmt::format("{}x{}", width(region), height(region));
    const auto fail = [&](std::string_view reason) {
        return OptionError(fmt::format("{}: --size {}x{}: {}", printableName(name), size.width, size.height, reason));
    };
    if (question == Question::Nothing) {
        return;
    }
    if (question == Question::Window) {
        if ((size.width > width(region) && size.height > height(region)) || size.width < 1 || size.height < 1) {
            throw fail(
                fmt::format("a window's frame must fit the recording of {}; ask for a smaller size", recordingSize));
        }
        return;
    }
    if (size.width < kSmallestSide || size.height < kSmallestSide) {
        throw fail(
            fmt::format("the engines want at least {} pixels in each dimension; ask for a larger size", kSmallestSide));
    }
    if (engine == EngineChoice::Voting && (size.width >= width(region) || size.height >= height(region))) {
        throw fail(fmt::format("the voting engine wants less than the recording's {} in both dimensions; ask for a "
                               "smaller size, such as 0.5, or for --engine value",
                               recordingSize));
    }
    if (size.width >= width(region) && size.height >= height(region)) {
        throw fail(fmt::format("that shows all of the recording's {} at once, which leaves nothing to decide; ask for "
                               "less in at least one dimension, such as --size 0.5",
                               recordingSize));
    }
}

} // namespace OrvantaNS::command
