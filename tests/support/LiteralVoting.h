// The election tick by tick, with a map entry for every voted tick: slow, obvious, and the yardstick of the engine.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <map>
#include <utility>
#include <vector>

#include "OrvantaVotingAlgorithm.h"
#include "frame/WrappingArithmetic.h"

namespace OrvantaNS::testing {

/// Keeps every percentage that was reported, and fails the engine that asks whether it is cancelled.
class ReportLog : public ProgressReporter {
public:
    std::vector<double> percents;
    int cancelQuestions = 0;

    void reportProgress(double percent) override { percents.push_back(percent); }
    bool isCancelled() override {
        ++cancelQuestions;
        return true;
    }
};

class LiteralVoting {
public:
    using Targets = OrvantaVotingAlgorithm::Targets;
    using Samples = OrvantaVotingAlgorithm::Samples;
    using Event = OrvantaVotingAlgorithm::RectangleEventData;
    using Votes = std::map<long long, std::vector<double>>;

    static std::vector<OV_TIME_RECT> keyframes(const Params& params, ProgressReporter* reporter) {
        const Targets targets = ballot(params);
        Votes votes;
        cast(params, votes, targets, reporter, 0, 30);
        std::vector<OV_TIME_RECT> result;
        for (const Event& event : withoutRepeats(apart(winners(votes, reporter, 50, 70), params.fadeDuration()))) {
            result.push_back({event.time, targets[static_cast<std::size_t>(event.targetIndex)].first});
        }
        if (reporter != nullptr) {
            reporter->reportProgress(100.0);
        }
        return result;
    }

    /// The keyframe at `time`, from votes cast before.
    static OV_TIME_RECT keyframeAt(const Votes& votes, const Targets& targets, long long time) {
        std::size_t answer = targets.size() - 1;
        const auto entry = votes.lower_bound(time);
        if (entry != votes.end()) {
            double best = 0.0;
            for (std::size_t i = 0; i < entry->second.size(); ++i) {
                if (entry->second[i] > best) {
                    best = entry->second[i];
                    answer = i;
                }
            }
        }
        return {time, targets[answer].first};
    }

    static Targets ballot(const Params& params) {
        const Rectangle& region = params.recordingRegions()[0].rect;
        const int w = wrapSub(region.right, region.left);
        const int h = wrapSub(region.bottom, region.top);
        Targets out;
        grid(region, params.targetWidth(), params.targetHeight(), 4, 4, out);
        const double byWidth = static_cast<double>(params.targetWidth()) / w;
        const double byHeight = static_cast<double>(params.targetHeight()) / h;
        const double s = ((byHeight < byWidth ? byHeight : byWidth) + 1.0) * 0.5;
        grid(region, truncateToInt32(w * s), truncateToInt32(h * s), 3, 2, out);
        out.push_back({{std::min(0, w), std::max(0, w), std::min(0, h), std::max(0, h)}, 1});
        return out;
    }

    static void grid(const Rectangle& bounds, int width, int height, int steps, int weight, Targets& out) {
        const int rangeX = wrapSub(wrapSub(bounds.right, width), bounds.left);
        const int rangeY = wrapSub(wrapSub(bounds.bottom, height), bounds.top);
        for (int i = 0; i < steps; ++i) {
            for (int j = 0; j < steps; ++j) {
                const int x = truncateToInt32(static_cast<double>(i) / (steps - 1) * rangeX);
                const int y = truncateToInt32(static_cast<double>(j) / (steps - 1) * rangeY);
                const int otherX = wrapAdd(x, width);
                const int otherY = wrapAdd(y, height);
                out.push_back(
                    {{std::min(x, otherX), std::max(x, otherX), std::min(y, otherY), std::max(y, otherY)}, weight});
            }
        }
    }

    static void cast(const Params& params, Votes& votes, const Targets& targets, ProgressReporter* reporter, int start,
                     int stop) {
        const double scale = params.timeScale();
        const int mid = (stop - start) / 2 + start;
        castSamples(
            clicks(params), truncateToInt32(scale * 0.5), truncateToInt32(scale), [](int) { return 8.0; }, votes,
            targets, reporter, start, mid);
        const int full = truncateToInt32(scale);
        const int end = truncateToInt32(scale * 3.0);
        const auto windowWeight = [full, end](int k) {
            return k <= full ? 20.0 : static_cast<double>(1 - (k - full) / (end - full)) * 20.0;
        };
        castSamples(windows(params), truncateToInt32(scale * 0.3333333333333333), truncateToInt32(scale * 3.0),
                    windowWeight, votes, targets, reporter, mid, stop);
    }

