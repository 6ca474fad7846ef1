// What a request must fulfil before the value engine looks at its streams.
#pragma once

#include "Params.h"

namespace OrvantaNS {

/// Whether a refusal is announced on the standard output, with the sizes at fault.
enum class RefusalOutput { silent, printed };

/// Tests target size, first recording region and time scale, in this order: target below 64 pixels; no region; target
/// at least as large as the region in both dimensions; time scale 0; region without size or below 4096 pixels. Throws
/// codes 1, 4, 2, 3 and 4.
void checkRequest(const Params& params, RefusalOutput output);

} // namespace OrvantaNS
