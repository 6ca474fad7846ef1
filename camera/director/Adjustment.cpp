#include "camera/director/Adjustment.h"

#include <algorithm>
#include <array>

namespace OrvantaNS::camera {

namespace {

// The first step of the search, as a part of the frame's width, and how often it is halved.
constexpr double kFirstStep = 1.0 / 8.0;
constexpr int kHalvings = 6;
// Tries at one step length: frames that creep further have found no better place.
constexpr int kMostTries = 12;
// A gain below this is the rounding of sums.
constexpr double kGain = 1e-6;

struct Direction {
    double x;
    double y;
    double size;
};
constexpr std::array<Direction, 10> kDirections{{{1, 0, 0},
                                                 {-1, 0, 0},
                                                 {0, 1, 0},
                                                 {0, -1, 0},
                                                 {0, 0, 1},
                                                 {0, 0, -1},
                                                 {1, 0, -1},
                                                 {-1, 0, -1},
                                                 {0, 1, -1},
                                                 {0, -1, -1}}};

} // namespace

void adjustShots(const PlanRules& rules, const FrameShape& shape, std::vector<PlanShot>& shots) {
    for (std::size_t i = 0; i < shots.size(); ++i) {
        const bool isLast = i + 1 == shots.size();
        const std::int32_t departure = isLast ? rules.steps : shots[i + 1].arrival - rules.moveSteps;
        const auto cost = [&](const RealRect& frame) {
            double sum = restCost(rules, frame, shots[i].arrival, departure);
            if (i > 0) {
                sum += moveStretchCost(rules, shots[i - 1].rect, frame, shots[i].arrival);
            }
            if (!isLast) {
                sum += moveStretchCost(rules, frame, shots[i + 1].rect, shots[i + 1].arrival);
            }
            return sum;
        };
        RealRect best = shots[i].rect;
        double least = cost(best);
        double step = width(best) * kFirstStep;
        for (int halving = 0; halving < kHalvings && step >= 1.0; ++halving, step /= 2.0) {
            bool isBetter = true;
            for (int tries = 0; isBetter && tries < kMostTries; ++tries) {
                isBetter = false;
                for (const Direction& go : kDirections) {
                    const RealRect frame =
                        shape.frame(centreX(best) + go.x * step, centreY(best) + go.y * step / shape.ratio(),
                                    width(best) + 2.0 * go.size * step);
                    if (frame == best) {
                        continue;
                    }
                    const double other = cost(frame);
                    if (other < least - kGain) {
                        least = other;
                        best = frame;
                        isBetter = true;
                    }
                }
            }
        }
        shots[i].rect = best;
    }
}

} // namespace OrvantaNS::camera
