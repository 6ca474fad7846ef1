#include "camera/director/Reasons.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>

#include "frame/WrappingArithmetic.h"

namespace OrvantaNS::camera {

namespace {

// Part of a shot's interest from which a kind is worth naming, and the most that are named.
constexpr double kWorthNaming = 0.15;
constexpr std::size_t kMostNamed = 2;
// Two frames are other choices when an edge differs by this part of the width.
constexpr double kOtherFrame = 0.1;
// A kind of which less than this is seen did not fit.
constexpr double kFits = 0.6;

struct Tally {
    double weight = 0.0;
    double seen = 0.0;
    RealRect box;
    std::set<std::uint32_t> sources;
};

Rectangle toPixels(const RealRect& r) {
    return {truncateToInt32(r.left), truncateToInt32(r.right), truncateToInt32(r.top), truncateToInt32(r.bottom)};
}

std::string counted(std::uint32_t count, const std::string& name, const std::string& plural) {
    return count == 1 ? name : std::to_string(count) + " " + plural;
}

/// A kind of evidence as a sentence has it.
std::string phrase(EvidenceKind kind, std::uint32_t count) {
    switch (kind) {
    case EvidenceKind::Press:
        return counted(count, "a press", "presses");
    case EvidenceKind::Drag:
        return counted(count, "a drag", "drags");
    case EvidenceKind::SmallWindow:
        return counted(count, "a small window", "small windows");
    case EvidenceKind::WindowOpens:
        return counted(count, "a window that opens", "windows that open");
    case EvidenceKind::Typing:
        return "typing";
    case EvidenceKind::Change:
        return "changes";
    case EvidenceKind::Page:
    case EvidenceKind::Context:
        return "the window in front";
    case EvidenceKind::Linger:
        return "what was seen last";
    case EvidenceKind::Cursor:
        return "the cursor";
    case EvidenceKind::Whole:
        break;
    }
    return "the whole screen";
}

double shotCost(const PlanRules& rules, const std::vector<PlanShot>& shots, std::size_t index, const RealRect& frame) {
    const bool isLast = index + 1 == shots.size();
    const std::int32_t departure = isLast ? rules.steps : shots[index + 1].arrival - rules.moveSteps;
    double cost = restCost(rules, frame, shots[index].arrival, departure);
    if (index > 0) {
        cost += moveStretchCost(rules, shots[index - 1].rect, frame, shots[index].arrival);
    }
    if (!isLast) {
        cost += moveStretchCost(rules, frame, shots[index + 1].rect, shots[index + 1].arrival);
    }
    return cost;
}

std::string sentence(const std::vector<std::pair<EvidenceKind, DirectorReason>>& kinds, double whole) {
    std::string text;
    std::size_t named = 0;
    for (const auto& [kind, reason] : kinds) {
        if (named == kMostNamed || reason.weight * reason.seen < kWorthNaming * whole) {
            continue;
        }
        text += (named == 0 ? "" : " and ") + phrase(kind, reason.count);
        ++named;
    }
    if (text.empty()) {
        text = "nothing in particular";
    }
    for (const auto& [kind, reason] : kinds) {
        if (reason.weight >= kWorthNaming * whole && reason.seen < kFits) {
            text += "; " + phrase(kind, reason.count) + " did not fit";
            break;
        }
    }
    return text;
}

} // namespace

DirectorShot reasonedShot(const PlanRules& rules, const std::vector<Evidence>& evidence,
                          const std::vector<Candidate>& candidates, const std::vector<PlanShot>& shots,
                          std::size_t index) {
    DirectorShot shot;
    const RealRect& frame = shots[index].rect;
    const bool isLast = index + 1 == shots.size();
    const std::int32_t arrival = shots[index].arrival;
    const std::int32_t departure = isLast ? rules.steps : shots[index + 1].arrival - rules.moveSteps;

    std::array<Tally, kEvidenceKinds> tallies;
    for (std::int32_t step = arrival; step < departure; ++step) {
        const LossTable& losses = *rules.losses;
        for (const std::uint32_t* i = losses.begin(step); i != losses.end(step); ++i) {
            const Weighed& item = losses.piece(*i);
            Tally& tally = tallies[static_cast<std::size_t>(evidence[*i].kind)];
            const double weight = item.weight * losses.scale(step) * losses.stepSeconds();
            tally.box = tally.sources.empty() ? item.rect : boundingUnion(tally.box, item.rect);
            tally.weight += weight;
            tally.seen += weight * LossTable::sight(frame, item);
            tally.sources.insert(*i);
        }
    }
    std::vector<std::pair<EvidenceKind, DirectorReason>> kinds;
    double whole = 0.0;
    for (std::size_t i = 0; i < tallies.size(); ++i) {
        const Tally& tally = tallies[i];
        if (tally.weight > 0.0) {
            const auto kind = static_cast<EvidenceKind>(i);
            kinds.push_back({kind,
                             {std::string(nameOf(kind)), tally.weight, tally.seen / tally.weight, toPixels(tally.box),
                              static_cast<std::uint32_t>(tally.sources.size())}});
            whole += tally.weight;
        }
    }
    std::stable_sort(kinds.begin(), kinds.end(),
                     [](const auto& a, const auto& b) { return a.second.weight > b.second.weight; });
    shot.text = sentence(kinds, whole);
    for (const auto& [kind, reason] : kinds) {
        shot.reasons.push_back(reason);
    }

    shot.cost = shotCost(rules, shots, index, frame);
    for (const Candidate& candidate : candidates) {
        const RealRect& other = candidate.rect;
        const double apart = std::max({std::abs(other.left - frame.left), std::abs(other.top - frame.top),
                                       std::abs(other.right - frame.right), std::abs(other.bottom - frame.bottom)});
        if (candidate.from > arrival || candidate.to < departure || apart < kOtherFrame * width(frame)) {
            continue;
        }
        const double cost = shotCost(rules, shots, index, other);
        if (!shot.hasRunnerUp || cost < shot.runnerUpCost) {
            shot.hasRunnerUp = true;
            shot.runnerUp = toPixels(other);
            shot.runnerUpCost = cost;
        }
    }
    return shot;
}

} // namespace OrvantaNS::camera
