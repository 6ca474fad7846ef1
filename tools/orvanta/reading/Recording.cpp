#include "reading/Recording.h"

#include <memory>
#include <utility>

#include <fmt/format.h>

#include "frame/TimeModel.h"
#include "reading/Decompression.h"
#include "reading/DumpReader.h"
#include "reading/InputFile.h"
#include "reading/JsonlReader.h"
#include "terminal/TextFormat.h"

namespace OrvantaNS::command {

namespace {

// A recording outside of these is hardly meant. A session of a week is none; and where a thousandth of the true length is
// told, or a millionth, cursor and screen seem to change more often than any recorder looks.
constexpr double kLongest = 7.0 * 24.0 * 3600.0; // Seconds.
constexpr double kShortest = 1.0;                // Seconds.
constexpr long long kShortestEvents = 20;        // Lines that a second of recording may have without a remark.
constexpr double kMostEventsPerSecond = 10000.0;

/// A length that a person can judge: "12.3 days", else as times are printed.
std::string lengthText(double seconds) {
    constexpr double kDay = 24.0 * 3600.0;
    return seconds >= 2.0 * kDay ? fmt::format("{:.1f} days", seconds / kDay) : formatTime(seconds);
}

} // namespace

void NameCounter::add(std::string_view name) {
    ++total_;
    const std::string shown = printable(name);
    for (Entry& entry : entries_) {
        if (entry.name == shown) {
            ++entry.count;
            return;
        }
    }
    if (entries_.size() < kMaxNames) {
        entries_.push_back({shown, 1});
    } else {
        ++others_;
    }
}

std::string NameCounter::text() const {
    std::string text;
    for (const Entry& entry : entries_) {
        text += fmt::format("{}{}: {}", text.empty() ? "" : ", ", entry.name, entry.count);
    }
    if (others_ > 0) {
        text += fmt::format(", others: {}", others_);
    }
    return text;
}

std::string NameCounter::names() const {
    std::string text;
    for (const Entry& entry : entries_) {
        text += fmt::format("{}{}", text.empty() ? "" : ", ", entry.name);
    }
    if (others_ > 0) {
        text += ", others";
    }
    return text;
}

double Recording::toSeconds(long long ticks) const { return ticksToSeconds(ticks, params.timeScale()); }
double Recording::startSeconds() const { return toSeconds(start); }
double Recording::stopSeconds() const { return toSeconds(stop); }

std::vector<std::string> Recording::warnings() const {
    const std::string shownName = printableName(name);
    std::vector<std::string> warnings;
    std::string parts;
    if (!unknownFields.empty()) {
        parts = fmt::format("{} unknown header field{} ({})", unknownFields.total(),
                            unknownFields.total() == 1 ? "" : "s", unknownFields.names());
    }
    if (!unknownStreams.empty()) {
        parts += fmt::format("{}{} line{} of unknown streams ({})", parts.empty() ? "" : " and ",
                             unknownStreams.total(), unknownStreams.total() == 1 ? "" : "s", unknownStreams.text());
    }
    if (!parts.empty()) {
        warnings.push_back(fmt::format("{}: passed over {}", shownName, parts));
    }
    if (archiveIsCut) {
        warnings.push_back(fmt::format("{}: the {} data is cut off; read as far as it goes, to {}", shownName,
                                       compression, formatTime(stopSeconds())));
    }
    if (cutLine > 0) {
        warnings.push_back(fmt::format("{}:{}: the last line is cut off and was left out; the recording ends at {}",
                                       shownName, cutLine, formatTime(stopSeconds())));
    }
    if (const std::string remark = lengthRemark(); !remark.empty()) {
        warnings.push_back(fmt::format("{}: {}", shownName, remark));
    }
    return warnings;
}

std::string Recording::lengthRemark() const {
    const double length = stopSeconds() - startSeconds();
    const bool isTooShort = (length < kShortest && events >= kShortestEvents) ||
                            static_cast<double>(events) > kMostEventsPerSecond * length;
    if (length <= kLongest && (!isTooShort || events < kShortestEvents)) {
        return {};
    }
    return fmt::format("the recording is {} long by its clock of {} ticks a second; is the time scale right?",
                       lengthText(length), params.timeScale());
}

Recording readRecording(ByteSource source, const std::string& name, Reading reading) {
    const bool strict = reading == Reading::Strict;
    const auto notes = std::make_shared<SourceNotes>();
    LineReader lines(unpacked(std::move(source), name, notes), name);
    bool isThere = lines.next();
    while (isThere && !strict && lines.line().find_first_not_of(" \t\r") == std::string_view::npos) {
        isThere = lines.next();
    }
    if (!isThere) {
        lines.failAt(1, notes->isCut ? fmt::format("the {} data is cut off before its first line", notes->compression)
                                     : "the file is empty");
    }
    if (strict && !notes->compression.empty()) {
        lines.fail(fmt::format("the file is packed with {}; strict reading wants plain text", notes->compression));
    }
    if (strict && lines.hadByteOrderMark()) {
        lines.fail("the file begins with a byte order mark; strict reading wants none");
    }
    Recording recording = isDumpHead(lines.line()) ? readDump(lines) : readJsonLines(lines, strict);
    recording.compression = notes->compression;
    recording.archiveIsCut = notes->isCut;
    return recording;
}

Recording readRecordingFile(const std::string& path, Reading reading) {
    const std::string name = path == "-" ? "<stdin>" : path;
    return readRecording(openInput(path, name), name, reading);
}

} // namespace OrvantaNS::command
