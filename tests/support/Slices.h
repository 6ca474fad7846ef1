// Builds slices and stores for the tests of merging.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Scene.h"
#include "frame/DataStore.h"
#include "worker/merging/MergeEntry.h"

namespace OrvantaNS::testing {

/// A classification that counts as computed. `flags` holds a letter for each flag that is set: T tight, I in window,
/// W window, N the whole recording region.
inline SLICE_BREAKDOWN breakdown(std::string_view flags, Rectangle window = {}, Rectangle hot = {}) {
    SLICE_BREAKDOWN b;
    b.tight = flags.find('T') != std::string_view::npos;
    b.inWindow = flags.find('I') != std::string_view::npos;
    b.window = flags.find('W') != std::string_view::npos;
    b.noWindow = flags.find('N') != std::string_view::npos;
    b.identified = true;
    b.windowRect = window;
    b.tier4Rect = hot;
    return b;
}

/// The flags of a breakdown as `breakdown` takes them.
inline std::string flagsOf(const SLICE_BREAKDOWN& b) {
    return std::string(b.tight ? "T" : "") + (b.inWindow ? "I" : "") + (b.window ? "W" : "") + (b.noWindow ? "N" : "");
}

/// A slice with something to show, not yet classified; its map has no spaces.
inline OV_FOCUS_SLICE slice(double start, double stop) {
    OV_FOCUS_SLICE s;
    s.start = start;
    s.stop = stop;
    s.map.span = stop - start;
    return s;
}

/// A classified slice.
inline OV_FOCUS_SLICE slice(double start, double stop, const SLICE_BREAKDOWN& b, std::int32_t mergeType = 0) {
    OV_FOCUS_SLICE s = slice(start, stop);
    s.breakdown = b;
    s.mergeType = mergeType;
    return s;
}

inline OV_FOCUS_SLICE blank(double start, double stop) {
    OV_FOCUS_SLICE s = slice(start, stop);
    s.map.span = 0.0;
    s.blank = true;
    return s;
}

inline OV_FOCUS_SLICE dead(OV_FOCUS_SLICE s) {
    s.mergeId = -1;
    return s;
}

/// A store of these slices: fade 1 s, target 640 by 400, clip from 0 to 60 s.
inline OV_DATA_STORE sliceStore(std::vector<OV_FOCUS_SLICE> slices) {
    OV_DATA_STORE store;
    store.slices = std::move(slices);
    store.fadeSeconds = 1.0;
    store.targetWidth = 640;
    store.targetHeight = 400;
    store.clipStop = 60.0;
    return store;
}

/// A proposal at the present revisions of its slices.
inline MERGE_ENTRY entryOf(const OV_DATA_STORE& store, unsigned first, unsigned next, std::int32_t strategy = 0) {
    MERGE_ENTRY entry;
    entry.firstSlice = first;
    entry.nextSlice = next;
    entry.firstMergeId = store.slices[first].mergeId;
    entry.nextMergeId = store.slices[next].mergeId;
    entry.strategy = strategy;
    return entry;
}

inline VS_VALUE_MAP valueMap(double span, std::vector<std::pair<Rectangle, double>> spaces) {
    VS_VALUE_MAP map;
    map.span = span;
    map.spaces = std::move(spaces);
    return map;
}

} // namespace OrvantaNS::testing
