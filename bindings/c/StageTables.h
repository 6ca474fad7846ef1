// The records of a computation as rows of tables.
#pragma once

#include "bindings/c/Handles.h"
#include "frame/DataStore.h"

namespace OrvantaNS::c {

/// Fills the keyframes: those of a store that has run to its end.
void keepKeyframes(orvanta_result& result, const OV_DATA_STORE& store, double timeScale);
/// The same for keyframes without shots.
void keepKeyframes(orvanta_result& result, const std::vector<OV_TIME_RECT>& keyframes, double timeScale);

void keepZones(orvanta_result& result, const OV_DATA_STORE& store);
void keepObjects(orvanta_result& result, const OV_DATA_STORE& store);
/// The slices as they are now, into a table and into that of their rectangles.
void keepSlices(std::vector<orvanta_slice>& slices, std::vector<orvanta_space>& spaces, const OV_DATA_STORE& store);

} // namespace OrvantaNS::c
