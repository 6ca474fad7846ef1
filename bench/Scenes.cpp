#include "Scenes.h"

#include <algorithm>
#include <utility>

#include "GeneratedRecording.h"
#include "Random.h"

namespace OrvantaNS::bench {

namespace {

using testing::Random;

constexpr std::uint64_t kSeed = 1;
constexpr long long kTicksPerSecond = 10000; // fine enough to keep 100,000 events within ten seconds apart

Params emptyRequest(double seconds, std::int32_t width, std::int32_t height) {
    Params params;
    params.setTimeScale(static_cast<double>(kTicksPerSecond)).setTargetWidth(640).setTargetHeight(400);
    params.setFadeDuration(kTicksPerSecond);
    params.setClipInterval(0, static_cast<long long>(seconds * static_cast<double>(kTicksPerSecond)));
    params.recordingRegions().push_back({0, {0, width, 0, height}});
    return params;
}

// A window, and a stroke over a part of it that changes, so that a flood has a recording around it. The clip begins with
// the stroke: a short blank stretch at its head would swallow what follows.
Params tenSeconds() {
    Params params = emptyRequest(20.0, 1280, 800);
    params.setClipInterval(kTicksPerSecond, 20 * kTicksPerSecond);
    const Rectangle window{100, 1100, 100, 700};
    for (long long t = 0; t < 20 * kTicksPerSecond; t += kTicksPerSecond / 5) {
        params.foreWindows().push_back({t, window});
    }
    for (int i = 0; i < 20; ++i) {
        params.cursorLocations().push_back({kTicksPerSecond + i * 300LL, 150 + i * 10, 200 + i * 8});
    }
    for (long long t = kTicksPerSecond; t < 3 * kTicksPerSecond; t += kTicksPerSecond / 5) {
        params.dirtyRects().push_back({t, {250, 420, 300, 420}});
    }
    return params;
}

// When the event of that number comes: evenly spread over the ten seconds from the fifth on.
long long momentOf(int event, int count) { return 5 * kTicksPerSecond + event * 10 * kTicksPerSecond / count; }

template <typename Sample> void sortByTime(std::vector<Sample>& samples) {
    std::stable_sort(samples.begin(), samples.end(), [](const Sample& a, const Sample& b) { return a.time < b.time; });
}

// Rectangles of all proportions around the middle of the screen, of which every two overlap and none is near another.
std::vector<Rectangle> areasAroundTheMiddle(int count) {
    Random random(kSeed);
    std::vector<std::int32_t> sides{60};
    while (sides.size() < 12) {
        sides.push_back(sides.back() * 115 / 100 + 14);
    }
    std::vector<std::pair<std::int32_t, std::int32_t>> sizes;
    for (const std::int32_t w : sides) {
        for (const std::int32_t h : sides) {
            sizes.emplace_back(w, h);
        }
    }
    std::vector<Rectangle> areas;
    for (int i = 0; i < count; ++i) {
        const auto chosen = random.range(i, static_cast<std::int32_t>(sizes.size()) - 1);
        std::swap(sizes[static_cast<std::size_t>(i)], sizes[static_cast<std::size_t>(chosen)]);
        const auto [w, h] = sizes[static_cast<std::size_t>(i)];
        const std::int32_t middleX = random.range(740, 859) + random.range(0, w / 3 - 1);
        const std::int32_t middleY = random.range(480, 519) + random.range(0, h / 3 - 1);
        areas.push_back({middleX - w / 2, middleX - w / 2 + w, middleY - h / 2, middleY - h / 2 + h});
    }
    return areas;
}

Scene scene(const std::string& curve, int size, std::function<Params()> make) {
    return {curve + "/" + std::to_string(size), std::move(make)};
}

} // namespace

Params overlappingAreas(int areas) {
    constexpr double kSeconds = 20.0;
    constexpr double kRoundSeconds = 1.4; // in which each area changes once: often enough to stay one area
    Params params = emptyRequest(kSeconds, 1920, 1080);
    for (long long t = 0; t < params.clipStop(); t += 200) {
        // To and fro, one sweep of 200 pixels a second.
        const auto way = static_cast<std::int32_t>(t % kTicksPerSecond * 200 / kTicksPerSecond);
        const bool goesRight = t / kTicksPerSecond % 2 == 0;
        params.cursorLocations().push_back(
            {t, goesRight ? 700 + way : 900 - way, 500 + static_cast<std::int32_t>(t / 200 % 2)});
    }
    params.cursorLocations().push_back({params.clipStop(), 800, 500});
    const std::vector<Rectangle> places = areasAroundTheMiddle(areas);
    const auto step = static_cast<long long>(kRoundSeconds * static_cast<double>(kTicksPerSecond)) / areas;
    std::size_t next = 0;
    for (long long t = 0; t < params.clipStop(); t += step) {
        params.dirtyRects().push_back({t, {0, 1079, 1, 1080}});
        params.dirtyRects().push_back({t, places[next]});
        next = (next + 1) % places.size();
    }
    return params;
}

Params repeated(const Params& once, int times) {
    const long long length = once.clipStop() - once.clipStart();
    Params all = once;
    all.setClipInterval(once.clipStart(), once.clipStart() + times * length);
    const auto append = [](auto& samples, const auto& more, long long shift) {
        for (auto sample : more) {
            sample.time += shift;
            samples.push_back(sample);
        }
    };
    for (int k = 1; k < times; ++k) {
        append(all.cursorLocations(), once.cursorLocations(), k * length);
        append(all.cursorActions(), once.cursorActions(), k * length);
        append(all.foreWindows(), once.foreWindows(), k * length);
        append(all.dirtyRects(), once.dirtyRects(), k * length);
        append(all.caretRects(), once.caretRects(), k * length);
    }
    // The last gesture may reach beyond the end.
    sortByTime(all.cursorLocations());
    sortByTime(all.cursorActions());
    sortByTime(all.foreWindows());
    sortByTime(all.dirtyRects());
    sortByTime(all.caretRects());
    return all;
}

Params desktopSession(int hours) {
    testing::SessionPlan plan;
    plan.seconds = 3600.0;
    return repeated(testing::generatedRecording(kSeed, plan), hours);
}

Params pressesWithoutRelease(int count) {
    Params params = tenSeconds();
    for (int i = 0; i < count; ++i) {
        params.cursorActions().push_back({5 * kTicksPerSecond, 0});
    }
    return params;
}

Params manyClicks(int count) {
    Params params = tenSeconds();
    for (int i = 0; i < 2 * count; ++i) {
        params.cursorActions().push_back({momentOf(i, 2 * count), i % 2});
    }
    return params;
}

Params manyStrokes(int count) {
    // A stroke ends where the cursor rests; these rest by standing still for two samples.
    constexpr int kSamples = 4;
    Params params = tenSeconds();
    for (int i = 0; i < kSamples * count; ++i) {
        const std::int32_t along = i % kSamples < 2 ? i % kSamples * 80 : 80;
        const bool goesRight = i / kSamples % 2 == 0;
        params.cursorLocations().push_back({momentOf(i, kSamples * count), goesRight ? 400 + along : 480 - along, 400});
    }
    return params;
}

Params manyWindows(int count) {
    Params params = tenSeconds();
    for (int i = 0; i < count; ++i) {
        const std::int32_t shift = i % 10 * 20;
        params.foreWindows().push_back({momentOf(i, count), {100 + shift, 900 + shift, 100, 600}});
    }
    sortByTime(params.foreWindows());
    return params;
}

Params windowsApart(int count) {
    Params params = tenSeconds();
    params.foreWindows().clear();
    for (int i = 0; i < count; ++i) {
        const Rectangle window{i % 1000, 900 + i % 173, i / 1000 % 300, 500 + i % 211};
        params.foreWindows().push_back({momentOf(i, count), window});
        params.foreWindows().push_back(
            {momentOf(i, count), Rectangle{}}); // ends it at once, so that none is an animation
    }
    return params;
}

std::vector<Scene> allScenes() {
    std::vector<Scene> scenes;
    for (const int areas : {8, 16, 24, 32, 40, 48, 64}) {
        scenes.push_back(scene("overlapping-areas", areas, [areas] { return overlappingAreas(areas); }));
    }
    for (const int hours : {1, 2, 4, 8, 12, 24}) {
        scenes.push_back(scene("desktop-hours", hours, [hours] { return desktopSession(hours); }));
    }
    for (const int count : {10000, 100000, 1000000}) {
        scenes.push_back(scene("presses", count, [count] { return pressesWithoutRelease(count); }));
    }
    for (const int count : {25, 50, 100, 200}) {
        scenes.push_back(scene("windows-apart", count, [count] { return windowsApart(count); }));
    }
    for (const int count : {1000, 10000, 100000}) {
        scenes.push_back(scene("clicks", count, [count] { return manyClicks(count); }));
        scenes.push_back(scene("strokes", count, [count] { return manyStrokes(count); }));
        scenes.push_back(scene("windows", count, [count] { return manyWindows(count); }));
    }
    return scenes;
}

} // namespace OrvantaNS::bench
