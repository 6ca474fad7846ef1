// Requests out of bytes: recordings that look like a person's, with whatever can be wrong with one strewn in.
#pragma once

#include <cstdint>

#include "ByteReader.h"
#include "Params.h"

namespace OrvantaNS::fuzz {

/// A request and what to ask about it.
struct DecodedRequest {
    Params params;
    long long queryTime = 0;       ///< Ticks: the moment for the questions about one moment.
    std::uint32_t cancelAfter = 0; ///< The reporter asks to stop at this question; 0 means never.
};

/// Decodes a whole input. The clip runs from 0 to the last event unless the bytes say otherwise.
DecodedRequest decodeRequest(ByteReader& bytes);

/// An upper bound of the seconds that all live zones of a request last together. Infinite or not a number for some
/// hostile requests.
double zoneSecondsBound(const Params& params);

/// True when no rule can wrap or meet an inverted rectangle: every input rectangle is in order, and every coordinate
/// and the target lie within what screens have. Such a request keeps all the promises about frames.
bool isTame(const Params& params);

/// True when every stream is sorted by time.
bool isSorted(const Params& params);

} // namespace OrvantaNS::fuzz
