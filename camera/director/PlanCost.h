// What a plan costs, written plainly: the search and the adjustment of shots go by these rules.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "OrvantaCameraExport.h"
#include "camera/director/Loss.h"

namespace OrvantaNS::camera {

/// A press as plans see it.
struct PlanPress {
    std::int32_t step = 0;
    double x = 0.0;
    double y = 0.0;
    double miss = 0.0; ///< What it costs to leave it out.
};

/// One shot of a plan: at rest on `rect` from step `arrival` until the next shot's move begins.
struct PlanShot {
    std::int32_t arrival = 0; ///< The move there takes the steps before it; 0 for the first shot, which has no move.
    RealRect rect;

    friend bool operator==(const PlanShot&, const PlanShot&) = default;
};

/// Everything that gives a plan its cost.
struct PlanRules {
    const LossTable* losses = nullptr;
    DirectorWeights weights;
    double calm = 1.0;
    double outputWidth = 0.0;
    double regionWidth = 0.0;
    double regionHeight = 0.0;
    std::int32_t steps = 1;             ///< Of the stretch.
    std::int32_t moveSteps = 4;         ///< A move takes.
    std::int32_t restSteps = 6;         ///< A rest takes at least.
    std::int32_t calmSteps = 20;        ///< A rest that is no longer than short.
    std::vector<PlanPress> presses;     ///< By step.
    std::vector<std::size_t> pressEnds; ///< For each step, one past its last press.
    double pressMargin = 24.0;          ///< Output pixels of room to an edge that is not the region's.
};

/// Cost of the presses of a step while the camera rests on a frame.
ORVANTA_CAMERA_EXPORT double restPressCost(const PlanRules& rules, const RealRect& frame, std::int32_t step);
/// Cost of the presses of steps [from, to) while the camera moves between two frames.
ORVANTA_CAMERA_EXPORT double movePressCost(const PlanRules& rules, const RealRect& from, const RealRect& to,
                                           std::int32_t fromStep, std::int32_t toStep);
/// Cost of one press while the camera moves, by whether both frames hold it.
double movingPressCost(const PlanPress& press, bool isHeld);
/// True when a frame holds a press, with a pixel to spare.
ORVANTA_CAMERA_EXPORT bool holdsPress(const PlanRules& rules, const RealRect& frame, const PlanPress& press);
/// How far a move goes.
struct MoveExtent {
    double octaves = 0.0; ///< Of zoom.
    double way = 0.0;     ///< Of the centre, in diagonals of the larger frame.
};
ORVANTA_CAMERA_EXPORT MoveExtent moveExtent(const RealRect& from, const RealRect& to);
/// Cost of a move for itself, calm included.
inline double moveCost(const PlanRules& rules, const MoveExtent& extent) {
    const DirectorWeights& w = rules.weights;
    return rules.calm * (w.move + w.moveZoom * extent.octaves + w.moveWay * extent.way);
}
/// The part of the sight that a move blurs, 0 to 1: while the camera shifts a little, one can go on reading.
inline double blurShare(const MoveExtent& extent) {
    // Octaves of zoom, or diagonals of way, from which nothing can be read while the camera moves.
    constexpr double kBlurred = 0.5;
    return std::min(1.0, (extent.octaves + extent.way) / kBlurred);
}
/// Cost of a rest that is not long enough to be calm.
ORVANTA_CAMERA_EXPORT double shortRestCost(const PlanRules& rules);
/// Cost of what a long move that arrives at a step misses, beyond what both ends miss.
double blurCost(const PlanRules& rules, std::int32_t arrival);

/// Cost of resting on a frame from `arrival` to `departure`.
ORVANTA_CAMERA_EXPORT double restCost(const PlanRules& rules, const RealRect& frame, std::int32_t arrival,
                                      std::int32_t departure);
/// Cost of the move that arrives at a step, with all that happens during it.
ORVANTA_CAMERA_EXPORT double moveStretchCost(const PlanRules& rules, const RealRect& from, const RealRect& to,
                                             std::int32_t arrival);
/// Cost of a whole plan.
ORVANTA_CAMERA_EXPORT double planCost(const PlanRules& rules, const std::vector<PlanShot>& shots);
/// Cost of the moves of a plan for themselves, for a calm of 1.
ORVANTA_CAMERA_EXPORT double movesCost(const PlanRules& rules, const std::vector<PlanShot>& shots);

} // namespace OrvantaNS::camera
