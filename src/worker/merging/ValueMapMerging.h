// The merge of two value maps in place, with its work counted.
#pragma once

#include "OrvantaWorker.h"
#include "frame/DataStore.h"

namespace OrvantaNS {

/// Makes of `first` what `OrvantaWorker::mergeMaps` gives of both. Two maps of the most tiers there are make a stack of
/// thousands of rectangles. The work is counted in `store` (`countSteps`), and takes place in its `mergeStack` and
/// `mergeLayers`.
void mergeIntoFirst(const OrvantaWorker& worker, OV_DATA_STORE& store, VS_VALUE_MAP& first, const VS_VALUE_MAP& second);

} // namespace OrvantaNS
