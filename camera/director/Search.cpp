#include "camera/director/Search.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "camera/director/ExactMath.h"

namespace OrvantaNS::camera {

namespace {

constexpr double kNever = 1e300;
// Steps between two reports.
constexpr std::int32_t kReportSteps = 64;
// Presses within a move for which each candidate has a bit; no hand presses more often.
constexpr std::size_t kHeldBits = 64;

/// How the camera came to rest on a candidate at a step.
enum class Came : std::uint8_t {
    Stayed,    ///< It rested there a step before.
    ShortRest, ///< Its shortest rest after a move is over.
    CalmRest,  ///< A calm rest after a move is over.
    Began,     ///< The stretch begins.
};

/// One candidate during its life. `ring` arrays hold the last steps only.
struct Life {
    std::int32_t from = 0;
    std::int32_t to = 0;
    double zoomLog = 0.0;
    double diagonal = 0.0;
    std::size_t offset = 0;       ///< Of its first step among all states.
    double rest = kNever;         ///< Least cost of resting here at the present step, free to go.
    std::vector<double> spent;    ///< Ring: loss of resting here up to a step.
    std::vector<double> arrivals; ///< Ring: least cost of arriving at a step.
    std::uint64_t held = 0;       ///< A bit for each press of the moves that begin now: set where the frame holds it.
};

class Search {
public:
    Search(const PlanRules& rules, const std::vector<Candidate>& candidates)
        : rules_(rules), candidates_(candidates), lives_(candidates.size()),
          ring_(static_cast<std::size_t>(std::max(rules.restSteps, rules.calmSteps) + 2 * rules.moveSteps + 2)) {
        std::size_t states = 0;
        for (std::size_t k = 0; k < candidates.size(); ++k) {
            Life& life = lives_[k];
            life.from = candidates[k].from;
            life.to = std::min(candidates[k].to, rules.steps);
            const RealRect& rect = candidates[k].rect;
            life.zoomLog = binaryLog(rules.outputWidth / width(rect));
            life.diagonal = std::sqrt(width(rect) * width(rect) + height(rect) * height(rect));
            life.offset = states;
            states += static_cast<std::size_t>(life.to - life.from);
            births_.push_back(static_cast<std::uint32_t>(k));
        }
        std::stable_sort(births_.begin(), births_.end(),
                         [this](std::uint32_t a, std::uint32_t b) { return lives_[a].from < lives_[b].from; });
        came_.assign(states, Came::Stayed);
        origin_.assign(states, 0);
    }

    std::vector<PlanShot> run(const std::function<void(double)>& progress) {
        for (std::int32_t step = 0; step < rules_.steps; ++step) {
            if (progress && step % kReportSteps == 0) {
                progress(static_cast<double>(step) / rules_.steps);
            }
            bear(step);
            settle(step);
            depart(step);
            bury(step);
        }
        return trace();
    }

private:
    std::size_t slot(std::int32_t step) const { return static_cast<std::size_t>(step) % ring_; }
    std::size_t state(std::uint32_t k, std::int32_t step) const {
        return lives_[k].offset + static_cast<std::size_t>(step - lives_[k].from);
    }

    /// Candidates whose life begins before the moves that depart now have arrived join in. Their losses are needed from
    /// the departure of the first move on.
    void bear(std::int32_t step) {
        while (nextBirth_ < births_.size() && lives_[births_[nextBirth_]].from <= step + rules_.moveSteps) {
            Life& life = lives_[births_[nextBirth_]];
            life.spent.assign(ring_, 0.0);
            life.arrivals.assign(ring_, kNever);
            // Before a candidate's life began only the moves to it count, with no presses.
            double spent = 0.0;
            for (std::int32_t s = step; s < std::min(step + rules_.moveSteps, rules_.steps); ++s) {
                life.spent[slot(s)] = spent;
                spent += lossAt(births_[nextBirth_], s);
            }
            life.spent[slot(std::min(step + rules_.moveSteps, rules_.steps))] = spent;
            alive_.push_back(births_[nextBirth_]);
            ++nextBirth_;
        }
    }

    /// Losses up to a step alone, presses apart: moves count half of the losses but not the presses of their ends.
    double lossAt(std::uint32_t k, std::int32_t step) const {
        return rules_.losses->loss(candidates_[k].rect, lives_[k].zoomLog, step) * rules_.losses->stepSeconds();
    }

