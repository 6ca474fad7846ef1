#include "reading/Decompression.h"

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

#include <zlib.h>
#include <zstd.h>

#include "reading/InputError.h"
#include "terminal/Interrupt.h"

namespace OrvantaNS::command {

namespace {

constexpr std::size_t kPackedChunkBytes = std::size_t{64} << 10;
constexpr std::string_view kGzipStart = "\x1f\x8b";
constexpr std::string_view kZstdStart = "\x28\xb5\x2f\xfd";

/// Packed bytes, a chunk at a time.
class PackedBytes {
public:
    explicit PackedBytes(ByteSource source) : source_(std::move(source)), buffer_(kPackedChunkBytes) {}

    /// The bytes in hand; brings more when there are fewer than `least`, as far as there are.
    std::string_view peek(std::size_t least = 1) {
        while (end_ - begin_ < least && !atEnd_) {
            if (begin_ > 0) {
                std::copy(buffer_.begin() + static_cast<std::ptrdiff_t>(begin_),
                          buffer_.begin() + static_cast<std::ptrdiff_t>(end_), buffer_.begin());
                end_ -= begin_;
                begin_ = 0;
            }
            const std::size_t count = source_(buffer_.data() + end_, buffer_.size() - end_);
            end_ += count;
            atEnd_ = count == 0;
        }
        return {buffer_.data() + begin_, end_ - begin_};
    }
    /// As many as there is room for, or all that are left: how much an unpacker gives out ahead of broken data depends on
    /// how much it gets at a time, which is not to depend on how the bytes arrive.
    std::string_view fill() { return peek(buffer_.size()); }
    void take(std::size_t count) { begin_ += count; }

private:
    ByteSource source_;
    std::vector<char> buffer_;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    bool atEnd_ = false;
};

/// One form of packing. Each gives out up to `size` bytes, 0 at the end.
class Unpacker {
public:
    virtual ~Unpacker() = default;
    virtual std::size_t read(char* to, std::size_t size) = 0;
};

class PlainBytes : public Unpacker {
public:
    explicit PlainBytes(PackedBytes& bytes) : bytes_(bytes) {}
    std::size_t read(char* to, std::size_t size) override {
        const std::size_t count = bytes_.peek().copy(to, size);
        bytes_.take(count);
        return count;
    }

private:
    PackedBytes& bytes_;
};

class Gunzip : public Unpacker {
public:
    Gunzip(PackedBytes& bytes, std::string name, SourceNotes& notes)
        : bytes_(bytes), name_(std::move(name)), notes_(notes) {
        constexpr int kGzipHeader = 16;
        if (inflateInit2(&stream_, MAX_WBITS + kGzipHeader) != Z_OK) {
            throw std::bad_alloc();
        }
    }
    ~Gunzip() override { inflateEnd(&stream_); }
    Gunzip(const Gunzip&) = delete;
    Gunzip& operator=(const Gunzip&) = delete;

    std::size_t read(char* to, std::size_t size) override {
        const std::size_t room = std::min<std::size_t>(size, std::numeric_limits<uInt>::max());
        stream_.next_out = reinterpret_cast<Bytef*>(to);
        stream_.avail_out = static_cast<uInt>(room);
        while (stream_.avail_out == room && !atEnd_) {
            throwIfInterrupted();
            const std::string_view packed = bytes_.fill();
            if (packed.empty()) {
                notes_.isCut = true;
                break;
            }
            stream_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data())); // Only read from.
            stream_.avail_in = static_cast<uInt>(packed.size());
            const int result = inflate(&stream_, Z_NO_FLUSH);
            bytes_.take(packed.size() - stream_.avail_in);
            if (result == Z_STREAM_END) {
                // Another piece may follow; padding behind the last one is no content.
                atEnd_ = !bytes_.peek(kGzipStart.size()).starts_with(kGzipStart);
                inflateReset(&stream_);
            } else if (result != Z_OK && result != Z_BUF_ERROR) {
                throw InputError({name_, 0, 0, {}, 0}, "this is gzip, but its content is broken");
            }
        }
        return room - stream_.avail_out;
    }

private:
    PackedBytes& bytes_;
    std::string name_;
    SourceNotes& notes_;
    z_stream stream_{};
    bool atEnd_ = false;
};

class Unzstd : public Unpacker {
public:
    Unzstd(PackedBytes& bytes, std::string name, SourceNotes& notes)
        : bytes_(bytes), name_(std::move(name)), notes_(notes), stream_(ZSTD_createDStream()) {
        if (stream_ == nullptr) {
            throw std::bad_alloc();
        }
    }
    ~Unzstd() override { ZSTD_freeDStream(stream_); }
    Unzstd(const Unzstd&) = delete;
    Unzstd& operator=(const Unzstd&) = delete;

    std::size_t read(char* to, std::size_t size) override {
        ZSTD_outBuffer out{to, size, 0};
        while (out.pos == 0) {
            throwIfInterrupted();
            const std::string_view packed = bytes_.fill();
            // Without input there may still be output that the stream holds back.
            ZSTD_inBuffer in{packed.data(), packed.size(), 0};
            if (packed.empty() && isFrameEnd_) {
                break;
            }
            const std::size_t result = ZSTD_decompressStream(stream_, &out, &in);
            if (ZSTD_isError(result) != 0) {
                throw InputError({name_, 0, 0, {}, 0},
                                 std::string("this is zstd, but its content is broken: ") + ZSTD_getErrorName(result));
            }
            bytes_.take(in.pos);
            isFrameEnd_ = result == 0;
            if (packed.empty() && out.pos == 0 && !isFrameEnd_) {
                notes_.isCut = true;
                break;
            }
        }
        return out.pos;
    }

private:
    PackedBytes& bytes_;
    std::string name_;
    SourceNotes& notes_;
    ZSTD_DStream* stream_;
    bool isFrameEnd_ = true;
};

/// The bytes, and what unpacks them once the first ones are there.
struct UnpackedSource {
    UnpackedSource(ByteSource source, std::string inputName, std::shared_ptr<SourceNotes> sourceNotes)
        : bytes(std::move(source)), name(std::move(inputName)), notes(std::move(sourceNotes)) {}

    std::size_t read(char* to, std::size_t size) {
        if (unpacker == nullptr) {
            const std::string_view start = bytes.peek(kZstdStart.size());
            if (start.starts_with(kGzipStart)) {
                notes->compression = "gzip";
                unpacker = std::make_unique<Gunzip>(bytes, name, *notes);
            } else if (start.starts_with(kZstdStart)) {
                notes->compression = "zstd";
                unpacker = std::make_unique<Unzstd>(bytes, name, *notes);
            } else {
                unpacker = std::make_unique<PlainBytes>(bytes);
            }
        }
        return unpacker->read(to, size);
    }

    PackedBytes bytes;
    std::string name;
    std::shared_ptr<SourceNotes> notes;
    std::unique_ptr<Unpacker> unpacker;
};

} // namespace

ByteSource unpacked(ByteSource source, const std::string& name, std::shared_ptr<SourceNotes> notes) {
    // A source can be copied, so it shares the state.
    auto state = std::make_shared<UnpackedSource>(std::move(source), name, std::move(notes));
    return [state](char* to, std::size_t size) { return state->read(to, size); };
}

} // namespace OrvantaNS::command
