// Wishes in JSON (docs/camera-path.md).
#pragma once

#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "CameraPath.h"
#include "CameraWishes.h"

namespace OrvantaNS::command {

inline constexpr std::string_view kWishesFormat = "orvanta-wishes";
inline constexpr int kWishesVersion = 1;

/// Reads wishes for a clip from a file, or from the standard input when `path` is "-". Times become the nearest ticks on
/// the clock of `setup`, whose clip stands for ends that are left out. Throws `InputError` and `Interrupted`.
CameraWishes readWishesFile(const std::string& path, const CameraSetup& setup);

/// The wishes of a document, a null meaning none; `name` stands for it in messages. Throws `InputError`.
CameraWishes wishesOf(const nlohmann::json& document, const std::string& name, const CameraSetup& setup);

} // namespace OrvantaNS::command
