#include "reading/JsonlReader.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

#include <fmt/format.h>
#include <simdjson.h>

#include "terminal/TextFormat.h"

namespace OrvantaNS::command {

namespace {

namespace dom = simdjson::dom;

static_assert(LineReader::kPadding >= simdjson::SIMDJSON_PADDING);

constexpr std::string_view kFormat = "orvanta-recording";
constexpr std::int64_t kVersion = 1;

/// One line as a JSON value, valid until the next line is parsed.
dom::element parseLine(dom::parser& parser, const LineReader& lines) {
    if (lines.line().find_first_not_of(" \t\r") == std::string_view::npos) {
        lines.fail("the line is empty");
    }
    dom::element element;
    // The line reader keeps readable bytes behind the line, so that the parser needs no copy.
    const auto error = parser.parse(lines.line().data(), lines.line().size(), false).get(element);
    switch (error) {
    case simdjson::SUCCESS:
        return element;
    case simdjson::UTF8_ERROR:
        lines.fail("not JSON: the text is not UTF-8");
    case simdjson::NUMBER_ERROR:
        lines.fail("not JSON: a number is malformed, or too large for 64 bits");
    case simdjson::DEPTH_ERROR:
        lines.fail("not JSON that can be read: too many levels");
    default:
        lines.fail("not JSON");
    }
}

/// A whole number that fits T. `what` names the value in the message.
template <typename T> T wholeNumber(const dom::element& value, std::string_view what, const LineReader& lines) {
    constexpr int bits = std::numeric_limits<T>::digits + 1;
    std::int64_t number = 0;
    if (value.is_uint64() && !value.is_int64()) {
        lines.fail(fmt::format("{} is out of range: it must fit {} bits", what, bits));
    }
    if (value.get(number) != simdjson::SUCCESS || !value.is_int64()) {
        lines.fail(fmt::format("{} must be a whole number", what));
    }
    if (number < std::numeric_limits<T>::lowest() || number > std::numeric_limits<T>::max()) {
        lines.fail(fmt::format("{} is out of range: it must fit {} bits", what, bits));
    }
    return static_cast<T>(number);
}

std::string_view text(const dom::element& value, std::string_view what, const LineReader& lines) {
    std::string_view characters;
    if (value.get(characters) != simdjson::SUCCESS) {
        lines.fail(fmt::format("{} must be a string", what));
    }
    return characters;
}

/// Which of the header's fields have been seen.
struct SeenFields {
    bool format = false;
    bool version = false;
    bool timeScale = false;
    bool windowsFlag = false;
    bool description = false;
    bool videoOffset = false;
    bool video = false;
};

void readFormat(const dom::element& value, const LineReader& lines) {
    const std::string_view format = text(value, "header field \"format\"", lines);
    if (format != kFormat) {
        lines.fail(fmt::format("the format is \"{}\", not \"{}\"", printable(format), kFormat));
    }
}

void readVersion(const dom::element& value, const LineReader& lines) {
    const auto version = wholeNumber<std::int64_t>(value, "header field \"version\"", lines);
    if (version != kVersion) {
        lines.fail(fmt::format("the format's version is {}; only version {} can be read", version, kVersion));
    }
}

double readTimeScale(const dom::element& value, const LineReader& lines) {
    double scale = 0.0;
    // Reading as a double takes whole numbers too.
    if (!value.is_number() || value.get(scale) != simdjson::SUCCESS) {
        lines.fail("header field \"timeScale\" must be a number");
    }
    if (!std::isfinite(scale) || scale <= 0.0) {
        lines.fail("header field \"timeScale\" is out of range: it must be above 0");
    }
    return scale;
}

void readHeader(dom::parser& parser, const LineReader& lines, Recording& recording) {
    dom::object header;
    if (parseLine(parser, lines).get(header) != simdjson::SUCCESS) {
        lines.fail("the header must be a JSON object");
    }
    SeenFields seen;
    const auto once = [&](bool& field, std::string_view name) {
        if (field) {
            lines.fail(fmt::format("header field \"{}\" stands twice", name));
        }
        field = true;
    };
    for (const auto [name, value] : header) {
        if (name == "format") {
            once(seen.format, name);
            readFormat(value, lines);
        } else if (name == "version") {
            once(seen.version, name);
            readVersion(value, lines);
        } else if (name == "timeScale") {
            once(seen.timeScale, name);
            recording.params.setTimeScale(readTimeScale(value, lines));
        } else if (name == "windowsFlag") {
            once(seen.windowsFlag, name);
            bool flag = false;
            if (value.get(flag) != simdjson::SUCCESS) {
                lines.fail("header field \"windowsFlag\" must be true or false");
            }
            recording.params.setWindowsFlag(flag);
        } else if (name == "description") {
            once(seen.description, name);
            recording.description = std::string(text(value, "header field \"description\"", lines));
        } else if (name == "videoOffset") {
            once(seen.videoOffset, name);
            recording.videoOffset = wholeNumber<std::int64_t>(value, "header field \"videoOffset\"", lines);
        } else if (name == "video") {
            once(seen.video, name);
            recording.video = std::string(text(value, "header field \"video\"", lines));
            if (recording.video->empty()) {
                lines.fail("header field \"video\" is empty: it must name a file");
            }
        } else {
            recording.unknownFields.add(name);
        }
    }
    const auto required = [&](bool field, std::string_view name) {
        if (!field) {
            lines.fail(fmt::format("header field \"{}\" is missing", name));
        }
    };
    required(seen.format, "format");
    required(seen.version, "version");
    required(seen.timeScale, "timeScale");
    required(seen.windowsFlag, "windowsFlag");
    required(seen.description, "description");
}

/// Takes the fields of one event line in turn.
class EventFields {
public:
    EventFields(const dom::array& event, const LineReader& lines)
        : lines_(lines), next_(event.begin()), end_(event.end()) {}

