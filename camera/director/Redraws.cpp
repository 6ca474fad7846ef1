#include "camera/director/Redraws.h"

#include <algorithm>

namespace OrvantaNS::camera {

namespace {

// Redraws no further apart than this are one, seconds.
constexpr double kOneBurst = 1.0;
// Seconds either way within which they are counted.
constexpr double kReach = 10.0;

} // namespace

double newsIn(const Scene& scene, const RealRect& front, std::size_t first, std::size_t end) {
    double news = 0.0;
    for (std::size_t i = first; i < end; ++i) {
        if (scene.changes[i].attention == 1.0) {
            news += area(intersection(scene.changes[i].rect, front));
        }
    }
    return news;
}

std::vector<double> redrawsOf(const Scene& scene) {
    std::vector<double> times;
    FrontWindow window(scene);
    double last = -100.0;
    std::size_t next = 0;
    for (std::int32_t step = 0; step < scene.steps; ++step) {
        const std::size_t end = scene.changeEnds[static_cast<std::size_t>(step)];
        const double time = step * scene.step;
        const RealRect& front = window.at(time);
        if (newsIn(scene, front, next, end) > kPageShare * area(front)) {
            if (time - last > kOneBurst) {
                times.push_back(time);
            }
            last = time;
        }
        next = end;
    }
    return times;
}

double rarityOf(const std::vector<double>& redraws, double seconds) {
    const auto first = std::lower_bound(redraws.begin(), redraws.end(), seconds - kReach);
    const auto last = std::upper_bound(first, redraws.end(), seconds + kReach);
    return 1.0 / std::max(1.0, static_cast<double>(last - first) - 1.0);
}

} // namespace OrvantaNS::camera
