// From a request to stretches, and from their plans to keyframes.

#include "OrvantaDirector.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <stdexcept>

#include "OrvantaException.h"
#include "OrvantaWorker.h"
#include "camera/director/Reasons.h"
#include "camera/director/StretchPlan.h"
#include "frame/Geometry.h"
#include "frame/WrappingArithmetic.h"

namespace OrvantaNS {

namespace {

using namespace camera;

// The smallest side of an output frame, and the smallest recording, as the value engine has them: pixels and their
// square.
constexpr std::int32_t kSmallestTargetSide = 64;
constexpr double kSmallestRegionArea = 64.0 * 64.0;

double regionArea(const Rectangle& region) {
    const double wide = static_cast<double>(region.right) - region.left;
    const double high = static_cast<double>(region.bottom) - region.top;
    constexpr double kMost = 2147483647.0; // sides that 32 bits hold
    return wide > 0.0 && high > 0.0 && wide <= kMost && high <= kMost ? wide * high : 0.0;
}

/// The checks of the value engine, in its order and its words.
void checkRequest(const Params& params) {
    if (params.targetWidth() < kSmallestTargetSide || params.targetHeight() < kSmallestTargetSide) {
        throw OrvantaException("Need String! Passed bad width/height to Orvanta", OVERR_BAD_TARGET_SIZE);
    }
    if (params.recordingRegions().empty()) {
        throw OrvantaException("Need String! Must have at least one Recording Region!", OVERR_BAD_REGION);
    }
    const Rectangle& region = params.recordingRegions().front().rect;
    if (width(region) <= params.targetWidth() && height(region) <= params.targetHeight()) {
        throw OrvantaException(
            "Need String! Passed width/height equal to or larger than recording dimensions to Orvanta",
            OVERR_TARGET_TOO_LARGE);
    }
    if (!(params.timeScale() > 0.0) || !std::isfinite(params.timeScale())) {
        throw OrvantaException("Need String! TimeScale may not be Zero!", OVERR_BAD_TIME_SCALE);
    }
    if (regionArea(region) < kSmallestRegionArea) {
        throw OrvantaException("Need String! Recording Region is not large enough!", OVERR_BAD_REGION);
    }
    if (params.clipStop() <= params.clipStart()) {
        throw OrvantaException("No keyframes were created!", OVERR_NO_KEYFRAMES);
    }
}

/// A stretch of the clip with one region.
struct Stretch {
    long long start = 0;
    long long stop = 0;
    Rectangle region;
};

/// The clip, cut where the region changes. Regions too small to be shown leave the camera where it is.
std::vector<Stretch> stretches(const Params& params) {
    std::vector<Stretch> list;
    const auto& regions = params.recordingRegions();
    for (std::size_t i = 0; i < regions.size(); ++i) {
        Stretch one;
        one.start = i == 0 ? params.clipStart() : std::max(params.clipStart(), regions[i].time);
        one.stop = i + 1 < regions.size() ? std::min(params.clipStop(), regions[i + 1].time) : params.clipStop();
        one.region = regions[i].rect;
        if (one.stop <= one.start || regionArea(one.region) < kSmallestRegionArea ||
            (!list.empty() && one.start < list.back().stop)) {
            continue;
        }
        if (!list.empty() && list.back().region == one.region && list.back().stop == one.start) {
            list.back().stop = one.stop;
        } else {
            list.push_back(one);
        }
    }
    return list;
}

/// Reports the progress of stretch after stretch.
class Progress {
public:
    Progress(ProgressReporter* reporter, const Params& params)
        : reporter_(reporter), start_(static_cast<double>(params.clipStart())),
          length_(static_cast<double>(params.clipStop()) - start_) {}

