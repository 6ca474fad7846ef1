#include "reading/JsonlReader.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

#include <fmt/format.h>
#include <simdjson.h>

#include "reading/ContentKind.h"
#include "reading/JsonPosition.h"
#include "terminal/TextFormat.h"

namespace OrvantaNS::command {

namespace {

namespace dom = simdjson::dom;

static_assert(LineReader::kPadding >= simdjson::SIMDJSON_PADDING);

constexpr std::string_view kFormat = "orvanta-recording";
constexpr std::int64_t kVersion = 1;

bool isBlankLine(std::string_view line) { return line.find_first_not_of(" \t\r") == std::string_view::npos; }

[[noreturn]] void failSyntax(const LineReader& lines, simdjson::error_code error) {
    switch (error) {
    case simdjson::UTF8_ERROR:
        lines.fail("not JSON: the text is not UTF-8", offsetOfSyntaxError(lines.line()));
    case simdjson::NUMBER_ERROR:
        lines.fail("not JSON: a number is malformed, or too large for 64 bits", offsetOfSyntaxError(lines.line()));
    case simdjson::DEPTH_ERROR:
        lines.fail("not JSON that can be read: too many levels");
    default:
        lines.fail("not JSON", offsetOfSyntaxError(lines.line()));
    }
}

/// One line as a JSON value, valid until the next line is parsed.
simdjson::error_code parseLine(dom::parser& parser, const LineReader& lines, dom::element& element) {
    // The line reader keeps readable bytes behind the line, so that the parser needs no copy.
    return parser.parse(lines.line().data(), lines.line().size(), false).get(element);
}

/// Takes what stands on the current line. A value that cannot be used is refused with the place where it stands.
class Values {
public:
    explicit Values(const LineReader& lines) : lines_(lines) {}

    /// A whole number that fits T. `what` names the value in the message, `offset` tells where it stands.
    template <typename T, typename Offset>
    T wholeNumber(const dom::element& value, std::string_view what, const Offset& offset) const {
        constexpr int bits = std::numeric_limits<T>::digits + 1;
        std::int64_t number = 0;
        const bool isTooLarge = value.is_uint64() && !value.is_int64();
        if (!isTooLarge && (value.get(number) != simdjson::SUCCESS || !value.is_int64())) {
            lines_.fail(fmt::format("{} must be a whole number", what), offset());
        }
        if (isTooLarge || number < std::numeric_limits<T>::lowest() || number > std::numeric_limits<T>::max()) {
            lines_.fail(fmt::format("{} is out of range: it must fit {} bits", what, bits), offset());
        }
        return static_cast<T>(number);
    }

    template <typename Offset>
    std::string_view text(const dom::element& value, std::string_view what, const Offset& offset) const {
        std::string_view characters;
        if (value.get(characters) != simdjson::SUCCESS) {
            lines_.fail(fmt::format("{} must be a string", what), offset());
        }
        return characters;
    }

private:
    const LineReader& lines_;
};

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

/// One field of the header.
class HeaderField {
public:
    HeaderField(std::string_view name, const dom::element& value, const LineReader& lines)
        : name_(name), value_(value), lines_(lines) {}

    [[noreturn]] void fail(const std::string& reason) const { lines_.fail(reason, offset()); }
    std::string label() const { return fmt::format("header field \"{}\"", name_); }

    std::int64_t wholeNumber() const {
        return Values(lines_).wholeNumber<std::int64_t>(value_, label(), [this] { return offset(); });
    }
    std::string_view text() const {
        return Values(lines_).text(value_, label(), [this] { return offset(); });
    }
    bool flag() const {
        bool flag = false;
        if (value_.get(flag) != simdjson::SUCCESS) {
            fail(label() + " must be true or false");
        }
        return flag;
    }
    double numberAboveZero() const {
        double number = 0.0;
        // Reading as a double takes whole numbers too.
        if (!value_.is_number() || value_.get(number) != simdjson::SUCCESS) {
            fail(label() + " must be a number");
        }
        if (!std::isfinite(number) || number <= 0.0) {
            fail(label() + " is out of range: it must be above 0");
        }
        return number;
    }

private:
    std::size_t offset() const { return offsetOfField(lines_.line(), name_); }

