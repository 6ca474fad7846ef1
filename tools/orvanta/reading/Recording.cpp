#include "reading/Recording.h"

#include <utility>

#include <fmt/format.h>

#include "frame/TimeModel.h"
#include "reading/DumpReader.h"
#include "reading/InputFile.h"
#include "reading/JsonlReader.h"
#include "terminal/TextFormat.h"

namespace OrvantaNS::command {

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

std::string Recording::warning() const {
    std::string parts;
    if (!unknownFields.empty()) {
        parts = fmt::format("{} unknown header field{} ({})", unknownFields.total(),
                            unknownFields.total() == 1 ? "" : "s", unknownFields.names());
    }
    if (!unknownStreams.empty()) {
        parts += fmt::format("{}{} line{} of unknown streams ({})", parts.empty() ? "" : " and ",
                             unknownStreams.total(), unknownStreams.total() == 1 ? "" : "s", unknownStreams.text());
    }
    return parts.empty() ? parts : fmt::format("warning: {}: passed over {}", name, parts);
}

Recording readRecording(ByteSource source, const std::string& name) {
    LineReader lines(std::move(source), name);
    if (!lines.next()) {
        lines.fail("the file is empty");
    }
    return isDumpHead(lines.line()) ? readDump(lines) : readJsonLines(lines);
}

Recording readRecordingFile(const std::string& path) {
    const std::string name = path == "-" ? "<stdin>" : path;
    return readRecording(openInput(path, name), name);
}

} // namespace OrvantaNS::command