    void report(const Stretch& stretch, double share) const {
        if (reporter_ == nullptr) {
            return;
        }
        if (reporter_->isCancelled()) {
            throw OrvantaException("Need String! User Cancelled", OVERR_USER_CANCELLED);
        }
        const double from = static_cast<double>(stretch.start);
        const double now = from + (static_cast<double>(stretch.stop) - from) * share;
        reporter_->reportProgress(std::clamp(100.0 * (now - start_) / length_, 0.0, 100.0));
    }

private:
    ProgressReporter* reporter_;
    double start_;
    double length_;
};

/// Region pixels to local pixels: those of the first region.
Rectangle localRect(const Rectangle& rect, const Rectangle& region, const Rectangle& first) {
    return relativeTo(rect, wrapSub(first.left, region.left), wrapSub(first.top, region.top));
}

Rectangle toPixels(const RealRect& r) {
    return {truncateToInt32(r.left), truncateToInt32(r.right), truncateToInt32(r.top), truncateToInt32(r.bottom)};
}

/// The longest fade that plans are made for, seconds: no host waits longer, and a move must fit a stretch.
constexpr double kLongestFade = 30.0;

DirectorPlan planClip(const DirectorControls& controls, const Params& params, ProgressReporter* reporter,
                      bool withReasons) {
    checkRequest(params);
    const DirectorWeights weights;
    const Progress progress(reporter, params);
    const Rectangle first = params.recordingRegions().front().rect;
    const double fade = static_cast<double>(params.fadeDuration()) / params.timeScale();
    PlanWishes wishes;
    wishes.calm = controls.calm;
    wishes.fadeSeconds = std::clamp(fade, 0.0, kLongestFade);
    wishes.arePressesHard = controls.presses == DirectorPresses::Always;

    DirectorPlan plan;
    for (const Stretch& stretch : stretches(params)) {
        progress.report(stretch, 0.0);
        const Scene scene = readScene(params, stretch.region, stretch.start, stretch.stop);
        const FrameShape shape(params.targetWidth(), params.targetHeight(), scene.width, scene.height,
                               controls.readable, controls.overhang);
        const std::vector<Evidence> evidence = gatherEvidence(scene, shape, weights);
        const LossTable losses(scene, shape, weights, evidence);
        const PlanRules rules = planRules(scene, shape, wishes, weights, losses);
        const std::vector<Candidate> candidates = candidatesFor(scene, shape, evidence, wishes.fadeSeconds);
        const std::vector<PlanShot> shots =
            planStretch(rules, shape, candidates, [&](double share) { progress.report(stretch, share); });
        plan.cost += planCost(rules, shots);
        for (std::size_t i = 0; i < shots.size(); ++i) {
            const bool opensWhole = plan.shots.empty() && i == 0 && shape.holdsRegion() &&
                                    width(shots[0].rect) == shape.widest() && stretch.region == first;
            if (opensWhole && (shots.size() > 1)) {
                continue; // the clip begins with the whole recording anyway
            }
            DirectorShot shot;
            if (withReasons) {
                shot = reasonedShot(rules, evidence, candidates, shots, i);
                shot.runnerUp = localRect(shot.runnerUp, stretch.region, first);
                for (DirectorReason& reason : shot.reasons) {
                    reason.rect = localRect(reason.rect, stretch.region, first);
                }
            }
            const double seconds = i == 0 ? 0.0 : (shots[i].arrival - rules.moveSteps) * scene.step;
            shot.keyframe.time = wrapAdd(stretch.start, truncateToInt64(seconds * params.timeScale() + 0.5));
            shot.keyframe.rect = localRect(toPixels(shots[i].rect), stretch.region, first);
            plan.shots.push_back(std::move(shot));
        }
        progress.report(stretch, 1.0);
    }
    if (plan.shots.empty()) {
        throw OrvantaException("No keyframes were created!", OVERR_NO_KEYFRAMES);
    }
    return plan;
}

} // namespace

OrvantaDirector::OrvantaDirector(const DirectorControls& controls) : controls_(controls) {
    if (!(controls.calm > 0.0) || !std::isfinite(controls.calm)) {
        throw std::invalid_argument("OrvantaDirector: calm must be above 0");
    }
    if (!(controls.readable > 0.0) || !(controls.readable <= 1.0)) {
        throw std::invalid_argument("OrvantaDirector: readable must be above 0 and at most 1");
    }
}

OrvantaDirector::~OrvantaDirector() = default;

OrvantaDirector::KeyframeList OrvantaDirector::calcOrvantaKeyframes(const Params& params,
                                                                    ProgressReporter* reporter) const {
    auto result = std::make_shared<std::vector<OV_TIME_RECT>>();
    for (const DirectorShot& shot : planClip(controls_, params, reporter, false).shots) {
        result->push_back(shot.keyframe);
    }
    return result;
}

OrvantaDirector::KeyframeList OrvantaDirector::calcOrvantaKeyframeAtTime(const Params& params, long long time) const {
    const KeyframeList all = calcOrvantaKeyframes(params, nullptr);
    auto result = std::make_shared<std::vector<OV_TIME_RECT>>();
    OV_TIME_RECT holds{time, localRegion(params.recordingRegions().front().rect)};
    for (const OV_TIME_RECT& keyframe : *all) {
        if (keyframe.time <= time) {
            holds.rect = keyframe.rect;
        }
    }
    result->push_back(holds);
    return result;
}

OrvantaDirector::KeyframeList OrvantaDirector::calcKeyframeAtWindow(const Params& params) const {
    return OrvantaWorker().calcKeyframeAtWindow(params);
}

DirectorPlan OrvantaDirector::plan(const Params& params, ProgressReporter* reporter) const {
    return planClip(controls_, params, reporter, true);
}

} // namespace OrvantaNS