    void settle(std::int32_t step) {
        for (const std::uint32_t k : alive_) {
            Life& life = lives_[k];
            // One step of looking ahead for the moves.
            const std::int32_t ahead = step + rules_.moveSteps;
            if (ahead < rules_.steps) {
                life.spent[slot(ahead + 1)] = life.spent[slot(ahead)] + lossAt(k, ahead);
            }
            life.arrivals[slot(step + rules_.moveSteps)] = kNever;
            if (step < life.from || step >= life.to) {
                life.rest = kNever;
                continue;
            }
            double best = kNever;
            Came came = Came::Stayed;
            if (step == 0) {
                best = 0.0;
                came = Came::Began;
            } else if (life.rest < kNever) {
                best = life.rest + (life.spent[slot(step)] - life.spent[slot(step - 1)]) + presses(k, step - 1, step);
            }
            const auto rested = [&](std::int32_t rest, double extra, Came how) {
                const std::int32_t arrival = step - rest;
                if (arrival < life.from) {
                    return;
                }
                const double arrived = life.arrivals[slot(arrival)];
                if (arrived >= kNever) {
                    return;
                }
                const double cost =
                    arrived + (life.spent[slot(step)] - life.spent[slot(arrival)]) + presses(k, arrival, step) + extra;
                if (cost < best) {
                    best = cost;
                    came = how;
                }
            };
            rested(rules_.restSteps, shortRestCost(rules_), Came::ShortRest);
            rested(rules_.calmSteps, 0.0, Came::CalmRest);
            life.rest = best;
            came_[state(k, step)] = came;
        }
    }

    double presses(std::uint32_t k, std::int32_t from, std::int32_t to) const {
        double cost = 0.0;
        const std::size_t first = from == 0 ? 0 : rules_.pressEnds[static_cast<std::size_t>(from) - 1];
        if (first == rules_.pressEnds[static_cast<std::size_t>(to) - 1]) {
            return 0.0;
        }
        for (std::int32_t step = from; step < to; ++step) {
            cost += restPressCost(rules_, candidates_[k].rect, step);
        }
        return cost;
    }

    /// The presses that fall into moves which begin at one step and end at another.
    struct PressWindow {
        std::size_t first;
        std::size_t last;
    };

    /// Finds them, and notes for each candidate which of them it holds: every pair of candidates asks for it.
    PressWindow pressesFrom(std::int32_t step, std::int32_t arrival) {
        const PressWindow window{step == 0 ? 0 : rules_.pressEnds[static_cast<std::size_t>(step) - 1],
                                 rules_.pressEnds[static_cast<std::size_t>(arrival) - 1]};
        if (window.first == window.last || window.last - window.first > kHeldBits) {
            return window;
        }
        for (const std::uint32_t k : alive_) {
            std::uint64_t held = 0;
            for (std::size_t i = window.first; i < window.last; ++i) {
                const bool isHeld = holdsPress(rules_, candidates_[k].rect, rules_.presses[i]);
                held |= static_cast<std::uint64_t>(isHeld) << (i - window.first);
            }
            lives_[k].held = held;
        }
        return window;
    }

    /// What `movePressCost` says.
    double pressCost(const PressWindow& window, std::uint32_t from, std::uint32_t to, std::int32_t step,
                     std::int32_t arrival) const {
        if (window.last - window.first > kHeldBits) {
            return movePressCost(rules_, candidates_[from].rect, candidates_[to].rect, step, arrival);
        }
        const std::uint64_t held = lives_[from].held & lives_[to].held;
        double cost = 0.0;
        for (std::size_t i = window.first; i < window.last; ++i) {
            cost += movingPressCost(rules_.presses[i], (held >> (i - window.first) & 1) != 0);
        }
        return cost;
    }

