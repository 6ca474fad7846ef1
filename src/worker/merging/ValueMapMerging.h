// The merge of two value maps, with its work counted.
#pragma once

#include "OrvantaWorker.h"
#include "frame/DataStore.h"

namespace OrvantaNS {

/// What `OrvantaWorker::mergeMaps` gives. Two maps of the most tiers there are make a stack of thousands of rectangles.
/// The work is counted in `store` (`countSteps`).
VS_VALUE_MAP mergeMapsCounted(const OrvantaWorker& worker, OV_DATA_STORE& store, const VS_VALUE_MAP& first,
                              const VS_VALUE_MAP& second);

} // namespace OrvantaNS
