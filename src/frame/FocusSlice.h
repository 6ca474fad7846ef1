// One stretch of the timeline with its focus decision.
#pragma once

#include <cstdint>

#include "Rectangle.h"
#include "frame/ValueMap.h"

namespace OrvantaNS {

/// The classification of a slice, all false or zero until `identifySlice` computes it or a merge writes it.
struct SLICE_BREAKDOWN {
    bool tight = false;      ///< The hot rectangle fits in 5/4 of the target's size.
    bool inWindow = false;   ///< The hot rectangle lies at least 80 % in the window, or the window was animating.
    bool window = false;     ///< The slice has a constant active window.
    bool noWindow = false;   ///< The whole recording region changed.
    bool identified = false; ///< This breakdown has been computed.
    Rectangle windowRect;    ///< The slice's window, local pixels.
    Rectangle tier4Rect;     ///< The slice's hot rectangle, local pixels.
};

/// What merging does with a slice and its next target (1 to 12), and for 1 to 6 also the camera mode of a slice.
enum OV_MERGE_STRATEGY : std::int32_t {
    OV_MERGE_NONE = 0,              ///< Nothing to do; as a camera mode: not yet classified.
    OV_MERGE_TIGHT = 1,             ///< Both fit in one close shot.
    OV_MERGE_WIDE = 2,              ///< Both belong to one window.
    OV_MERGE_LOOSE = 3,             ///< Two short slices with nothing better.
    OV_MERGE_FORCED = 4,            ///< A keyframe slice is too short to stand.
    OV_MERGE_OFF_WINDOW = 5,        ///< Both outside the window, and close enough for one shot.
    OV_MERGE_FULL_SCREEN = 6,       ///< A short slice beside a full-screen one.
    OV_MERGE_TIGHT_PAN_TIGHT = 7,   ///< Two tight shots in one window, too far apart for one frame: the camera pans.
    OV_MERGE_TIGHT_GROW_WIDE = 8,   ///< From a close shot out to the window.
    OV_MERGE_WIDE_SHRINK_TIGHT = 9, ///< From the window in to a close shot.
    OV_MERGE_RETURN_WINDOW = 10,    ///< From outside a window back to one.
    OV_MERGE_GO_FULL_SCREEN = 11,   ///< To the whole screen.
    OV_MERGE_GO_OFF_WINDOW = 12,    ///< Out of a window, or simply nothing better for a long slice.
};

/// A stretch of the timeline with one focus; after merging, a live one is a camera shot.
struct OV_FOCUS_SLICE {
    VS_VALUE_MAP map;           ///< The value summary; its `spaces` are empty for a blank slice.
    double start = 0.0;         ///< Seconds.
    double stop = 0.0;          ///< Seconds; moves forward when the slice absorbs followers.
    bool blank = false;         ///< Nothing to show here: skipped by merging, no keyframe.
    bool keyframe = false;      ///< This boundary is a keyframe that merging must respect.
    std::int32_t mergeId = 0;   ///< Revision of the slice, from 0; -1 means merged away (dead).
    SLICE_BREAKDOWN breakdown;  ///< The slice's classification.
    std::int32_t mergeType = 0; ///< Camera mode: an `OV_MERGE_STRATEGY` of 0 to 6.
    bool blocked = false;       ///< Merging proposes nothing further between this slice and its follower.
};

} // namespace OrvantaNS
