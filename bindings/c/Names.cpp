// What the library and its numbers are called.
#include <array>
#include <cstddef>
#include <cstdint>

#include "frame/ObjectTypeNames.h"
#include "orvanta_c.h"

namespace {

constexpr std::array<const char*, 7> kModeNames{"", "tight", "wide", "loose", "forced", "off-window", "full screen"};

// Every name is a string literal, so that a zero byte follows it.
template <typename Names> bool names(const Names& all, std::int32_t number) {
    return number >= 0 && static_cast<std::size_t>(number) < all.size();
}

} // namespace

const char* orvanta_version() { return ORVANTA_VERSION; }

const char* orvanta_mode_name(std::int32_t mode) {
    return names(kModeNames, mode) ? kModeNames[static_cast<std::size_t>(mode)] : "";
}

const char* orvanta_object_type_name(std::int32_t type) {
    using OrvantaNS::g_ObjectTypeNames;
    return names(g_ObjectTypeNames, type) ? g_ObjectTypeNames[static_cast<std::size_t>(type)].data() : "";
}
