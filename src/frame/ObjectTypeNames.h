// What each kind of value object is called in text.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "frame/ValueObject.h"

namespace OrvantaNS {

/// Indexed by `OV_OBJECT_TYPE`.
inline constexpr std::array<std::string_view, g_ValueMatrix.size()> g_ObjectTypeNames{"Move",
                                                                                      "MouseIdle",
                                                                                      "Click",
                                                                                      "Drag",
                                                                                      "DoubleClick",
                                                                                      "Caret",
                                                                                      "TextFocus",
                                                                                      "FollowText",
                                                                                      "ForeOpen",
                                                                                      "ForeAnimate",
                                                                                      "ActiveWindow",
                                                                                      "Hover",
                                                                                      "IdleDirty",
                                                                                      "Menu",
                                                                                      "Pane",
                                                                                      "MenuResult",
                                                                                      "Reserved16",
                                                                                      "OffScreen",
                                                                                      "Scroll",
                                                                                      "Dead",
                                                                                      "Reserved20",
                                                                                      "Reserved21",
                                                                                      "Reserved22",
                                                                                      "FullScreenDirty",
                                                                                      "MoveOutOfWindow",
                                                                                      "MoveIntoWindow",
                                                                                      "HoverPopup",
                                                                                      "ClickDirty",
                                                                                      "ClickWindow"};
static_assert(!g_ObjectTypeNames.back().empty(), "every row has a name");

/// "Click", "Hover" and so on; "type N" for a number without a row.
inline std::string objectTypeName(std::uint32_t type) {
    return type < g_ObjectTypeNames.size() ? std::string(g_ObjectTypeNames[type]) : "type " + std::to_string(type);
}

} // namespace OrvantaNS
