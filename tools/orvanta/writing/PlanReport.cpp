#include "writing/PlanReport.h"

#include <fmt/format.h>

#include "frame/Geometry.h"
#include "terminal/TextFormat.h"
#include "writing/KeyframeOutput.h"

namespace OrvantaNS::command {

namespace {

std::string boxText(const Rectangle& r) { return fmt::format("{}, {} {}x{}", r.left, r.top, width(r), height(r)); }

} // namespace

std::string planText(const DirectorPlan& plan, const Recording& recording) {
    std::string text =
        fmt::format("{} shots, {:.1f} s of missed sight, moves included\n", plan.shots.size(), plan.cost);
    for (const DirectorShot& shot : plan.shots) {
        text += fmt::format("\n{}  {}  zoom {:.2f}  {}\n", formatTime(recording.toSeconds(shot.keyframe.time)),
                            boxText(shot.keyframe.rect), zoomOf(shot.keyframe, recording.params), shot.text);
        text += fmt::format("  costs {:.2f} s", shot.cost);
        text += shot.hasRunnerUp ? fmt::format("; the best other frame, {}, would cost {:.2f} s\n",
                                               boxText(shot.runnerUp), shot.runnerUpCost)
                                 : std::string("; there was no other frame to rest on for so long\n");
        for (const DirectorReason& reason : shot.reasons) {
            text += fmt::format("  {:<12}  {:>6.2f} s of interest, {:>3.0f}% seen, {:>4} within {}\n", reason.kind,
                                reason.weight, 100.0 * reason.seen, reason.count, boxText(reason.rect));
        }
    }
    return text;
}

Json planDocument(const DirectorPlan& plan, const Recording& recording) {
    Json document = requestDocument(recording, EngineChoice::Director);
    document["cost"] = plan.cost;
    Json& shots = document["shots"] = Json::array();
    for (const DirectorShot& shot : plan.shots) {
        Json entry = keyframeEntry({shot.keyframe, OV_MERGE_NONE, std::nullopt, shot.text}, recording, true);
        entry["cost"] = shot.cost;
        entry["runnerUp"] = shot.hasRunnerUp ? edgesOf(shot.runnerUp) : Json();
        entry["runnerUpCost"] = shot.hasRunnerUp ? Json(shot.runnerUpCost) : Json();
        Json& evidence = entry["evidence"] = Json::array();
        for (const DirectorReason& reason : shot.reasons) {
            evidence.push_back({{"kind", reason.kind},
                                {"weight", reason.weight},
                                {"seen", reason.seen},
                                {"count", reason.count},
                                {"rect", edgesOf(reason.rect)}});
        }
        shots.push_back(std::move(entry));
    }
    return document;
}

std::string planJson(const DirectorPlan& plan, const Recording& recording) {
    return jsonText(planDocument(plan, recording));
}

} // namespace OrvantaNS::command
