#include "camera/director/PlanCost.h"

#include <algorithm>
#include <cmath>

#include "camera/director/ExactMath.h"

namespace OrvantaNS::camera {

namespace {

// A press closer than this to an edge that is not the region's counts as outside, pixels.
constexpr double kHair = 1.0;
// Part of a miss that a press at the very edge costs.
constexpr double kEdgePart = 0.25;
// The most that part may cost: the edge is a blemish, a miss is a failure.
constexpr double kMostEdge = 7.5;
// Cost of a press during a move that both ends hold.
constexpr double kMovePress = 3.0;

std::size_t firstPress(const PlanRules& rules, std::int32_t step) {
    return step == 0 ? 0 : rules.pressEnds[static_cast<std::size_t>(step) - 1];
}

/// Distance of a press to the nearest edge that is not the region's; negative outside.
double room(const PlanRules& rules, const RealRect& frame, const PlanPress& press) {
    double least = 1e9;
    const auto edge = [&least](double distance, bool isRegionEdge) {
        if (distance < 0.0 || !isRegionEdge) {
            least = std::min(least, distance);
        }
    };
    edge(press.x - frame.left, frame.left <= 0.0);
    edge(press.y - frame.top, frame.top <= 0.0);
    edge(frame.right - press.x, frame.right >= rules.regionWidth);
    edge(frame.bottom - press.y, frame.bottom >= rules.regionHeight);
    return least;
}

/// The last rest ends with the last step: the camera might go then, and never does.
bool isShortRest(const PlanRules& rules, std::int32_t arrival, std::int32_t departure) {
    return std::min(departure, rules.steps - 1) - arrival < rules.calmSteps;
}

} // namespace

bool holdsPress(const PlanRules& rules, const RealRect& frame, const PlanPress& press) {
    return room(rules, frame, press) >= kHair;
}

double restPressCost(const PlanRules& rules, const RealRect& frame, std::int32_t step) {
    double cost = 0.0;
    for (std::size_t i = firstPress(rules, step); i < rules.pressEnds[static_cast<std::size_t>(step)]; ++i) {
        const double least = room(rules, frame, rules.presses[i]);
        const double margin = rules.pressMargin * width(frame) / rules.outputWidth;
        if (least < kHair) {
            cost += rules.presses[i].miss;
        } else if (least < margin) {
            cost += std::min(kMostEdge, kEdgePart * rules.presses[i].miss) * (1.0 - least / margin);
        }
    }
    return cost;
}

double movingPressCost(const PlanPress& press, bool isHeld) {
    return isHeld ? std::min(kMovePress, press.miss) : press.miss;
}

double movePressCost(const PlanRules& rules, const RealRect& from, const RealRect& to, std::int32_t fromStep,
                     std::int32_t toStep) {
    double cost = 0.0;
    for (std::size_t i = firstPress(rules, fromStep); i < firstPress(rules, toStep); ++i) {
        const PlanPress& press = rules.presses[i];
        const bool isHeld = holdsPress(rules, from, press) && holdsPress(rules, to, press);
        cost += movingPressCost(press, isHeld);
    }
    return cost;
}

MoveExtent moveExtent(const RealRect& from, const RealRect& to) {
    const double dx = centreX(to) - centreX(from);
    const double dy = centreY(to) - centreY(from);
    const RealRect& larger = width(to) > width(from) ? to : from;
    const double diagonal = std::sqrt(width(larger) * width(larger) + height(larger) * height(larger));
    return {std::abs(binaryLog(width(to) / width(from))), std::sqrt(dx * dx + dy * dy) / diagonal};
}

double shortRestCost(const PlanRules& rules) { return rules.calm * rules.weights.shortRest; }

double blurCost(const PlanRules& rules, std::int32_t arrival) {
    double cost = 0.0;
    for (std::int32_t step = arrival - rules.moveSteps; step < arrival; ++step) {
        cost += rules.weights.moveBlur * rules.losses->weightOf(step) * rules.losses->stepSeconds();
    }
    return cost;
}

double restCost(const PlanRules& rules, const RealRect& frame, std::int32_t arrival, std::int32_t departure) {
    double cost = rules.losses->loss(frame, arrival, departure);
    for (std::int32_t step = arrival; step < departure; ++step) {
        cost += restPressCost(rules, frame, step);
    }
    return cost;
}

double moveStretchCost(const PlanRules& rules, const RealRect& from, const RealRect& to, std::int32_t arrival) {
    const std::int32_t departure = arrival - rules.moveSteps;
    const MoveExtent extent = moveExtent(from, to);
    return 0.5 * (rules.losses->loss(from, departure, arrival) + rules.losses->loss(to, departure, arrival)) +
           blurCost(rules, arrival) * blurShare(extent) + moveCost(rules, extent) +
           movePressCost(rules, from, to, departure, arrival);
}

double planCost(const PlanRules& rules, const std::vector<PlanShot>& shots) {
    double cost = 0.0;
    for (std::size_t i = 0; i < shots.size(); ++i) {
        const bool isLast = i + 1 == shots.size();
        const std::int32_t departure = isLast ? rules.steps : shots[i + 1].arrival - rules.moveSteps;
        cost += restCost(rules, shots[i].rect, shots[i].arrival, departure);
        if (!isLast) {
            cost += moveStretchCost(rules, shots[i].rect, shots[i + 1].rect, shots[i + 1].arrival);
        }
        if (i > 0 && isShortRest(rules, shots[i].arrival, departure)) {
            cost += shortRestCost(rules);
        }
    }
    return cost;
}

double movesCost(const PlanRules& rules, const std::vector<PlanShot>& shots) {
    PlanRules plain = rules;
    plain.calm = 1.0;
    double cost = 0.0;
    for (std::size_t i = 1; i < shots.size(); ++i) {
        const bool isLast = i + 1 == shots.size();
        const std::int32_t departure = isLast ? rules.steps : shots[i + 1].arrival - rules.moveSteps;
        cost += moveCost(plain, moveExtent(shots[i - 1].rect, shots[i].rect));
        cost += isShortRest(rules, shots[i].arrival, departure) ? shortRestCost(plain) : 0.0;
    }
    return cost;
}

} // namespace OrvantaNS::camera
