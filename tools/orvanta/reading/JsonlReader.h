// Recordings in JSON Lines: a header object, then one array an event.
#pragma once

#include "reading/LineReader.h"
#include "reading/Recording.h"

namespace OrvantaNS::command {

/// Reads a recording whose header is the current line of `lines`, to the end. Throws `InputError` on anything that the
/// format does not allow. Header fields and streams that it does not know are passed over, and counted; blank lines, and a
/// last line that was cut off, are passed over too unless the reading is `strict`.
Recording readJsonLines(LineReader& lines, bool strict);

} // namespace OrvantaNS::command
