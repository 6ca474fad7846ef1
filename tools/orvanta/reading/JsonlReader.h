// Recordings in JSON Lines: a header object, then one array an event.
#pragma once

#include "reading/LineReader.h"
#include "reading/Recording.h"

namespace OrvantaNS::command {

/// Reads a recording whose header is the current line of `lines`, to the end. Throws `InputError` on anything that the
/// format does not allow; only header fields and streams that it does not know are passed over, and counted.
Recording readJsonLines(LineReader& lines);

} // namespace OrvantaNS::command