    std::string_view name_;
    dom::element value_;
    const LineReader& lines_;
};

void checkFormat(const HeaderField& field) {
    if (const std::string_view format = field.text(); format != kFormat) {
        field.fail(fmt::format("the format is \"{}\", not \"{}\"", printable(format), kFormat));
    }
}

void checkVersion(const HeaderField& field) {
    if (const auto version = field.wholeNumber(); version != kVersion) {
        field.fail(fmt::format("the format's version is {}; only version {} can be read", version, kVersion));
    }
}

dom::object parseHeader(dom::parser& parser, const LineReader& lines) {
    dom::element element;
    const auto error = parseLine(parser, lines, element);
    dom::object header;
    if (error == simdjson::SUCCESS && element.get(header) == simdjson::SUCCESS) {
        return header;
    }
    if (const std::string remark = contentRemark(lines.line()); !remark.empty()) {
        lines.fail(remark);
    }
    if (error != simdjson::SUCCESS) {
        failSyntax(lines, error);
    }
    lines.fail("the header must be a JSON object", 0);
}

void readHeader(dom::parser& parser, const LineReader& lines, Recording& recording) {
    const dom::object header = parseHeader(parser, lines);
    SeenFields seen;
    for (const auto [name, value] : header) {
        const HeaderField field(name, value, lines);
        const auto once = [&](bool& isSeen) {
            if (isSeen) {
                field.fail(field.label() + " stands twice");
            }
            isSeen = true;
        };
        if (name == "format") {
            once(seen.format);
            checkFormat(field);
        } else if (name == "version") {
            once(seen.version);
            checkVersion(field);
        } else if (name == "timeScale") {
            once(seen.timeScale);
            recording.params.setTimeScale(field.numberAboveZero());
        } else if (name == "windowsFlag") {
            once(seen.windowsFlag);
            recording.params.setWindowsFlag(field.flag());
        } else if (name == "description") {
            once(seen.description);
            recording.description = std::string(field.text());
        } else if (name == "videoOffset") {
            once(seen.videoOffset);
            recording.videoOffset = field.wholeNumber();
        } else if (name == "video") {
            once(seen.video);
            recording.video = std::string(field.text());
            if (recording.video->empty()) {
                field.fail(field.label() + " is empty: it must name a file");
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
}

/// Takes the fields of one event line in turn.
class EventFields {
public:
    EventFields(const dom::array& event, const LineReader& lines)
        : lines_(lines), next_(event.begin()), end_(event.end()) {}

    long long takeTime() { return takeNumber<std::int64_t>("the time"); }
    std::int32_t takeInt(std::string_view what) { return takeNumber<std::int32_t>(what); }
    std::string_view takeText(std::string_view what) {
        const dom::element value = take(what);
        return Values(lines_).text(value, what, [this] { return offsetOfTaken(); });
    }
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
            lines_.fail(fmt::format("too many fields for stream \"{}\"", stream), offsetOfEntry(lines_.line(), taken_));
        }
    }
    /// Refuses the line for its time, which stands first.
    [[noreturn]] void failAtTime(const std::string& reason) const {
        lines_.fail(reason, offsetOfEntry(lines_.line(), 0));
    }

private:
    dom::element take(std::string_view what) {
        if (!(next_ != end_)) {
            lines_.fail(fmt::format("{} is missing", what), offsetOfEntry(lines_.line(), taken_));
        }
        const dom::element value = *next_;
        ++next_;
        ++taken_;
        return value;
    }
    template <typename T> T takeNumber(std::string_view what) {
        const dom::element value = take(what);
        return Values(lines_).wholeNumber<T>(value, what, [this] { return offsetOfTaken(); });
    }
    std::size_t offsetOfTaken() const { return offsetOfEntry(lines_.line(), taken_ - 1); }

    const LineReader& lines_;
    dom::array::iterator next_;
    dom::array::iterator end_;
    std::size_t taken_ = 0;
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

/// Adds the event that the current line is. `latestStream` is the greatest among the lines of the time in hand.
void readEvent(const dom::element& element, const LineReader& lines, Recording& recording, std::size_t& latestStream) {
    dom::array event;
    if (element.get(event) != simdjson::SUCCESS) {
        lines.fail("an event must be a JSON array", 0);
    }
    EventFields fields(event, lines);
    const long long time = fields.takeTime();
    const std::string_view stream = fields.takeText("the stream's name");
    if (recording.events > 0 && time < recording.stop) {
        fields.failAtTime(fmt::format("the time {} lies before {}, the time of the line before", time, recording.stop));
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

/// Refuses what a tolerant reading passes over in the current line.
void checkStrictly(const LineReader& lines) {
    if (isBlankLine(lines.line())) {
        lines.fail("the line is empty");
    }
    if (lines.line().back() == '\r') {
        lines.fail("the line ends with CR LF; strict reading wants LF alone", lines.line().size() - 1);
    }
}

} // namespace

Recording readJsonLines(LineReader& lines, bool strict) {
    Recording recording;
    recording.name = lines.name();
    recording.form = RecordingForm::JsonLines;
    dom::parser parser;
    if (strict) {
        checkStrictly(lines);
    }
    readHeader(parser, lines, recording);

    std::size_t latestStream = 0;
    while (lines.next()) {
        if (strict) {
            checkStrictly(lines);
        }
        if (isBlankLine(lines.line())) {
            continue;
        }
        dom::element element;
        if (const auto error = parseLine(parser, lines, element); error != simdjson::SUCCESS) {
            if (lines.lineIsEnded() || strict || recording.events == 0) {
                failSyntax(lines, error);
            }
            // The recorder was stopped within its last line; what stands before it is whole.
            recording.cutLine = lines.number();
            break;
        }
        readEvent(element, lines, recording, latestStream);
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
