// What a plan costs, written plainly: the search and the adjustment of shots go by these rules.
#pragma once

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
/// True when a frame holds a press, with a pixel to spare.
ORVANTA_CAMERA_EXPORT bool holdsPress(const PlanRules& rules, const RealRect& frame, const PlanPress& press);
/// Cost of a move for itself, calm included.
ORVANTA_CAMERA_EXPORT double moveCost(const PlanRules& rules, const RealRect& from, const RealRect& to);
/// Cost of a rest that is not long enough to be calm.
ORVANTA_CAMERA_EXPORT double shortRestCost(const PlanRules& rules);
/// Cost of what is missed during the move that arrives at a step, beyond what both ends miss.
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
