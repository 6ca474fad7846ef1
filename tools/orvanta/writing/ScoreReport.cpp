#include "writing/ScoreReport.h"

#include <array>
#include <optional>
#include <string_view>

#include <fmt/format.h>

#include "terminal/TextFormat.h"
#include "writing/Json.h"

namespace OrvantaNS::command {

namespace {

using camera::MomentScore;
using camera::MomentView;

constexpr std::array<std::string_view, 3> kViews{"close", "window", "wide"};

/// Moments of one view, averaged.
struct ViewScore {
    std::size_t moments = 0;
    double seen = 0.0;
    double read = 0.0;
    std::size_t holdable = 0;
    double holdableSeen = 0.0;
    double holdableRead = 0.0;
};

ViewScore scoreOf(const ScoreReport& report, MomentView view) {
    ViewScore sum;
    for (std::size_t i = 0; i < report.moments.size(); ++i) {
        if (report.moments[i].view != view) {
            continue;
        }
        const MomentScore& score = report.scores[i];
        ++sum.moments;
        sum.seen += score.seen;
        sum.read += score.read;
        if (score.isHoldable) {
            ++sum.holdable;
            sum.holdableSeen += score.seen;
            sum.holdableRead += score.read;
        }
    }
    const auto mean = [](double& value, std::size_t count) {
        value = count > 0 ? value / static_cast<double>(count) : 0.0;
    };
    mean(sum.seen, sum.moments);
    mean(sum.read, sum.moments);
    mean(sum.holdableSeen, sum.holdable);
    mean(sum.holdableRead, sum.holdable);
    return sum;
}

std::string percent(std::optional<double> share) {
    return share ? fmt::format("{:.1f}%", 100.0 * *share) : std::string("-");
}

Json shareOrNull(std::optional<double> share) { return share ? Json(*share) : Json(); }

} // namespace

std::string scoreText(const ScoreReport& report) {
    const camera::PathFigures& figures = report.figures;
    std::string text = fmt::format("{} by {} at {}x{}\n", report.recording.name, report.path,
                                   report.recording.params.targetWidth(), report.recording.params.targetHeight());
    const auto line = [&text](std::string_view name, const std::string& value) {
        text += fmt::format("  {:<32}{:>8}\n", name, value);
    };
    line("moves a minute", fmt::format("{:.2f}", figures.movesAMinute));
    line("travel, screen widths a minute", fmt::format("{:.2f}", figures.travelAMinute));
    line("presses", fmt::format("{}", figures.presses));
    line("  inside", percent(figures.inside));
    line("  inside and at rest", percent(figures.atRest));
    line("  inside with room to the edges", percent(figures.withRoom));
    line("readable share", percent(figures.readableShare));
    line("  of presses", percent(figures.pressesRead));
    line("  of typing", percent(figures.typingRead));
    line("  of what was drawn", percent(figures.changesRead));
    line("  of small windows", percent(figures.windowsRead));
    if (report.moments.empty()) {
        return text;
    }
    text += fmt::format("\n  {:<8}{:>8}{:>8}{:>8}{:>12}{:>8}{:>8}\n", "moments", "", "seen", "read", "holdable", "seen",
                        "read");
    for (std::size_t i = 0; i < kViews.size(); ++i) {
        const ViewScore view = scoreOf(report, static_cast<MomentView>(i));
        const auto share = [](double value, std::size_t of) { return of > 0 ? percent(value) : std::string("-"); };
        text += fmt::format("  {:<8}{:>8}{:>8}{:>8}{:>12}{:>8}{:>8}\n", kViews[i], view.moments,
                            share(view.seen, view.moments), share(view.read, view.moments), view.holdable,
                            share(view.holdableSeen, view.holdable), share(view.holdableRead, view.holdable));
    }
    text += fmt::format("\n  {:>10} {:>10}  {:<7}{:>6}{:>6}  {}\n", "from", "to", "view", "seen", "read", "what");
    for (std::size_t i = 0; i < report.moments.size(); ++i) {
        const camera::Moment& moment = report.moments[i];
        text += fmt::format("  {:>10} {:>10}  {:<7}{:>5.0f}%{:>5.0f}%  {}{}\n", formatTime(moment.from),
                            formatTime(moment.to), kViews[static_cast<std::size_t>(moment.view)],
                            100.0 * report.scores[i].seen, 100.0 * report.scores[i].read,
                            report.scores[i].isHoldable ? "" : "(no frame holds it) ", printable(moment.what));
    }
    return text;
}

std::string scoreJson(const ScoreReport& report) {
    const camera::PathFigures& figures = report.figures;
    const Params& params = report.recording.params;
    Json document{{"recording", report.recording.name},
                  {"path", report.path},
                  {"target", {{"width", params.targetWidth()}, {"height", params.targetHeight()}}},
                  {"moves", figures.moves},
                  {"movesAMinute", figures.movesAMinute},
                  {"travelAMinute", figures.travelAMinute},
                  {"presses", figures.presses},
                  {"inside", shareOrNull(figures.inside)},
                  {"insideAtRest", shareOrNull(figures.atRest)},
                  {"insideWithRoom", shareOrNull(figures.withRoom)},
                  {"readableShare", shareOrNull(figures.readableShare)},
                  {"pressesRead", shareOrNull(figures.pressesRead)},
                  {"typingRead", shareOrNull(figures.typingRead)},
                  {"changesRead", shareOrNull(figures.changesRead)},
                  {"windowsRead", shareOrNull(figures.windowsRead)}};
    Json& views = document["views"] = Json::object();
    for (std::size_t i = 0; i < kViews.size(); ++i) {
        const ViewScore view = scoreOf(report, static_cast<MomentView>(i));
        const auto share = [](double value, std::size_t of) { return of > 0 ? Json(value) : Json(); };
        views[std::string(kViews[i])] = {{"moments", view.moments},
                                         {"seen", share(view.seen, view.moments)},
                                         {"read", share(view.read, view.moments)},
                                         {"holdable", view.holdable},
                                         {"holdableSeen", share(view.holdableSeen, view.holdable)},
                                         {"holdableRead", share(view.holdableRead, view.holdable)}};
    }
    Json& moments = document["moments"] = Json::array();
    for (std::size_t i = 0; i < report.moments.size(); ++i) {
        const camera::Moment& moment = report.moments[i];
        moments.push_back({{"from", moment.from},
                           {"to", moment.to},
                           {"view", kViews[static_cast<std::size_t>(moment.view)]},
                           {"seen", report.scores[i].seen},
                           {"read", report.scores[i].read},
                           {"holdable", report.scores[i].isHoldable},
                           {"what", moment.what}});
    }
    return jsonText(document);
}

} // namespace OrvantaNS::command
