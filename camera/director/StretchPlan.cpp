#include "camera/director/StretchPlan.h"

#include <algorithm>
#include <cmath>

#include "camera/director/Adjustment.h"
#include "camera/director/Search.h"

namespace OrvantaNS::camera {

namespace {

// ---- Rests, seconds ----
constexpr double kShortestRest = 1.5;
constexpr double kCalmRest = 5.0;

// ---- Misses: costs ----
// A press that no path need give up. Far above what any stretch of seconds may weigh.
constexpr double kMiss = 1000.0;
// A press that cannot be shown together with another that is close in time.
constexpr double kExcusedMiss = 30.0;
// A press when presses are held only where it is cheap.
constexpr double kCheapMiss = 1.5;
// At the clip's start the camera may still be on its way, seconds.
constexpr double kStartSeconds = 1.5;

// Presses before and after one that are looked at: nobody presses more often within seconds.
constexpr std::size_t kMostNeighbours = 256;

/// True when the press and another within `reach` seconds are further apart than the largest frame is wide or high.
bool isExcused(const Scene& scene, const FrameShape& shape, std::size_t index, double reach) {
    const ScenePress& press = scene.presses[index];
    if (press.seconds < kStartSeconds) {
        return true;
    }
    const auto conflicts = [&](const ScenePress& other) {
        return std::abs(other.x - press.x) > shape.widest() - 4.0 ||
               std::abs(other.y - press.y) > shape.heightOf(shape.widest()) - 4.0;
    };
    const std::size_t first = index > kMostNeighbours ? index - kMostNeighbours : 0;
    const std::size_t last = std::min(scene.presses.size(), index + 1 + kMostNeighbours);
    for (std::size_t i = index; i-- > first && press.seconds - scene.presses[i].seconds <= reach;) {
        if (conflicts(scene.presses[i])) {
            return true;
        }
    }
    for (std::size_t i = index + 1; i < last && scene.presses[i].seconds - press.seconds <= reach; ++i) {
        if (conflicts(scene.presses[i])) {
            return true;
        }
    }
    return false;
}

/// Seconds within which presses must be held together: a rest and the moves on both of its sides.
double reachSeconds(double fadeSeconds) { return kShortestRest + 2.0 * fadeSeconds; }

} // namespace

PlanRules planRules(const Scene& scene, const FrameShape& shape, const PlanWishes& wishes,
                    const DirectorWeights& weights, const LossTable& losses) {
    PlanRules rules;
    rules.losses = &losses;
    rules.weights = weights;
    rules.calm = wishes.calm;
    rules.outputWidth = shape.outputWidth();
    rules.regionWidth = scene.width;
    rules.regionHeight = scene.height;
    rules.steps = scene.steps;
    const auto inSteps = [&scene](double seconds) {
        return static_cast<std::int32_t>(std::min(std::ceil(seconds / scene.step), scene.steps * 1.0 + 1.0));
    };
    rules.moveSteps = std::max(1, inSteps(wishes.fadeSeconds));
    rules.restSteps = std::max(1, inSteps(kShortestRest));
    rules.calmSteps = std::max(rules.restSteps, inSteps(kCalmRest));
    rules.pressEnds.assign(static_cast<std::size_t>(scene.steps), 0);
    std::size_t next = 0;
    for (std::int32_t step = 0; step < scene.steps; ++step) {
        for (; next < scene.presses.size() && scene.stepAt(scene.presses[next].seconds) <= step; ++next) {
            const ScenePress& press = scene.presses[next];
            const double miss = !wishes.arePressesHard                                            ? kCheapMiss
                                : isExcused(scene, shape, next, reachSeconds(wishes.fadeSeconds)) ? kExcusedMiss
                                                                                                  : kMiss;
            rules.presses.push_back({step, press.x, press.y, miss});
        }
        rules.pressEnds[static_cast<std::size_t>(step)] = rules.presses.size();
    }
    return rules;
}

std::vector<Candidate> candidatesFor(const Scene& scene, const FrameShape& shape, const std::vector<Evidence>& evidence,
                                     double fadeSeconds) {
    return findCandidates(scene, shape, evidence, reachSeconds(fadeSeconds));
}

std::vector<PlanShot> planStretch(const PlanRules& rules, const FrameShape& shape,
                                  const std::vector<Candidate>& candidates,
                                  const std::function<void(double)>& progress) {
    std::vector<PlanShot> shots = cheapestPlan(rules, candidates, progress);
    adjustShots(rules, shape, shots);
    return shots;
}

} // namespace OrvantaNS::camera
