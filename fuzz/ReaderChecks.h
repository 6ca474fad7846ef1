// What holds for every file that the command reads, whatever it says.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Check.h"
#include "reading/InputError.h"
#include "reading/Recording.h"

namespace OrvantaNS::fuzz {

/// A recording, or the message that stands in its place.
struct ReadingResult {
    std::optional<command::Recording> recording;
    std::string message;
};

/// Reads `text`, handed out in pieces of at most `piece` bytes. Aborts on any exception but the reader's own.
inline ReadingResult readIn(std::string_view text, std::size_t piece) {
    ReadingResult result;
    const auto source = [text, piece](char* to, std::size_t size) mutable {
        const std::size_t count = text.copy(to, std::min(size, piece));
        text.remove_prefix(count);
        return count;
    };
    try {
        result.recording = command::readRecording(source, "file");
    } catch (const command::InputError& error) {
        result.message = error.what();
    }
    return result;
}

template <typename Sample> void checkOrder(const std::vector<Sample>& samples, const command::Recording& recording) {
    for (std::size_t i = 0; i < samples.size(); ++i) {
        FUZZ_CHECK(i == 0 || samples[i - 1].time <= samples[i].time);
        FUZZ_CHECK(samples[i].time <= recording.stop);
    }
}

inline bool isEqual(const std::vector<OV_TIME_RECT>& a, const std::vector<OV_TIME_RECT>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const OV_TIME_RECT& x, const OV_TIME_RECT& y) {
        return x.time == y.time && x.rect == y.rect;
    });
}

/// `form` is what the recording must be found to be, where that is known.
inline void checkReading(std::string_view text, std::optional<command::RecordingForm> form = std::nullopt) {
    const ReadingResult whole = readIn(text, text.size() + 1);
    // How the bytes arrive makes no difference.
    const ReadingResult pieces = readIn(text, 7);
    FUZZ_CHECK(whole.message == pieces.message);
    FUZZ_CHECK(whole.recording.has_value() == pieces.recording.has_value());
    if (!whole.recording.has_value()) {
        // "file:LINE:COLUMN: reason", the column where one is known, on one line, and with nothing in it that a terminal
        // would take for a command. A packed file that cannot be unpacked has no lines.
        const std::string& message = whole.message;
        FUZZ_CHECK(std::none_of(message.begin(), message.end(),
                                [](char c) { return static_cast<unsigned char>(c) < 32 || c == 127; }));
        const bool isGzip = text.starts_with("\x1f\x8b");
        const bool isZstd = text.starts_with("\x28\xb5\x2f\xfd");
        if ((isGzip && message.starts_with("file: this is gzip, ")) ||
            (isZstd && message.starts_with("file: this is zstd, "))) {
            return;
        }
        FUZZ_CHECK(message.starts_with("file:") && message.size() > 8);
        std::size_t digits = 5;
        while (digits < message.size() && message[digits] >= '0' && message[digits] <= '9') {
            ++digits;
        }
        FUZZ_CHECK(digits > 5);
        if (message[digits] == ':' && message[digits + 1] != ' ') {
            ++digits; // A column follows.
            while (digits < message.size() && message[digits] >= '0' && message[digits] <= '9') {
                ++digits;
            }
        }
        FUZZ_CHECK(message.substr(digits, 2) == ": ");
        return;
    }
    const command::Recording& recording = *whole.recording;
    const Params& params = recording.params;
    const Params& other = pieces.recording->params;
    FUZZ_CHECK(isEqual(params.foreWindows(), other.foreWindows()) && isEqual(params.dirtyRects(), other.dirtyRects()));
    FUZZ_CHECK(params.timeScale() == other.timeScale() && recording.events == pieces.recording->events);

    FUZZ_CHECK(recording.form == form.value_or(recording.form));
    FUZZ_CHECK(std::isfinite(params.timeScale()) && params.timeScale() > 0.0);
    FUZZ_CHECK(recording.start <= recording.stop);
    checkOrder(params.foreWindows(), recording);
    checkOrder(params.cursorActions(), recording);
    checkOrder(params.cursorLocations(), recording);
    checkOrder(params.dirtyRects(), recording);
    checkOrder(params.caretRects(), recording);
    checkOrder(params.recordingRegions(), recording);
    const std::size_t samples = params.foreWindows().size() + params.cursorActions().size() +
                                params.cursorLocations().size() + params.dirtyRects().size() +
                                params.caretRects().size() + params.recordingRegions().size();
    FUZZ_CHECK(recording.events > 0);
    FUZZ_CHECK(static_cast<long long>(samples) + recording.unknownStreams.total() == recording.events);
    const bool isWarned = !recording.unknownFields.empty() || !recording.unknownStreams.empty();
    FUZZ_CHECK(recording.warnings().empty() !=
               (isWarned || recording.archiveIsCut || recording.cutLine > 0 || !recording.lengthRemark().empty()));
}

} // namespace OrvantaNS::fuzz
