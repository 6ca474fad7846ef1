// The file that a container is written to: it appears under its name whole or not at all.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "render/AvHandles.h"

namespace OrvantaNS::render {

/// Takes a container's bytes. What is written lies beside its place under another name (or none) until `publish`; without
/// that it goes away. What exists and is no regular file (a pipe, a device) takes the bytes as they come.
class OutputFile {
public:
    /// Throws `RenderError` when the place cannot be written to.
    explicit OutputFile(std::string path);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// For a muxer. Lives as long as this.
    AVIOContext* io() { return io_.get(); }
    /// Lets a muxer read what it wrote: one that moves its index to the front asks for its own file by name.
    void lendTo(AVFormatContext& muxer);
    /// False for pipes: containers that go back to fill in their index cannot be written there.
    bool seekable() const { return seekable_; }

    /// Puts the file in its place. Throws `RenderError` when anything of it could not be written.
    void publish();

    /// The errno of the first write that failed; 0 when none did.
    int error() const { return error_; }

private:
    struct FreeIo {
        void operator()(AVIOContext* io) const;
    };
    struct Position {
        OutputFile* file;
        std::int64_t offset = 0;
        bool writes = false;
    };

    std::unique_ptr<AVIOContext, FreeIo> makeIo(Position& position);
    int write(Position& position, const std::uint8_t* bytes, int size);
    int read(Position& position, std::uint8_t* bytes, int size);
    std::int64_t seek(Position& position, std::int64_t offset, int whence);

    std::string path_;
    std::string place_;     // What `path_` names, links followed.
    std::string temporary_; // Empty when the bytes go in place.
    int descriptor_ = -1;
    bool inPlace_ = false;
    bool seekable_ = true;
    std::int64_t size_ = 0;
    int error_ = 0;
    Position writing_{};
    Position reading_{};
    std::unique_ptr<AVIOContext, FreeIo> io_;
    std::unique_ptr<AVIOContext, FreeIo> readIo_;
};

} // namespace OrvantaNS::render
