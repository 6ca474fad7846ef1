#include "report/ReportPage.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <zlib.h>

#include "report/PageTemplate.h"
#include "writing/ToolVersion.h"

namespace OrvantaNS::command {

namespace {

/// Where the page's template wants the data.
constexpr std::string_view kDataMark = "<!-- orvanta-data -->";
constexpr int kLargestWindow = 15; // The logarithm of zlib's window size...
constexpr int kGzip = 16;          // ... to which this is added for a gzip header.
constexpr int kMemoryLevel = 8;    // zlib's own default.

/// One line of the recording, to be sorted by time and stream.
struct Line {
    long long time;
    Stream stream;
    std::string text;
};

void addRectangles(std::vector<Line>& lines, Stream stream, const std::vector<OV_TIME_RECT>& samples) {
    for (const OV_TIME_RECT& sample : samples) {
        lines.push_back(
            {sample.time, stream,
             fmt::format("[{},\"{}\",{},{},{},{}]\n", sample.time, kStreamNames[static_cast<std::size_t>(stream)],
                         sample.rect.left, sample.rect.top, sample.rect.right, sample.rect.bottom)});
    }
}

std::string dataElement(std::string_view id, std::string_view content) {
    // No browser runs a script of this type; the page reads its text.
    return fmt::format("<script type=\"application/octet-stream\" id=\"{}\">{}</script>\n", id, content);
}

} // namespace

bool hasReportPage() { return !pageTemplate().empty(); }

std::string reportPage(const Report& report) {
    Json document;
    document["tool"] = fmt::format("orvanta {}", toolVersion());
    document["source"] = report.recording.name;
    document["inspection"] = report.inspection;
    document["video"] = Json();
    if (report.video) {
        document["video"] = {
            {"name", report.video->link}, {"type", report.video->type}, {"embedded", report.video->embed}};
    }
    std::string data = dataElement("orvanta-report", packedForPage(jsonText(document)));
    data += dataElement("orvanta-recording", packedForPage(recordingLines(report.recording)));
    if (report.video && report.video->embed) {
        data += dataElement("orvanta-video", base64(report.video->content)); // Compressed as it is.
    }

    const std::string_view page = pageTemplate();
    const std::size_t mark = page.find(kDataMark);
    if (mark == std::string_view::npos) {
        throw std::logic_error("the page that was built into the command has no place for data");
    }
    std::string result;
    result.reserve(page.size() + data.size());
    result.append(page.substr(0, mark)).append(data).append(page.substr(mark + kDataMark.size()));
    return result;
}

std::string recordingLines(const Recording& recording) {
    const Params& params = recording.params;
    std::vector<Line> lines;
    addRectangles(lines, Stream::Region, params.recordingRegions());
    addRectangles(lines, Stream::Window, params.foreWindows());
    addRectangles(lines, Stream::Dirty, params.dirtyRects());
    addRectangles(lines, Stream::Caret, params.caretRects());
    for (const OV_MOUSE_LOCATION& sample : params.cursorLocations()) {
        lines.push_back(
            {sample.time, Stream::Cursor, fmt::format("[{},\"cursor\",{},{}]\n", sample.time, sample.x, sample.y)});
    }
    for (const OV_MOUSE_ACTION& sample : params.cursorActions()) {
        lines.push_back({sample.time, Stream::Action, fmt::format("[{},\"action\",{}]\n", sample.time, sample.action)});
    }
    std::stable_sort(lines.begin(), lines.end(), [](const Line& a, const Line& b) {
        return std::pair(a.time, a.stream) < std::pair(b.time, b.stream);
    });

    Json header;
    header["format"] = "orvanta-recording";
    header["version"] = 1;
    header["timeScale"] = params.timeScale();
    header["windowsFlag"] = params.isWindows();
    header["description"] = recording.description;
    if (recording.videoOffset) {
        header["videoOffset"] = *recording.videoOffset;
    }
    std::string text = header.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
    for (const Line& line : lines) {
        text += line.text;
    }
    return text;
}

std::string packedForPage(std::string_view content) {
    z_stream stream{};
    if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, kLargestWindow + kGzip, kMemoryLevel,
                     Z_DEFAULT_STRATEGY) != Z_OK) {
        throw std::bad_alloc();
    }
    // The same page on every system: the library would name the one it was built for.
    gz_header header{};
    header.os = 3; // Unix.
    deflateSetHeader(&stream, &header);
    std::string packed;
    std::array<char, 1 << 16> buffer;
    // zlib counts in 32 bits and wants its input writable, though it only reads it.
    constexpr std::size_t kMost = std::numeric_limits<uInt>::max() / 2;
    int status = Z_OK;
    while (status != Z_STREAM_END) {
        const std::size_t part = std::min(content.size(), kMost);
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(content.data()));
        stream.avail_in = static_cast<uInt>(part);
        const bool last = part == content.size();
        do {
            stream.next_out = reinterpret_cast<Bytef*>(buffer.data());
            stream.avail_out = static_cast<uInt>(buffer.size());
            status = deflate(&stream, last ? Z_FINISH : Z_NO_FLUSH);
            packed.append(buffer.data(), buffer.size() - stream.avail_out);
        } while (stream.avail_out == 0);
        content.remove_prefix(part);
    }
    deflateEnd(&stream);
    return base64(packed);
}

std::string base64(std::string_view content) {
    constexpr std::string_view kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((content.size() + 2) / 3 * 4);
    const auto byte = [&content](std::size_t i) {
        return i < content.size() ? static_cast<std::uint32_t>(static_cast<unsigned char>(content[i])) : 0u;
    };
    for (std::size_t i = 0; i < content.size(); i += 3) {
        const std::uint32_t bits = byte(i) << 16 | byte(i + 1) << 8 | byte(i + 2);
        text += kLetters[bits >> 18];
        text += kLetters[bits >> 12 & 63];
        text += i + 1 < content.size() ? kLetters[bits >> 6 & 63] : '=';
        text += i + 2 < content.size() ? kLetters[bits & 63] : '=';
    }
    return text;
}

std::string videoType(std::string_view name) {
    std::string ending(name.substr(std::min(name.size(), name.rfind('.'))));
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    if (ending == ".webm") {
        return "video/webm";
    }
    if (ending == ".mov") {
        return "video/quicktime";
    }
    if (ending == ".mkv") {
        return "video/x-matroska";
    }
    return "video/mp4";
}

} // namespace OrvantaNS::command
