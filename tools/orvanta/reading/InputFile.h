// A file or the standard input, read so that Ctrl-C always gets through.
#pragma once

#include <string>

#include "reading/LineReader.h"

namespace OrvantaNS::command {

/// The bytes of a file, or of the standard input when `path` is "-". `name` stands for it in messages. Throws
/// `InputError` when it cannot be opened; the source throws `InputError` when it cannot be read, and `Interrupted` on
/// Ctrl-C, also while it waits for a pipe.
ByteSource openInput(const std::string& path, const std::string& name);

} // namespace OrvantaNS::command
