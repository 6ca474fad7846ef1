#include "render/OutputFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <random>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fmt/format.h>

extern "C" {
#include <libavutil/error.h>
#include <libavutil/mem.h>
}

#include "render/RenderError.h"

namespace OrvantaNS::render {

namespace {

namespace fs = std::filesystem;

constexpr int kBufferSize = 1 << 18; // Bytes.
constexpr mode_t kNewFileMode = 0666;
constexpr int kNameAttempts = 16;

RenderError failure(const std::string& path, int error) {
    return RenderError(fmt::format("{}: cannot be written: {}", path, std::strerror(error)));
}

std::string nameBeside(const std::string& place) {
    std::random_device random;
    return fmt::format("{}.{:08x}.tmp", place, random());
}

/// A file for the bytes in the directory of `place`: without a name where the file system can do that, so that nothing
/// stays behind whatever ends the process, else under a name that is put into `temporary`.
int openBeside(const std::string& place, std::string& temporary) {
#if defined(O_TMPFILE)
    // It will get its name by way of /proc, which a bare root directory may lack.
    if (access("/proc/self/fd", X_OK) == 0) {
        const fs::path directory = fs::path(place).parent_path();
        const int nameless =
            open(directory.empty() ? "." : directory.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, kNewFileMode);
        if (nameless >= 0) {
            return nameless;
        }
    }
#endif
    int descriptor = -1;
    for (int attempt = 0; attempt < kNameAttempts && descriptor < 0; ++attempt) {
        temporary = nameBeside(place);
        descriptor = open(temporary.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kNewFileMode);
        if (descriptor < 0 && errno != EEXIST) {
            break;
        }
    }
    return descriptor;
}

} // namespace

void OutputFile::FreeIo::operator()(AVIOContext* io) const {
    av_freep(&io->buffer);
    avio_context_free(&io);
}

OutputFile::OutputFile(std::string path) : path_(std::move(path)), place_(path_) {
    std::error_code error;
    const fs::file_status status = fs::status(path_, error);
    if (fs::is_symlink(fs::symlink_status(path_, error)) && !fs::exists(status)) {
        throw RenderError(fmt::format("{}: is a link to a file that does not exist", path_));
    }
    if (fs::is_directory(status)) {
        throw failure(path_, EISDIR);
    }
    inPlace_ = fs::exists(status) && !fs::is_regular_file(status);
    if (inPlace_) {
        descriptor_ = open(path_.c_str(), O_WRONLY | O_CLOEXEC);
        seekable_ = descriptor_ >= 0 && lseek(descriptor_, 0, SEEK_CUR) >= 0;
    } else {
        if (fs::exists(status)) {
            constexpr fs::perms kAnyWrite = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
            if ((status.permissions() & kAnyWrite) == fs::perms::none || access(path_.c_str(), W_OK) != 0) {
                throw failure(path_, EACCES);
            }
            // A link keeps its place; the file that it names is replaced.
            place_ = fs::canonical(path_, error).string();
        }
        descriptor_ = openBeside(place_, temporary_);
    }
    if (descriptor_ < 0) {
        throw failure(path_, errno);
    }
    writing_ = {this, 0, true};
    reading_ = {this, 0, false};
    io_ = makeIo(writing_);
}

OutputFile::~OutputFile() {
    io_.reset();
    readIo_.reset();
    if (descriptor_ >= 0) {
        close(descriptor_);
    }
    if (!temporary_.empty()) {
        unlink(temporary_.c_str());
    }
}

std::unique_ptr<AVIOContext, OutputFile::FreeIo> OutputFile::makeIo(Position& position) {
    auto* buffer = static_cast<unsigned char*>(av_malloc(kBufferSize));
    const auto reader = [](void* at, std::uint8_t* bytes, int size) {
        auto& reading = *static_cast<Position*>(at);
        return reading.file->read(reading, bytes, size);
    };
#if LIBAVFORMAT_VERSION_MAJOR >= 61
    using Bytes = const std::uint8_t*;
#else
    using Bytes = std::uint8_t*;
#endif
    const auto writer = [](void* at, Bytes bytes, int size) {
        auto& writing = *static_cast<Position*>(at);
        return writing.file->write(writing, bytes, size);
    };
    const auto seeker = [](void* at, std::int64_t offset, int whence) {
        auto& seeking = *static_cast<Position*>(at);
        return seeking.file->seek(seeking, offset, whence);
    };
    AVIOContext* io = buffer == nullptr
                          ? nullptr
                          : avio_alloc_context(buffer, kBufferSize, position.writes ? 1 : 0, &position,
                                               position.writes ? nullptr : +reader, position.writes ? +writer : nullptr,
                                               seekable_ ? +seeker : nullptr);
    if (io == nullptr) {
        av_free(buffer);
        throw std::bad_alloc();
    }
    return std::unique_ptr<AVIOContext, FreeIo>(io);
}

void OutputFile::lendTo(AVFormatContext& muxer) {
    muxer.pb = io_.get();
    muxer.flags |= AVFMT_FLAG_CUSTOM_IO;
    muxer.opaque = this;
    muxer.io_open = [](AVFormatContext* context, AVIOContext** io, const char*, int flags, AVDictionary**) {
        auto& file = *static_cast<OutputFile*>(context->opaque);
        if ((flags & AVIO_FLAG_WRITE) != 0 || file.inPlace_) {
            return AVERROR(EACCES);
        }
        file.reading_.offset = 0;
        file.readIo_ = file.makeIo(file.reading_);
        *io = file.readIo_.get();
        return 0;
    };
    muxer.io_close2 = [](AVFormatContext* context, AVIOContext*) {
        static_cast<OutputFile*>(context->opaque)->readIo_.reset();
        return 0;
    };
}

int OutputFile::write(Position& position, const std::uint8_t* bytes, int size) {
    int written = 0;
    while (written < size) {
        const auto left = static_cast<std::size_t>(size - written);
        const ssize_t count = seekable_ ? pwrite(descriptor_, bytes + written, left, position.offset)
                                        : ::write(descriptor_, bytes + written, left);
        if (count < 0) {
            if (errno == EINTR && seekable_) {
                continue;
            }
            error_ = error_ != 0 ? error_ : errno;
            return AVERROR(error_);
        }
        written += static_cast<int>(count);
        position.offset += count;
    }
    size_ = std::max(size_, position.offset);
    return size;
}

int OutputFile::read(Position& position, std::uint8_t* bytes, int size) {
    const ssize_t count = pread(descriptor_, bytes, static_cast<std::size_t>(size), position.offset);
    if (count < 0) {
        return AVERROR(errno);
    }
    position.offset += count;
    return count == 0 ? AVERROR_EOF : static_cast<int>(count);
}

std::int64_t OutputFile::seek(Position& position, std::int64_t offset, int whence) {
    if ((whence & AVSEEK_SIZE) != 0) {
        return size_;
    }
    whence &= ~AVSEEK_FORCE;
    position.offset = whence == SEEK_CUR ? position.offset + offset : whence == SEEK_END ? size_ + offset : offset;
    return position.offset;
}

void OutputFile::publish() {
    avio_flush(io_.get());
    if (error_ != 0) {
        throw failure(path_, error_);
    }
    if (inPlace_) {
        return;
    }
    struct stat old = {};
    const bool replaces = stat(place_.c_str(), &old) == 0;
    if (replaces) {
        // Without the right to, the new file keeps its own mode.
        static_cast<void>(fchmod(descriptor_, old.st_mode & 07777));
    }
    if (temporary_.empty()) {
        const std::string self = fmt::format("/proc/self/fd/{}", descriptor_);
        for (int attempt = 0;; ++attempt) {
            const std::string name = replaces ? nameBeside(place_) : place_;
            if (linkat(AT_FDCWD, self.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0) {
                if (!replaces) {
                    return;
                }
                temporary_ = name;
                break;
            }
            if (errno != EEXIST || !replaces || attempt >= kNameAttempts) {
                throw failure(path_, errno);
            }
        }
    }
    if (std::rename(temporary_.c_str(), place_.c_str()) != 0) {
        throw failure(path_, errno);
    }
    temporary_.clear();
}

} // namespace OrvantaNS::render
