// Lines of an input of any length, read in bounded memory.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace OrvantaNS::command {

/// Fills up to `size` bytes at `to` and returns how many; 0 at the end. May throw.
using ByteSource = std::function<std::size_t(char* to, std::size_t size)>;

/// A source that gives out `text`, which must outlive it.
ByteSource sourceOf(std::string_view text);

/// Longest line that is read, bytes. A line of a recording has some 40 bytes and a header some hundred; the limit keeps
/// a file without line ends from filling the memory.
constexpr std::size_t kMaxLineBytes = std::size_t{1} << 20;

/// Cuts a source into lines.
class LineReader {
public:
    /// Readable bytes behind each line, whatever they hold: the JSON parser reads whole blocks.
    static constexpr std::size_t kPadding = 64;

    /// `name` stands for the input in messages.
    LineReader(ByteSource source, std::string name);

    /// Moves to the next line, without its line end; false at the end of the input. The text is valid until the next
    /// call. Throws `InputError` on a line longer than `kMaxLineBytes`.
    bool next();

    std::string_view line() const { return {buffer_.data() + lineStart_, lineLength_}; }
    /// Number of the current line, from 1; 0 before the first.
    long long number() const { return number_; }

    /// False for a last line that no line end follows: whoever wrote the file may have been stopped within it.
    bool lineIsEnded() const { return lineIsEnded_; }
    /// True when a UTF-8 byte order mark stood before the first line; it is no part of that.
    bool hadByteOrderMark() const { return hadByteOrderMark_; }

    /// Throws an `InputError` about the current line (about line 1 before the first).
    [[noreturn]] void fail(const std::string& reason) const;
    /// The same about byte `offset` of the current line, with the text around it.
    [[noreturn]] void fail(const std::string& reason, std::size_t offset) const;
    /// Throws an `InputError` about line `number`.
    [[noreturn]] void failAt(long long number, const std::string& reason) const;

    const std::string& name() const { return name_; }

private:
    bool fill();
    void takeByteOrderMark();

    ByteSource source_;
    std::string name_;
    std::vector<char> buffer_;
    std::size_t begin_ = 0; // First byte that belongs to no line yet.
    std::size_t end_ = 0;   // One past the last byte read.
    bool atEnd_ = false;
    bool lineIsEnded_ = true;
    bool hadByteOrderMark_ = false;
    std::size_t lineStart_ = 0;
    std::size_t lineLength_ = 0;
    long long number_ = 0;
};

} // namespace OrvantaNS::command