    dom::element take(std::string_view what) {
        if (!(next_ != end_)) {
            lines_.fail(fmt::format("{} is missing", what));
        }
        const dom::element value = *next_;
        ++next_;
        return value;
    }
    long long takeTime() { return wholeNumber<std::int64_t>(take("the time"), "the time", lines_); }
    std::int32_t takeInt(std::string_view what) { return wholeNumber<std::int32_t>(take(what), what, lines_); }
    /// The file has left, top, right, bottom; the record another order.
    Rectangle takeRectangle() {
        Rectangle rect;
        rect.left = takeInt("left");
        rect.top = takeInt("top");
        rect.right = takeInt("right");
        rect.bottom = takeInt("bottom");
        return rect;
    }
    void finish(std::string_view stream) const {
        if (next_ != end_) {
            lines_.fail(fmt::format("too many fields for stream \"{}\"", stream));
        }
    }

private:
    const LineReader& lines_;
    dom::array::iterator next_;
    dom::array::iterator end_;
};

/// Index into `kStreamNames`; `kStreamCount` for a stream that the format does not know.
std::size_t streamIndex(std::string_view name) {
    std::size_t index = 0;
    while (index < kStreamCount && kStreamNames[index] != name) {
        ++index;
    }
    return index;
}

void addEvent(Params& params, Stream stream, long long time, EventFields& fields) {
    switch (stream) {
    case Stream::Region:
        params.recordingRegions().push_back({time, fields.takeRectangle()});
        break;
    case Stream::Window:
        params.foreWindows().push_back({time, fields.takeRectangle()});
        break;
    case Stream::Dirty:
        params.dirtyRects().push_back({time, fields.takeRectangle()});
        break;
    case Stream::Caret:
        params.caretRects().push_back({time, fields.takeRectangle()});
        break;
    case Stream::Cursor: {
        const std::int32_t x = fields.takeInt("x");
        const std::int32_t y = fields.takeInt("y");
        params.cursorLocations().push_back({time, x, y});
        break;
    }
    case Stream::Action:
        params.cursorActions().push_back({time, fields.takeInt("the action code")});
        break;
    }
}

} // namespace

Recording readJsonLines(LineReader& lines) {
    Recording recording;
    recording.name = lines.name();
    recording.form = RecordingForm::JsonLines;
    dom::parser parser;
    readHeader(parser, lines, recording);

    std::size_t latestStream = 0; // Among the lines of the time in hand.
    while (lines.next()) {
        dom::array event;
        if (parseLine(parser, lines).get(event) != simdjson::SUCCESS) {
            lines.fail("an event must be a JSON array");
        }
        EventFields fields(event, lines);
        const long long time = fields.takeTime();
        const std::string_view stream = text(fields.take("the stream's name"), "the stream's name", lines);
        if (recording.events > 0 && time < recording.stop) {
            lines.fail(fmt::format("the time {} lies before {}, the time of the line before", time, recording.stop));
        }
        if (recording.events == 0 || time > recording.stop) {
            latestStream = 0;
        }
        const std::size_t index = streamIndex(stream);
        if (index == kStreamCount) {
            recording.unknownStreams.add(stream);
        } else {
            addEvent(recording.params, static_cast<Stream>(index), time, fields);
            fields.finish(stream);
            recording.streamOrderBreaks += index < latestStream ? 1 : 0;
            latestStream = std::max(latestStream, index);
        }
        recording.stop = time;
        ++recording.events;
    }
    if (recording.events == 0) {
        lines.fail("the recording ends with its header: there is no event");
    }
    if (recording.stop < 0) {
        lines.fail("the recording ends before its time 0");
    }
    return recording;
}

} // namespace OrvantaNS::command
