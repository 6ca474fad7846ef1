// A recording as the command reads it: the streams of a request, and what else the file tells.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Params.h"
#include "reading/LineReader.h"

namespace OrvantaNS::command {

/// The streams of a recording, in the order in which lines of one time stand in a file.
enum class Stream : std::uint8_t { Region, Window, Dirty, Caret, Cursor, Action };
constexpr std::size_t kStreamCount = 6;
constexpr std::array<std::string_view, kStreamCount> kStreamNames{"region", "window", "dirty",
                                                                  "caret",  "cursor", "action"};

/// Counts things by name, in order of first appearance. Names beyond `kMaxNames` are counted together, so that a file
/// of nothing but new names costs no memory.
class NameCounter {
public:
    static constexpr std::size_t kMaxNames = 16;

    struct Entry {
        std::string name; ///< As it may be printed.
        long long count = 0;
    };

    void add(std::string_view name);
    long long total() const { return total_; }
    bool empty() const { return total_ == 0; }
    /// "touch: 3, keys: 1, others: 2"
    std::string text() const;
    /// "touch, keys, others"
    std::string names() const;

private:
    std::vector<Entry> entries_;
    long long others_ = 0;
    long long total_ = 0;
};

/// Which of the two file forms a recording was read from.
enum class RecordingForm : std::uint8_t {
    JsonLines, ///< A header line, then one line an event.
    Dump,      ///< A captured request, stream by stream.
};

struct Recording {
    std::string name; ///< The file, as the command line has it; "<stdin>" for the standard input.
    RecordingForm form = RecordingForm::JsonLines;
    /// The streams, the time scale and the windows flag. A dump also gives the target size.
    Params params;
    std::string description;              ///< What happens, in words; empty in a dump.
    std::optional<long long> videoOffset; ///< Ticks: where the time 0 of the video of the same name lies.
    std::optional<std::string> video;     ///< The video's file, relative to the recording's folder.
    long long start = 0;                  ///< Ticks: 0 for a recording, the first sample of a dump.
    long long stop = 0;                   ///< Ticks: the last line or sample.
    long long events = 0;                 ///< Lines after the header, or samples; unknown streams included.
    NameCounter unknownFields;            ///< Header fields that the format does not know.
    NameCounter unknownStreams;           ///< Lines of streams that the format does not know.
    /// Lines that stand behind a line of a later stream with the same time.
    long long streamOrderBreaks = 0;
    std::string compression;   ///< "gzip" or "zstd" where the file was packed; empty where it was not.
    bool archiveIsCut = false; ///< The packed file ends in its middle.
    long long cutLine = 0;     ///< Number of a last line that ends in its middle and was left out; 0 for none.

    double startSeconds() const;
    double stopSeconds() const;
    double toSeconds(long long ticks) const;

    /// What the reader of the results should know: what was passed over, what was cut off, and a length that points to a
    /// wrong time scale. A sentence each, which begins with the file's name.
    std::vector<std::string> warnings() const;
    /// A sentence on a time scale that can hardly be meant, from the length that it gives; empty for a likely length.
    std::string lengthRemark() const;
};

/// How much a file may differ from the format.
enum class Reading : std::uint8_t {
    Tolerant, ///< Takes gzip and zstd, blank lines, CR LF, a byte order mark, and a last line that was cut off.
    Strict,   ///< Refuses all of these.
};

/// Reads a recording in either form, told apart by its first line. Throws `InputError`, and whatever the source throws.
Recording readRecording(ByteSource source, const std::string& name, Reading reading = Reading::Tolerant);

/// Reads a file, or the standard input when `path` is "-". Throws `InputError`, and `Interrupted` on Ctrl-C.
Recording readRecordingFile(const std::string& path, Reading reading = Reading::Tolerant);

} // namespace OrvantaNS::command
