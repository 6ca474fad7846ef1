#include "reading/DumpReader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>
#include <system_error>
#include <vector>

#include <fmt/format.h>

namespace OrvantaNS::command {

namespace {

/// The longest line of a dump has five numbers.
constexpr std::size_t kMaxTokens = 6;

struct Tokens {
    std::array<std::string_view, kMaxTokens> token;
    std::size_t count = 0; ///< One more than fits when there are too many.
};

Tokens split(std::string_view line) {
    constexpr std::string_view kSpace = " \t\r";
    Tokens tokens;
    for (;;) {
        const std::size_t start = line.find_first_not_of(kSpace);
        if (start == std::string_view::npos) {
            return tokens;
        }
        if (tokens.count == kMaxTokens) {
            ++tokens.count;
            return tokens;
        }
        line.remove_prefix(start);
        tokens.token[tokens.count++] = line.substr(0, line.find_first_of(kSpace));
        line.remove_prefix(tokens.token[tokens.count - 1].size());
    }
}

/// Any number that a stream prints, "nan" and "inf" included.
bool parseDouble(std::string_view token, double& value) {
    constexpr std::size_t kLongestNumber = 400; // Fixed notation of the largest double has 309 digits before the point.
    if (token.empty() || token.size() > kLongestNumber || token.find_first_of("xX") != std::string_view::npos) {
        return false;
    }
    const std::string copy(token);
    char* end = nullptr;
    value = std::strtod(copy.c_str(), &end);
    return end == copy.c_str() + copy.size();
}

template <typename T> T wholeNumber(std::string_view token, std::string_view what, const LineReader& lines) {
    const auto offset = static_cast<std::size_t>(token.data() - lines.line().data());
    T value{};
    const auto [end, error] = std::from_chars(token.data(), token.data() + token.size(), value);
    if (error == std::errc::result_out_of_range) {
        lines.fail(fmt::format("{} is out of range: it must fit {} bits", what, std::numeric_limits<T>::digits + 1),
                   offset);
    }
    if (error != std::errc{} || end != token.data() + token.size()) {
        lines.fail(fmt::format("{} must be a whole number", what), offset);
    }
    return value;
}

/// Reads one stream: the number of samples on a line of its own, then a line for each.
class StreamReader {
public:
    StreamReader(LineReader& lines, Recording& recording) : lines_(lines), recording_(recording) {}

    void readRects(std::string_view stream, std::vector<OV_TIME_RECT>& samples) {
        read(stream, samples, 5, [this](const Tokens& tokens) {
            return OV_TIME_RECT{time(tokens.token[4]),
                                {integer(tokens.token[0], "left"), integer(tokens.token[1], "right"),
                                 integer(tokens.token[2], "top"), integer(tokens.token[3], "bottom")}};
        });
    }
    void readActions(std::vector<OV_MOUSE_ACTION>& samples) {
        read("action", samples, 2, [this](const Tokens& tokens) {
            return OV_MOUSE_ACTION{time(tokens.token[1]), integer(tokens.token[0], "the action code")};
        });
    }
    void readLocations(std::vector<OV_MOUSE_LOCATION>& samples) {
        read("cursor", samples, 3, [this](const Tokens& tokens) {
            return OV_MOUSE_LOCATION{time(tokens.token[0]), integer(tokens.token[1], "x"),
                                     integer(tokens.token[2], "y")};
        });
    }

private:
    template <typename Sample, typename Parse>
    void read(std::string_view stream, std::vector<Sample>& samples, std::size_t fields, const Parse& parse) {
        next(stream);
        const Tokens head = split(lines_.line());
        if (head.count != 1) {
            lines_.fail(fmt::format("the number of \"{}\" samples must stand alone on its line", stream), 0);
        }
        const auto count =
            wholeNumber<std::int64_t>(head.token[0], fmt::format("the number of \"{}\" samples", stream), lines_);
        if (count < 0) {
            lines_.fail(fmt::format("the number of \"{}\" samples must not be negative", stream), 0);
        }
        // The list grows with the lines that are there, whatever the count claims.
        for (std::int64_t i = 0; i < count; ++i) {
            next(stream);
            const Tokens tokens = split(lines_.line());
            if (tokens.count != fields) {
                lines_.fail(fmt::format("each \"{}\" sample must have {} numbers", stream, fields), 0);
            }
            const Sample sample = parse(tokens);
            if (!samples.empty() && sample.time < samples.back().time) {
                lines_.fail(fmt::format("the time {} lies before {}, the time of the \"{}\" sample before", sample.time,
                                        samples.back().time, stream));
            }
            samples.push_back(sample);
            extend(sample.time);
        }
    }

    void next(std::string_view stream) {
        if (!lines_.next()) {
            lines_.failAt(lines_.number() + 1, fmt::format("the file ends within the \"{}\" samples", stream));
        }
    }

    long long time(std::string_view token) const { return wholeNumber<long long>(token, "the time", lines_); }
    std::int32_t integer(std::string_view token, std::string_view what) const {
        return wholeNumber<std::int32_t>(token, what, lines_);
    }

    void extend(long long time) {
        recording_.start = recording_.events == 0 ? time : std::min(recording_.start, time);
        recording_.stop = recording_.events == 0 ? time : std::max(recording_.stop, time);
        ++recording_.events;
    }

    LineReader& lines_;
    Recording& recording_;
};

} // namespace

bool isDumpHead(std::string_view line) {
    const Tokens tokens = split(line);
    double number = 0.0;
    return tokens.count == 3 && parseDouble(tokens.token[0], number) && parseDouble(tokens.token[1], number) &&
           parseDouble(tokens.token[2], number);
}

Recording readDump(LineReader& lines) {
    Recording recording;
    recording.name = lines.name();
    recording.form = RecordingForm::Dump;
    Params& params = recording.params;

    const Tokens head = split(lines.line());
    params.setTargetWidth(wholeNumber<std::int32_t>(head.token[0], "the target's width", lines));
    params.setTargetHeight(wholeNumber<std::int32_t>(head.token[1], "the target's height", lines));
    double scale = 0.0;
    if (!parseDouble(head.token[2], scale) || !std::isfinite(scale) || scale <= 0.0) {
        lines.fail("the time scale is out of range: it must be above 0",
                   static_cast<std::size_t>(head.token[2].data() - lines.line().data()));
    }
    params.setTimeScale(scale);

    StreamReader reader(lines, recording);
    reader.readRects("window", params.foreWindows());
    reader.readActions(params.cursorActions());
    reader.readLocations(params.cursorLocations());
    reader.readRects("dirty", params.dirtyRects());
    reader.readRects("caret", params.caretRects());
    reader.readRects("region", params.recordingRegions());
    while (lines.next()) {
        if (split(lines.line()).count > 0) {
            lines.fail("the file goes on after the last \"region\" sample", 0);
        }
    }
    if (recording.events == 0) {
        lines.fail("the captured request has no sample");
    }
    return recording;
}

} // namespace OrvantaNS::command
