// The unit of attention, and the table that says what each kind is worth.
#pragma once

#include <array>
#include <cstdint>

#include "Rectangle.h"

namespace OrvantaNS {

/// What happened: the kind of an `OV_VALUE_OBJECT`, and its row of `g_ValueMatrix`.
enum OV_OBJECT_TYPE : std::uint32_t {
    Move = 0,             ///< A kept cursor stroke that neither leaves nor enters the active window.
    MouseIdle = 1,        ///< The cursor at rest; a trigger for the meta pass that never reaches the store.
    Click = 2,            ///< A single click.
    Drag = 3,             ///< A button held while the cursor moved.
    DoubleClick = 4,      ///< Two clicks close in time and place.
    Caret = 5,            ///< Row and label only: nothing makes it.
    TextFocus = 6,        ///< Row and label only: nothing makes it.
    FollowText = 7,       ///< Row and label only: nothing makes it.
    ForeOpen = 8,         ///< A foreground window that just opened.
    ForeAnimate = 9,      ///< A run of foreground-window samples that kept changing, as their union.
    ActiveWindow = 10,    ///< A stable foreground window over its time span.
    Hover = 11,           ///< A changing area that the cursor entered during a stroke.
    IdleDirty = 12,       ///< A changing area inside the active window while the cursor rests.
    Menu = 13,            ///< A menu open on screen.
    Pane = 14,            ///< A part of a menu or window.
    MenuResult = 15,      ///< What a click in a menu brought up; removed by the meta pass.
    Reserved16 = 16,      ///< Not created; its value is the unit of the trigger threshold.
    OffScreen = 17,       ///< The cursor off the live zone; a trigger for the meta pass, always removed.
    Scroll = 18,          ///< A run of wheel actions; removed by the meta pass.
    Dead = 19,            ///< Deletion mark of the meta pass.
    Reserved20 = 20,      ///< Row only.
    Reserved21 = 21,      ///< Row only.
    Reserved22 = 22,      ///< Row only.
    FullScreenDirty = 23, ///< A change that covered the whole recording region.
    MoveOutOfWindow = 24, ///< A stroke from inside the active window to outside it.
    MoveIntoWindow = 25,  ///< A stroke from outside the active window to inside it.
    HoverPopup = 26,      ///< A changing area that appeared beside the cursor.
    ClickDirty = 27,      ///< A changing area that a click set off.
    ClickWindow = 28,     ///< A window that a click opened.
};

/// A rectangle that mattered during an interval.
struct OV_VALUE_OBJECT {
    std::uint32_t type = 0; ///< `OV_OBJECT_TYPE`.
    double start = 0.0;     ///< Seconds: when the object begins.
    double stop = 0.0;      ///< Seconds: when it ends; it stays in force for its row's decay after that.
    Rectangle rect;         ///< Local pixels of its live zone.
    double value = 0.0;     ///< Scratch: the object's integral over the interval last recalculated, value-seconds.
};

/// What a kind of object is worth.
struct OV_VALUE_ROW {
    double value = 0.0; ///< Worth per second while the object lasts.
    double decay = 0.0; ///< Seconds after `stop` during which it still counts, fading to nothing.
};

/// Indexed by `OV_OBJECT_TYPE`.
inline constexpr std::array<OV_VALUE_ROW, 29> g_ValueMatrix{{
    {5.0, 1.0},  // Move
    {0.0, 0.1},  // MouseIdle
    {7.0, 4.0},  // Click
    {10.0, 2.0}, // Drag
    {7.0, 4.0},  // DoubleClick
    {1.0, 3.0},  // Caret
    {1.0, 4.0},  // TextFocus
    {1.0, 3.0},  // FollowText
    {8.0, 3.0},  // ForeOpen
    {7.0, 1.5},  // ForeAnimate
    {2.0, 0.1},  // ActiveWindow
    {6.0, 0.5},  // Hover
    {5.0, 0.5},  // IdleDirty
    {10.0, 2.0}, // Menu
    {10.0, 0.5}, // Pane
    {15.0, 1.0}, // MenuResult
    {1.0, 0.1},  // Reserved16
    {1.0, 0.1},  // OffScreen
    {1.0, 0.1},  // Scroll
    {0.0, 0.1},  // Dead
    {0.5, 0.1},  // Reserved20
    {8.0, 3.0},  // Reserved21
    {1.5, 0.5},  // Reserved22
    {6.0, 1.0},  // FullScreenDirty
    {6.0, 1.0},  // MoveOutOfWindow
    {6.0, 1.0},  // MoveIntoWindow
    {10.0, 2.0}, // HoverPopup
    {3.0, 0.5},  // ClickDirty
    {3.0, 0.5},  // ClickWindow
}};

/// The order of `valueObjects`: by `start`, ascending; ties keep their order under a stable sort. False when either
/// start is not a number.
inline bool CompareValueObjects(const OV_VALUE_OBJECT& a, const OV_VALUE_OBJECT& b) { return a.start < b.start; }

/// The same order under a second name, for the parser's working list.
inline bool CompareValueObjects2(const OV_VALUE_OBJECT& a, const OV_VALUE_OBJECT& b) { return a.start < b.start; }

/// Life end of an object: its `stop` plus the decay of its row, seconds.
inline double lifeEnd(const OV_VALUE_OBJECT& object) { return object.stop + g_ValueMatrix[object.type].decay; }

/// A trigger object is worth a shot of its own: its row has at least four times the value of the unit row.
inline bool isTrigger(const OV_VALUE_OBJECT& object) {
    constexpr double triggerFactor = 4.0;
    return g_ValueMatrix[object.type].value >= triggerFactor * g_ValueMatrix[Reserved16].value;
}

} // namespace OrvantaNS