    /// All moves that begin now.
    void depart(std::int32_t step) {
        const std::int32_t arrival = step + rules_.moveSteps;
        if (arrival >= rules_.steps) {
            return;
        }
        leaving_.clear();
        for (const std::uint32_t q : alive_) {
            const Life& life = lives_[q];
            if (life.rest < kNever) {
                leaving_.push_back({life.rest + 0.5 * (life.spent[slot(arrival)] - life.spent[slot(step)]), q});
            }
        }
        std::sort(leaving_.begin(), leaving_.end(), [](const Leaving& a, const Leaving& b) {
            return a.cost != b.cost ? a.cost < b.cost : a.candidate < b.candidate;
        });
        const PressWindow presses = pressesFrom(step, arrival);
        const double blur = blurCost(rules_, arrival);
        const double least = rules_.calm * rules_.weights.move;
        for (const std::uint32_t k : alive_) {
            Life& life = lives_[k];
            if (arrival < life.from || arrival + rules_.restSteps >= life.to) {
                continue;
            }
            const RealRect& to = candidates_[k].rect;
            double best = kNever;
            std::uint32_t from = 0;
            for (const Leaving& one : leaving_) {
                if (one.cost + least >= best) {
                    break;
                }
                if (one.candidate == k) {
                    continue;
                }
                const RealRect& rect = candidates_[one.candidate].rect;
                const Life& other = lives_[one.candidate];
                MoveExtent extent{std::abs(life.zoomLog - other.zoomLog), 0.0};
                if (one.cost + moveCost(rules_, extent) + blur * blurShare(extent) >= best) {
                    continue; // dearer already without its way, whose root takes time
                }
                const double dx = centreX(to) - centreX(rect);
                const double dy = centreY(to) - centreY(rect);
                extent.way = std::sqrt(dx * dx + dy * dy) / std::max(life.diagonal, other.diagonal);
                double cost = one.cost + moveCost(rules_, extent) + blur * blurShare(extent);
                if (cost >= best) {
                    continue;
                }
                if (presses.first != presses.last) {
                    cost += pressCost(presses, one.candidate, k, step, arrival);
                }
                if (cost < best) {
                    best = cost;
                    from = one.candidate;
                }
            }
            if (best < kNever) {
                life.arrivals[slot(arrival)] = best + 0.5 * (life.spent[slot(arrival)] - life.spent[slot(step)]);
                origin_[state(k, arrival)] = from;
            }
        }
    }

    void bury(std::int32_t step) {
        std::erase_if(alive_, [&](std::uint32_t k) {
            if (lives_[k].to > step + 1 || step == rules_.steps - 1) {
                return false;
            }
            lives_[k].spent = {};
            lives_[k].arrivals = {};
            return true;
        });
    }

    std::vector<PlanShot> trace() const {
        const std::int32_t last = rules_.steps - 1;
        std::uint32_t k = 0;
        double best = kNever;
        for (const std::uint32_t q : alive_) {
            const double cost = lives_[q].rest + lossAt(q, last) + presses(q, last, last + 1);
            if (cost < best) {
                best = cost;
                k = q;
            }
        }
        std::vector<PlanShot> shots;
        std::int32_t step = last;
        for (;;) {
            const Came came = came_[state(k, step)];
            if (came == Came::Stayed) {
                --step;
                continue;
            }
            if (came == Came::Began) {
                shots.push_back({0, candidates_[k].rect});
                break;
            }
            const std::int32_t arrival = step - (came == Came::ShortRest ? rules_.restSteps : rules_.calmSteps);
            shots.push_back({arrival, candidates_[k].rect});
            k = origin_[state(k, arrival)];
            step = arrival - rules_.moveSteps;
        }
        std::reverse(shots.begin(), shots.end());
        return shots;
    }

    struct Leaving {
        double cost;
        std::uint32_t candidate;
    };

    const PlanRules& rules_;
    const std::vector<Candidate>& candidates_;
    std::vector<Life> lives_;
    std::size_t ring_;
    std::vector<std::uint32_t> births_; ///< Candidates by the beginning of their lives.
    std::size_t nextBirth_ = 0;
    std::vector<std::uint32_t> alive_;
    std::vector<Leaving> leaving_;
    std::vector<Came> came_;            ///< For each state.
    std::vector<std::uint32_t> origin_; ///< For each state: the candidate from which the camera arrives then.
};

} // namespace

std::vector<PlanShot> cheapestPlan(const PlanRules& rules, const std::vector<Candidate>& candidates,
                                   const std::function<void(double)>& progress) {
    return Search(rules, candidates).run(progress);
}

} // namespace OrvantaNS::camera
