#include "recording.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <utility>

#include <fmt/format.h>

#include "TimeModel.h"
#include "dump_reader.h"
#include "input_error.h"
#include "interrupt.h"
#include "jsonl_reader.h"
#include "text_format.h"

namespace OrvantaNS::command {

namespace {

struct CloseFile {
    void operator()(std::FILE* file) const {
        if (file != stdin) {
            std::fclose(file);
        }
    }
};

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
    const bool standardInput = path == "-";
    const std::string name = standardInput ? "<stdin>" : path;
    const std::unique_ptr<std::FILE, CloseFile> file(standardInput ? stdin : std::fopen(path.c_str(), "rb"));
    if (file == nullptr) {
        throw InputError(fmt::format("{}: cannot be opened: {}", name, std::strerror(errno)));
    }
    // The line reader has a buffer of its own.
    std::setvbuf(file.get(), nullptr, _IONBF, 0);
    const auto source = [&](char* to, std::size_t size) {
        throwIfInterrupted();
        const std::size_t count = std::fread(to, 1, size, file.get());
        throwIfInterrupted();
        if (count == 0 && std::ferror(file.get()) != 0) {
            throw InputError(fmt::format("{}: cannot be read: {}", name, std::strerror(errno)));
        }
        return count;
    };
    return readRecording(source, name);
}

} // namespace OrvantaNS::command
