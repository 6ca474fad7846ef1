// What `score` reads beside the recording: named moments, and camera paths of any maker.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Rectangle.h"
#include "camera/score/Moments.h"

namespace OrvantaNS::command {

/// Named moments: CSV with the columns `from`, `to` (seconds of the recording), `left`, `top`, `right`, `bottom` (screen
/// pixels), `view` (`close`, `window` or `wide`) and, if there, `what`. The result is relative to `region`. Throws
/// `InputError`.
std::vector<camera::Moment> parseMoments(std::string_view text, const std::string& name, const Rectangle& region);

/// A camera path by time: CSV with the columns `seconds`, `left`, `top`, `width` and `height` (pixels relative to the
/// first region), or JSON with a list `keyframes` of objects with these fields, as `keyframes` prints both. Further
/// columns and fields are passed over. Throws `InputError`.
std::vector<camera::JudgedKeyframe> parsePath(std::string_view text, const std::string& name);

} // namespace OrvantaNS::command
