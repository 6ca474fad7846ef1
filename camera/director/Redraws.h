// Which window is in front, and how often a program draws it as a whole.
#pragma once

#include <cstddef>
#include <vector>

#include "OrvantaCameraExport.h"
#include "camera/director/Scene.h"

namespace OrvantaNS::camera {

/// Share of the window in front from which a change is one of the whole.
constexpr double kPageShare = 0.5;

/// The window in front, asked for forwards in time.
class FrontWindow {
public:
    explicit FrontWindow(const Scene& scene) : windows_(&scene.windows), screen_{0.0, 0.0, scene.width, scene.height} {}

    /// That of a moment, which is not before that of the last question; the screen when there is none.
    const RealRect& at(double seconds) {
        while (next_ + 1 < windows_->size() && (*windows_)[next_ + 1].from <= seconds) {
            ++next_;
        }
        return windows_->empty() || isEmpty((*windows_)[next_].rect) ? screen_ : (*windows_)[next_].rect;
    }

private:
    const std::vector<SceneWindow>* windows_;
    RealRect screen_;
    std::size_t next_ = 0;
};

/// How much of the window in front the changes from `first` up to `end` draw, clockwork apart, in square pixels.
ORVANTA_CAMERA_EXPORT double newsIn(const Scene& scene, const RealRect& front, std::size_t first, std::size_t end);

/// When bursts of redraws of the whole window in front begin, in seconds: more than half of it drawn, a second or more
/// after the last time.
ORVANTA_CAMERA_EXPORT std::vector<double> redrawsOf(const Scene& scene);

/// 1 where the window is drawn as a whole twice at most within ten seconds either way, and 1 / (count - 1) where it is
/// more often: a page that comes up is drawn once or twice, and a program that draws all for every letter again and again.
ORVANTA_CAMERA_EXPORT double rarityOf(const std::vector<double>& redraws, double seconds);

} // namespace OrvantaNS::camera
