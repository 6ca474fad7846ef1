#include "reading/LineReader.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include <fmt/format.h>

#include "reading/Excerpt.h"
#include "reading/InputError.h"

namespace OrvantaNS::command {

namespace {

/// Bytes asked for at a time: enough to make calls rare, little enough not to matter.
constexpr std::size_t kChunkBytes = std::size_t{64} << 10;

std::string tooLong() { return fmt::format("the line is longer than {} bytes", kMaxLineBytes); }

} // namespace

ByteSource sourceOf(std::string_view text) {
    return [text](char* to, std::size_t size) mutable {
        const std::size_t count = text.copy(to, size);
        text.remove_prefix(count);
        return count;
    };
}

LineReader::LineReader(ByteSource source, std::string name)
    : source_(std::move(source)), name_(std::move(name)), buffer_(kChunkBytes + kPadding) {}

bool LineReader::next() {
    std::size_t searched = begin_;
    for (;;) {
        // Either the line's end is in the buffer, or all of the buffer belongs to the line.
        const void* found = std::memchr(buffer_.data() + searched, '\n', end_ - searched);
        if (found != nullptr) {
            const auto at = static_cast<std::size_t>(static_cast<const char*>(found) - buffer_.data());
            lineStart_ = begin_;
            lineLength_ = at - begin_;
            begin_ = at + 1;
            lineIsEnded_ = true;
            break;
        }
        const std::size_t unfinished = end_ - begin_;
        if (unfinished > kMaxLineBytes) {
            failAt(number_ + 1, tooLong());
        }
        if (!atEnd_ && fill()) {
            searched = begin_ + unfinished;
            continue;
        }
        if (unfinished == 0) {
            return false;
        }
        lineStart_ = begin_;
        lineLength_ = unfinished;
        begin_ = end_;
        lineIsEnded_ = false;
        break;
    }
    if (++number_ == 1) {
        takeByteOrderMark();
    }
    if (lineLength_ > kMaxLineBytes) {
        fail(tooLong());
    }
    return true;
}

void LineReader::fail(const std::string& reason) const { failAt(std::max(number_, 1LL), reason); }

void LineReader::fail(const std::string& reason, std::size_t offset) const {
    const Excerpt excerpt = excerptAt(line(), offset);
    throw InputError({name_, number_, excerpt.column, excerpt.text, excerpt.caret}, reason);
}

void LineReader::failAt(long long number, const std::string& reason) const {
    throw InputError({name_, number, 0, {}, 0}, reason);
}

void LineReader::takeByteOrderMark() {
    constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";
    if (line().starts_with(kByteOrderMark)) {
        hadByteOrderMark_ = true;
        lineStart_ += kByteOrderMark.size();
        lineLength_ -= kByteOrderMark.size();
    }
}

/// Brings more of the source behind the unfinished line, which moves to the front; false at the end.
bool LineReader::fill() {
    const std::size_t unfinished = end_ - begin_;
    std::memmove(buffer_.data(), buffer_.data() + begin_, unfinished);
    begin_ = 0;
    end_ = unfinished;
    if (buffer_.size() < end_ + kChunkBytes + kPadding) {
        buffer_.resize(2 * buffer_.size() + kChunkBytes);
    }
    const std::size_t count = source_(buffer_.data() + end_, kChunkBytes);
    end_ += count;
    atEnd_ = count == 0;
    return count > 0;
}

} // namespace OrvantaNS::command
