#include "camera/director/Sites.h"

#include <algorithm>

#include "camera/director/EvidenceMeasures.h"
#include "camera/director/Redraws.h"

namespace OrvantaNS::camera {

namespace {

// Seconds without an act after which a site is left.
constexpr double kIdle = 5.0;
// Of a readable frame's width: where the work on a wide area is taken to begin.
constexpr double kWorkPart = 0.6;

/// Something done or drawn.
struct Act {
    double from = 0.0;
    double to = 0.0;
    RealRect rect;
    bool isByHand = false; ///< A press or the caret: it says where the work is. A change only goes with it.
};

void addHand(const Scene& scene, std::vector<Act>& acts) {
    const double line = scene.lineHeight;
    for (const ScenePress& press : scene.presses) {
        RealRect box = boxAround(press.x, press.y, kPressWidth * line, kPressHeight * line, scene);
        if (press.release - press.seconds > kLongPress) {
            box = boundingUnion(box, press.path);
        }
        acts.push_back({press.seconds, press.release, box, true});
    }
    for (const SceneCaret& caret : scene.carets) {
        acts.push_back(
            {caret.from, caret.from,
             boxAround(centreX(caret.rect), centreY(caret.rect), kTypingWidth * line, kTypingHeight * line, scene),
             true});
    }
}

/// Changes that are news, neither specks nor the whole window; of wide ones the left part.
void addChanges(const Scene& scene, const FrameShape& shape, std::vector<Act>& acts) {
    const double speck = kSpeckArea * scene.lineHeight * scene.lineHeight;
    FrontWindow window(scene);
    std::size_t next = 0;
    for (std::int32_t step = 0; step < scene.steps; ++step) {
        const double time = step * scene.step;
        const RealRect& front = window.at(time);
        for (const std::size_t end = scene.changeEnds[static_cast<std::size_t>(step)]; next < end; ++next) {
            const SceneChange& change = scene.changes[next];
            if (change.attention < 1.0 || area(change.rect) < speck ||
                area(intersection(change.rect, front)) > kPageShare * area(front)) {
                continue;
            }
            acts.push_back({time, time + scene.step, leftPart(change.rect, shape, kWorkPart), false});
        }
    }
}

/// When another window comes to the front or the wheel is turned.
std::vector<double> breaksOf(const Scene& scene) {
    std::vector<double> breaks = scene.wheels;
    RealRect last;
    for (const SceneWindow& run : scene.windows) {
        if (!isEmpty(run.rect) && run.rect != last) {
            breaks.push_back(run.from);
            last = run.rect;
        }
    }
    std::sort(breaks.begin(), breaks.end());
    return breaks;
}

} // namespace

std::vector<Site> findSites(const Scene& scene, const FrameShape& shape) {
    std::vector<Act> acts;
    addHand(scene, acts);
    addChanges(scene, shape, acts);
    std::stable_sort(acts.begin(), acts.end(), [](const Act& a, const Act& b) { return a.from < b.from; });
    const std::vector<double> breaks = breaksOf(scene);
    std::vector<Site> sites;
    bool isOpen = false;
    for (const Act& act : acts) {
        if (isOpen) {
            const double left = sites.back().to;
            const auto broken = std::upper_bound(breaks.begin(), breaks.end(), left);
            isOpen = act.from - left <= kIdle && (broken == breaks.end() || *broken > act.from);
        }
        const RealRect all = isOpen ? boundingUnion(sites.back().rect, act.rect) : act.rect;
        const bool fits = shape.fittingZoom(all) >= shape.readable();
        if (isOpen && fits) {
            sites.back().rect = all;
            sites.back().to = std::max(sites.back().to, act.to);
        } else if (!isOpen || act.isByHand) {
            isOpen = shape.fittingZoom(act.rect) >= shape.readable();
            if (!sites.empty()) {
                sites.back().to = std::min(sites.back().to, act.from);
            }
            if (isOpen) {
                sites.push_back({act.from, act.to, act.rect});
            }
        }
    }
    return sites;
}

} // namespace OrvantaNS::camera
