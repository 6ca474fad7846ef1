#include "CameraEasing.h"

#include <array>
#include <stdexcept>

namespace OrvantaNS {

namespace {

// The largest y of a control point, to either side. It keeps every size on a path a finite number, however far apart the
// two frames of a move are, and no eye follows a camera that overshoots by more than that.
constexpr double kFurthestY = 10.0;

// Each step halves the stretch in which the curve's parameter lies; after these the halves are no longer apart.
constexpr int kBisections = 54;

struct Preset {
    std::string_view name;
    double x1, y1, x2, y2;
};

constexpr std::array<Preset, 4> kPresets{{{"ease-in-out", 0.42, 0.0, 0.58, 1.0},
                                          {"linear", 0.0, 0.0, 1.0, 1.0},
                                          {"ease-out", 0.0, 0.0, 0.58, 1.0},
                                          {"smooth", 0.65, 0.0, 0.35, 1.0}}};

CameraEasing easingOf(const Preset& preset) { return {preset.x1, preset.y1, preset.x2, preset.y2}; }

/// One coordinate of the curve at `s`, from 0 at s = 0 to 1 at s = 1.
double bezier(double first, double second, double s) {
    const double rest = 1.0 - s;
    return 3.0 * rest * rest * s * first + 3.0 * rest * s * s * second + s * s * s;
}

bool within(double value, double low, double high) { return value >= low && value <= high; } // false for no number

} // namespace

CameraEasing::CameraEasing(double x1, double y1, double x2, double y2) : x1_(x1), y1_(y1), x2_(x2), y2_(y2) {
    if (!within(x1, 0.0, 1.0) || !within(x2, 0.0, 1.0)) {
        throw std::invalid_argument("easing: the x of both control points must lie in 0 to 1");
    }
    if (!within(y1, -kFurthestY, kFurthestY) || !within(y2, -kFurthestY, kFurthestY)) {
        throw std::invalid_argument("easing: the y of both control points must lie in -10 to 10");
    }
}

CameraEasing CameraEasing::linear() { return {0.0, 0.0, 1.0, 1.0}; }
CameraEasing CameraEasing::easeInOut() { return {}; }
CameraEasing CameraEasing::easeOut() { return {0.0, 0.0, 0.58, 1.0}; }
CameraEasing CameraEasing::smooth() { return {0.65, 0.0, 0.35, 1.0}; }

std::optional<CameraEasing> CameraEasing::named(std::string_view name) {
    for (const Preset& preset : kPresets) {
        if (preset.name == name) {
            return easingOf(preset);
        }
    }
    return std::nullopt;
}

std::vector<std::string_view> CameraEasing::names() {
    std::vector<std::string_view> names;
    names.reserve(kPresets.size());
    for (const Preset& preset : kPresets) {
        names.push_back(preset.name);
    }
    return names;
}

std::string_view CameraEasing::name() const {
    for (const Preset& preset : kPresets) {
        if (easingOf(preset) == *this) {
            return preset.name;
        }
    }
    return {};
}

double CameraEasing::at(double x) const {
    if (!(x > 0.0)) {
        return 0.0;
    }
    if (x >= 1.0) {
        return 1.0;
    }
    if (x1_ == y1_ && x2_ == y2_) {
        return x; // A straight line, whatever the pace along it.
    }
    // x rises with the parameter, so halving finds it on every curve, the ones with flat or upright ends included.
    double low = 0.0;
    double high = 1.0;
    for (int i = 0; i < kBisections; ++i) {
        const double middle = low + (high - low) / 2.0;
        (bezier(x1_, x2_, middle) < x ? low : high) = middle;
    }
    return bezier(y1_, y2_, high);
}

} // namespace OrvantaNS
