// Captured requests: the text that OrvantaWorker::printStuff writes.
#pragma once

#include <string_view>

#include "reading/LineReader.h"
#include "reading/Recording.h"

namespace OrvantaNS::command {

/// True for the first line of a dump: three numbers, the target's width and height and the time scale.
bool isDumpHead(std::string_view line);

/// Reads a dump whose first line is the current line of `lines`, to the end. Throws `InputError`.
///
/// A dump has the target size, but no clip, no fade and no windows flag: the recording runs from the first sample of
/// any stream to the last one, and the flag is false.
Recording readDump(LineReader& lines);

} // namespace OrvantaNS::command
