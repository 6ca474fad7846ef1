#include "camera/director/Changes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <set>
#include <tuple>

namespace OrvantaNS::camera {

namespace {

// Rectangles of one step beyond which they are taken as one area: a window that is dragged draws dozens of slivers.
constexpr std::size_t kMostRects = 60;
// Pixels to which places are rounded when repeats are looked for: an animation draws about the same again.
constexpr double kSamePlace = 16.0;
// Drawn again within this many seconds is the same drawing.
constexpr double kSameDrawing = 0.02;
// Seconds to either side within which repeats are counted, and the number that makes them a habit.
constexpr double kHabitReach = 6.0;
constexpr std::size_t kHabitCount = 6;
// The most repeats looked at to either side: what repeats faster shows its beat in fewer seconds.
constexpr std::size_t kHabitLooks = 48;
// Share of the gaps that must lie within this share of their median.
constexpr double kBeatShare = 0.75;
constexpr double kBeatSlack = 0.3;
// A repeat that began less than these seconds ago is still news.
constexpr double kNews = 2.0;
// What changes within these seconds after a press or a step of the wheel answers it.
constexpr double kHandAnswer = 0.75;
// Attention that clockwork gets.
constexpr double kClockworkAttention = 0.12;
// Gap that joins changed areas, lines of text: letters of a line and lines of a paragraph belong together.
constexpr double kJoinLines = 0.7;
// A line of text, pixels, where nothing shows how high one is, and the least and most that are believed.
constexpr double kUsualLine = 18.0;
constexpr double kLeastLine = 12.0;
constexpr double kMostLine = 48.0;
// Strips that it takes to believe them.
constexpr std::size_t kLeastStrips = 8;

struct Drawn {
    double seconds = 0.0;
    std::int32_t step = 0;
    RealRect rect;
    double attention = 1.0;
    /// The place, rounded.
    std::array<std::int64_t, 4> place{};
};

/// True when the times, sorted, beat like a clock around the one at `index`.
bool beats(const std::vector<double>& times, std::size_t index) {
    const double now = times[index];
    std::size_t first = index;
    while (first > 0 && now - times[first - 1] <= kHabitReach && index - first < kHabitLooks) {
        --first;
    }
    std::size_t last = index;
    while (last + 1 < times.size() && times[last + 1] - now <= kHabitReach && last - index < kHabitLooks) {
        ++last;
    }
    // Whether it went on before the news, however many repeats ago that was.
    const auto sinceNews = std::partition_point(times.begin(), times.begin() + static_cast<std::ptrdiff_t>(index),
                                                [now](double time) { return now - time >= kNews; });
    const bool isNews = sinceNews == times.begin() || now - *std::prev(sinceNews) > kHabitReach;
    if (last - first + 1 < kHabitCount || isNews) {
        return false;
    }
    std::vector<double> gaps;
    for (std::size_t i = first; i < last; ++i) {
        gaps.push_back(times[i + 1] - times[i]);
    }
    std::vector<double> sorted = gaps;
    const auto middle = sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 2);
    std::nth_element(sorted.begin(), middle, sorted.end());
    const double median = *middle;
    const auto regular = std::count_if(gaps.begin(), gaps.end(),
                                       [median](double gap) { return std::abs(gap - median) < kBeatSlack * median; });
    return static_cast<double>(regular) >= kBeatShare * static_cast<double>(gaps.size());
}

/// Lowers the attention of what goes on like clockwork.
void findClockwork(std::vector<Drawn>& drawn, const Scene& scene) {
    std::vector<double> hands = scene.wheels;
    for (const ScenePress& press : scene.presses) {
        hands.push_back(press.seconds);
        hands.push_back(press.release);
    }
    std::sort(hands.begin(), hands.end());
    const auto answers = [&hands](double seconds) {
        const auto after = std::upper_bound(hands.begin(), hands.end(), seconds);
        return after != hands.begin() && seconds - *std::prev(after) < kHandAnswer;
    };
    std::vector<std::size_t> order(drawn.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&drawn](std::size_t a, std::size_t b) {
        return std::tie(drawn[a].place, drawn[a].seconds) < std::tie(drawn[b].place, drawn[b].seconds);
    });
    for (std::size_t begin = 0; begin < order.size();) {
        std::size_t end = begin;
        std::vector<double> times;
        std::vector<std::size_t> indexOf;
        while (end < order.size() && drawn[order[begin]].place == drawn[order[end]].place) {
            const double seconds = drawn[order[end]].seconds;
            if (times.empty() || seconds - times.back() > kSameDrawing) {
                times.push_back(seconds);
            }
            indexOf.push_back(times.size() - 1);
            ++end;
        }
        if (times.size() >= kHabitCount) {
            // One answer for all drawings of a step in one place.
            std::int32_t step = -1;
            bool isClockwork = false;
            for (std::size_t i = begin; i < end; ++i) {
                Drawn& one = drawn[order[i]];
                if (one.step != step) {
                    step = one.step;
                    isClockwork = !answers(one.seconds) && beats(times, indexOf[i - begin]);
                }
                if (isClockwork) {
                    one.attention = kClockworkAttention;
                }
            }
        }
        begin = end;
    }
}

