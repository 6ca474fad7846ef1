// Reads gzip and zstd, told by their first bytes.
#pragma once

#include <memory>
#include <string>

#include "reading/LineReader.h"

namespace OrvantaNS::command {

/// What is known of a source once it has been read.
struct SourceNotes {
    std::string compression; ///< "gzip" or "zstd"; empty for plain bytes.
    bool isCut = false;      ///< The compressed data ended in its middle; what came before it was given out.
};

/// The content of `source`: unpacked when it begins as gzip or zstd do, else as it is. Several packed pieces one after
/// another count as one. `notes` are written as reading goes on. `name` stands for the input in messages. Throws what the
/// source throws, `InputError` when the packed data is broken, and `Interrupted`.
ByteSource unpacked(ByteSource source, const std::string& name, std::shared_ptr<SourceNotes> notes);

} // namespace OrvantaNS::command