    static Samples clicks(const Params& params) {
        Samples samples;
        Rectangle point;
        for (const OV_MOUSE_ACTION& action : params.cursorActions()) {
            if (action.action == 0 || action.action == 2) {
                for (const OV_MOUSE_LOCATION& location : params.cursorLocations()) {
                    if (location.time <= action.time) {
                        point = {location.x, location.x, location.y, location.y};
                    }
                }
                samples.push_back({action.time, point});
            }
        }
        return samples;
    }

    static Samples windows(const Params& params) {
        Samples samples;
        Rectangle last;
        for (const OV_TIME_RECT& window : params.foreWindows()) {
            if (!(window.rect == last)) {
                samples.push_back(window);
                last = window.rect;
            }
        }
        return samples;
    }

    static void castSamples(const Samples& samples, int before, int after, const std::function<double(int)>& weight,
                            Votes& votes, const Targets& targets, ProgressReporter* reporter, int start, int stop) {
        for (std::size_t n = 1; n <= samples.size(); ++n) {
            if (reporter != nullptr) {
                reporter->reportProgress(start + (stop - start) *
                                                     (static_cast<double>(n) / static_cast<double>(samples.size())));
            }
            const Rectangle& a = samples[n - 1].rect;
            for (std::size_t t = 0; t < targets.size(); ++t) {
                const Rectangle& r = targets[t].first;
                const bool holds = r.left <= a.left && r.right >= a.right && r.top <= a.top && r.bottom >= a.bottom;
                if (!holds || !(-static_cast<long long>(before) < after)) {
                    continue;
                }
                const double dx =
                    (wrapAdd(a.left, a.right) * 0.5 - wrapAdd(r.left, r.right) / 2) / wrapSub(r.right, r.left);
                const double dy =
                    (wrapAdd(a.top, a.bottom) * 0.5 - wrapAdd(r.top, r.bottom) / 2) / wrapSub(r.bottom, r.top);
                const double closeness = 1.0 - std::fabs((dx * dx + dy * dy) * 0.5);
                for (long long k = -static_cast<long long>(before); k < after; ++k) {
                    const long long time = wrapAdd(samples[n - 1].time, k);
                    const double w = weight(static_cast<int>(k));
                    if (time < 0) {
                        continue;
                    }
                    std::vector<double>& sums = votes[time];
                    if (sums.size() < targets.size()) {
                        sums.resize(targets.size(), 0.0);
                    }
                    sums[t] += w * closeness * targets[t].second;
                }
            }
        }
    }

    static std::vector<Event> winners(const Votes& votes, ProgressReporter* reporter, int start, int stop) {
        std::vector<Event> events;
        std::size_t n = 0;
        for (const auto& [tick, sums] : votes) {
            ++n;
            if (reporter != nullptr) {
                reporter->reportProgress(start +
                                         (stop - start) * (static_cast<double>(n) / static_cast<double>(votes.size())));
            }
            double best = 0.0;
            std::int32_t bestIndex = 0;
            for (std::size_t i = 0; i < sums.size(); ++i) {
                if (sums[i] > best) {
                    best = sums[i];
                    bestIndex = static_cast<std::int32_t>(i);
                }
            }
            events.push_back({tick, bestIndex, best});
        }
        std::sort(events.begin(), events.end(), [](const Event& a, const Event& b) {
            return a.votes > b.votes || (a.votes == b.votes && a.time < b.time);
        });
        return events;
    }

    static std::vector<Event> apart(const std::vector<Event>& events, long long fade) {
        std::vector<Event> taken;
        for (const Event& e : events) {
            bool overlaps = false;
            for (const Event& r : taken) {
                if (e.time > wrapSub(r.time, fade) && wrapSub(e.time, fade) < r.time) {
                    overlaps = true;
                    break;
                }
            }
            if (!overlaps) {
                taken.push_back(e);
            }
        }
        std::sort(taken.begin(), taken.end(), [](const Event& a, const Event& b) { return a.time < b.time; });
        return taken;
    }

    static std::vector<Event> withoutRepeats(const std::vector<Event>& events) {
        std::vector<Event> kept;
        for (std::size_t i = 0; i < events.size(); ++i) {
            if (i == 0 || events[i].targetIndex != events[i - 1].targetIndex) {
                kept.push_back(events[i]);
            }
        }
        return kept;
    }
};

} // namespace OrvantaNS::testing