double lineHeight(const Scene& scene, const std::vector<Drawn>& drawn) {
    std::vector<double> heights;
    for (const SceneCaret& caret : scene.carets) {
        heights.push_back(height(caret.rect));
    }
    const bool isShownByCarets = !heights.empty();
    if (!isShownByCarets) {
        // Letters that are typed draw strips that are wider than high. So do rows, headers and buttons, which are
        // higher: the lower quarter is text. A strip that is drawn again and again counts once.
        std::set<std::array<std::int64_t, 4>> seen;
        for (const Drawn& one : drawn) {
            const double high = height(one.rect);
            if (one.attention == 1.0 && high >= kLeastLine && high <= kMostLine && width(one.rect) >= high &&
                seen.insert(one.place).second) {
                heights.push_back(high);
            }
        }
    }
    if (heights.size() < kLeastStrips) {
        return kUsualLine;
    }
    const auto chosen = heights.begin() + static_cast<std::ptrdiff_t>(heights.size() / (isShownByCarets ? 2 : 4));
    std::nth_element(heights.begin(), chosen, heights.end());
    return std::clamp(*chosen, kLeastLine, kMostLine);
}

} // namespace

std::vector<RealRect> clustered(std::vector<RealRect> rects, double gap) {
    std::sort(rects.begin(), rects.end(), [](const RealRect& a, const RealRect& b) {
        return std::tie(a.left, a.top, a.right, a.bottom) < std::tie(b.left, b.top, b.right, b.bottom);
    });
    rects.erase(std::unique(rects.begin(), rects.end()), rects.end());
    if (rects.size() > kMostRects) {
        RealRect all = rects.front();
        for (const RealRect& rect : rects) {
            all = boundingUnion(all, rect);
        }
        return {all};
    }
    const auto areClose = [gap](const RealRect& a, const RealRect& b) {
        return a.left <= b.right + gap && b.left <= a.right + gap && a.top <= b.bottom + gap && b.top <= a.bottom + gap;
    };
    bool isChanged = true;
    while (isChanged && rects.size() > 1) {
        isChanged = false;
        std::vector<RealRect> joined;
        for (const RealRect& rect : rects) {
            const auto partner = std::find_if(joined.begin(), joined.end(),
                                              [&](const RealRect& other) { return areClose(rect, other); });
            if (partner == joined.end()) {
                joined.push_back(rect);
            } else {
                *partner = boundingUnion(*partner, rect);
                isChanged = true;
            }
        }
        rects = std::move(joined);
    }
    return rects;
}

void readChanges(const Params& params, const Rectangle& region, long long start, long long stop, Scene& scene) {
    const RealRect bound{0.0, 0.0, scene.width, scene.height};
    std::vector<Drawn> drawn;
    for (const OV_TIME_RECT& dirty : params.dirtyRects()) {
        if (dirty.time < start || dirty.time >= stop) {
            continue;
        }
        Drawn one;
        one.rect = intersection(toLocal(dirty.rect, region), bound);
        if (isEmpty(one.rect)) {
            continue;
        }
        one.seconds =
            std::min((static_cast<double>(dirty.time) - static_cast<double>(start)) / params.timeScale(), scene.length);
        one.step = scene.stepAt(one.seconds);
        const double edges[4] = {one.rect.left, one.rect.top, one.rect.right, one.rect.bottom};
        for (std::size_t i = 0; i < 4; ++i) {
            one.place[i] = static_cast<std::int64_t>(edges[i] / kSamePlace);
        }
        drawn.push_back(one);
    }
    findClockwork(drawn, scene);
    scene.lineHeight = lineHeight(scene, drawn);

    std::stable_sort(drawn.begin(), drawn.end(), [](const Drawn& a, const Drawn& b) { return a.step < b.step; });
    scene.changeEnds.assign(static_cast<std::size_t>(scene.steps), 0);
    std::size_t next = 0;
    for (std::int32_t step = 0; step < scene.steps; ++step) {
        std::vector<RealRect> news;
        std::vector<RealRect> clockwork;
        for (; next < drawn.size() && drawn[next].step == step; ++next) {
            (drawn[next].attention == 1.0 ? news : clockwork).push_back(drawn[next].rect);
        }
        for (const RealRect& rect : clustered(std::move(news), kJoinLines * scene.lineHeight)) {
            scene.changes.push_back({rect, 1.0});
        }
        for (const RealRect& rect : clustered(std::move(clockwork), kJoinLines * scene.lineHeight)) {
            scene.changes.push_back({rect, kClockworkAttention});
        }
        scene.changeEnds[static_cast<std::size_t>(step)] = static_cast<std::uint32_t>(scene.changes.size());
    }
}

} // namespace OrvantaNS::camera
