// How a move of the camera spreads over its time.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "OrvantaCameraExport.h"

namespace OrvantaNS {

/// A cubic Bézier from (0, 0) to (1, 1), as in CSS: x is the share of the move's time that has passed, y the share of
/// the way that is done. A plain value; ease-in-out by default.
///
/// The answers are the same to the last bit with every compiler and standard library: they come from additions,
/// multiplications and comparisons alone.
class ORVANTA_CAMERA_EXPORT CameraEasing {
public:
    /// Ease-in-out: starts and ends gently.
    CameraEasing() = default;
    /// The curve with the control points (x1, y1) and (x2, y2). Both x lie in 0 to 1, so that time never runs back; both
    /// y in -10 to 10, where a y outside 0 to 1 may overshoot the goal and return. Throws `std::invalid_argument`
    /// otherwise, and for what is not a number.
    CameraEasing(double x1, double y1, double x2, double y2);

    /// Even speed: (0, 0), (1, 1).
    static CameraEasing linear();
    /// Gentle at both ends: (0.42, 0), (0.58, 1).
    static CameraEasing easeInOut();
    /// Sets off at once, arrives gently: (0, 0), (0.58, 1).
    static CameraEasing easeOut();
    /// Gentler at both ends than ease-in-out, and faster between: (0.65, 0), (0.35, 1).
    static CameraEasing smooth();
    /// The preset of that name: "linear", "ease-in-out", "ease-out" or "smooth"; nothing for any other name.
    static std::optional<CameraEasing> named(std::string_view name);
    /// The names that `named` knows, the default first.
    static std::vector<std::string_view> names();

    /// The name of the preset with these control points; empty when there is none.
    std::string_view name() const;

    /// The share of the way that is done when `x`, the share of the time, has passed: exactly 0 up to 0 (and for what is
    /// not a number) and exactly 1 from 1 on. Between them the curve is solved to well below 1e-6; it rises all the way
    /// when both y lie in 0 to 1.
    double at(double x) const;

    /// The control points.
    double x1() const { return x1_; }
    double y1() const { return y1_; }
    double x2() const { return x2_; }
    double y2() const { return y2_; }

    friend bool operator==(const CameraEasing&, const CameraEasing&) = default;

private:
    double x1_ = 0.42;
    double y1_ = 0.0;
    double x2_ = 0.58;
    double y2_ = 1.0;
};

} // namespace OrvantaNS
