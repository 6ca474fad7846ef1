#include "camera/director/Scene.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "camera/director/Changes.h"

namespace OrvantaNS::camera {

namespace {

// More steps than three days have are made longer instead.
constexpr double kMostSteps = 1048576.0;
// Pixels that a trembling hand moves the cursor without meaning it.
constexpr double kTremor = 3.0;
// No moment lies further away than this, seconds: a clock may tick once in ages.
constexpr double kFarAway = 1e12;
// A press without release counts as released at once; one that is held longer than this lost its release.
constexpr double kLongestHold = 60.0;

/// Reads one request with the words of a stretch.
class Reader {
public:
    Reader(const Params& params, const Rectangle& region, long long start, long long stop)
        : params_(params), region_(region), start_(start), stop_(stop) {}

    Scene read() {
        scene_.width = toLocal(region_.right, region_.left);
        scene_.height = toLocal(region_.bottom, region_.top);
        scene_.length = seconds(stop_);
        while (scene_.length / scene_.step > kMostSteps) {
            scene_.step *= 2.0;
        }
        scene_.steps = static_cast<std::int32_t>(std::ceil(scene_.length / scene_.step)) + 1;
        readCursor();
        readActions();
        readWindows();
        readCarets();
        readChanges(params_, region_, start_, stop_, scene_);
        return std::move(scene_);
    }

private:
    /// Ticks to seconds of the stretch. The difference is taken first, so that a shifted recording reads the same.
    double seconds(long long ticks) const {
        const double time = (static_cast<double>(ticks) - static_cast<double>(start_)) / params_.timeScale();
        return std::clamp(time, -kFarAway, kFarAway);
    }
    bool isInside(long long ticks) const { return start_ <= ticks && ticks < stop_; }
    RealRect clipped(const Rectangle& rect) const {
        const RealRect moved = toLocal(rect, region_);
        const RealRect cut = intersection(moved, {0.0, 0.0, scene_.width, scene_.height});
        return isEmpty(cut) ? RealRect{} : cut;
    }

    void readCursor() {
        const auto& samples = params_.cursorLocations();
        if (samples.empty()) {
            return;
        }
        scene_.cursor.resize(static_cast<std::size_t>(scene_.steps));
        std::size_t next = 0;
        double restX = 0.0;
        double restY = 0.0;
        bool isKnown = false;
        for (std::int32_t step = 0; step < scene_.steps; ++step) {
            const double end = (step + 1) * scene_.step;
            while (next < samples.size() && seconds(samples[next].time) < end) {
                ++next;
            }
            const OV_MOUSE_LOCATION& sample = samples[next == 0 ? 0 : next - 1];
            SceneCursor& cursor = scene_.cursor[static_cast<std::size_t>(step)];
            cursor.x = toLocal(sample.x, region_.left) + 0.5;
            cursor.y = toLocal(sample.y, region_.top) + 0.5;
            cursor.isInside = containsPoint({0.0, 0.0, scene_.width, scene_.height}, cursor.x, cursor.y);
            const double dx = cursor.x - restX;
            const double dy = cursor.y - restY;
            if (!isKnown || dx * dx + dy * dy > kTremor * kTremor) {
                cursor.isNew = isKnown;
                restX = cursor.x;
                restY = cursor.y;
                isKnown = true;
            }
        }
    }

    /// Index of the cursor sample that holds at a tick.
    std::size_t sampleAt(long long ticks) const {
        const auto& samples = params_.cursorLocations();
        const auto after = std::upper_bound(samples.begin(), samples.end(), ticks,
                                            [](long long time, const OV_MOUSE_LOCATION& s) { return time < s.time; });
        return after == samples.begin() ? 0 : static_cast<std::size_t>(after - samples.begin()) - 1;
    }

    void readActions() {
        const auto& samples = params_.cursorLocations();
        // The press of each button that waits for its release.
        std::optional<std::size_t> open[3];
        long long openTicks[3] = {};
        for (const OV_MOUSE_ACTION& action : params_.cursorActions()) {
            if (!isInside(action.time)) {
                continue;
            }
            if (action.action == 6 || action.action == 7) {
                scene_.wheels.push_back(seconds(action.time));
                continue;
            }
            if (action.action < 0 || action.action > 5 || samples.empty()) {
                continue;
            }
            const auto button = static_cast<std::size_t>(action.action / 2);
            if (action.action % 2 == 0) {
                const OV_MOUSE_LOCATION& place = samples[sampleAt(action.time)];
                ScenePress press;
                press.seconds = seconds(action.time);
                press.release = press.seconds;
                press.x = toLocal(place.x, region_.left) + 0.5;
                press.y = toLocal(place.y, region_.top) + 0.5;
                press.path = {press.x, press.y, press.x, press.y};
                open[button].reset();
                if (containsPoint({0.0, 0.0, scene_.width, scene_.height}, press.x, press.y) &&
                    (scene_.presses.empty() || scene_.presses.back().seconds <= press.seconds)) {
                    open[button] = scene_.presses.size();
                    openTicks[button] = action.time;
                    scene_.presses.push_back(press);
                }
            } else if (open[button]) {
                ScenePress& press = scene_.presses[*open[button]];
                const double release = seconds(action.time);
                if (release >= press.seconds && release - press.seconds <= kLongestHold) {
                    press.release = release;
                    for (std::size_t i = sampleAt(openTicks[button]); i <= sampleAt(action.time); ++i) {
                        const double x = toLocal(samples[i].x, region_.left) + 0.5;
                        const double y = toLocal(samples[i].y, region_.top) + 0.5;
                        press.path = boundingUnion(press.path, {x, y, x, y});
                    }
                }
                open[button].reset();
            }
        }
        std::stable_sort(scene_.wheels.begin(), scene_.wheels.end());
    }

    void readWindows() {
        std::vector<SceneWindow>& runs = scene_.windows;
        for (const OV_TIME_RECT& window : params_.foreWindows()) {
            if (window.time >= stop_) {
                continue;
            }
            const double from = std::max(0.0, seconds(window.time));
            const RealRect rect = clipped(window.rect);
            if (runs.empty() || (from >= runs.back().from && runs.back().rect != rect)) {
                if (!runs.empty()) {
                    runs.back().to = from;
                }
                runs.push_back({from, scene_.length, rect});
            }
        }
        // What was over before the stretch began left runs without a length.
        std::erase_if(runs, [](const SceneWindow& run) { return !(run.to > run.from); });
    }

    void readCarets() {
        std::vector<SceneCaret>& carets = scene_.carets;
        for (const OV_TIME_RECT& caret : params_.caretRects()) {
            if (!isInside(caret.time)) {
                continue;
            }
            const double from = seconds(caret.time);
            if (!carets.empty() && from < carets.back().from) {
                continue;
            }
            if (!carets.empty()) {
                carets.back().to = from;
            }
            // A caret is one pixel wide at most times, and may stand on the region's right edge.
            const RealRect cut = clipped(
                {caret.rect.left, std::max(caret.rect.right, caret.rect.left + (caret.rect.left < 2147483647 ? 1 : 0)),
                 caret.rect.top, caret.rect.bottom});
            carets.push_back({from, scene_.length, cut});
        }
        std::erase_if(carets, [](const SceneCaret& caret) { return isEmpty(caret.rect); });
    }

    const Params& params_;
    const Rectangle region_;
    const long long start_;
    const long long stop_;
    Scene scene_;
};

} // namespace

std::int32_t Scene::stepAt(double seconds) const {
    const double index = std::floor(seconds / step);
    return index <= 0.0 ? 0 : index >= steps - 1 ? steps - 1 : static_cast<std::int32_t>(index);
}

Scene readScene(const Params& params, const Rectangle& region, long long start, long long stop) {
    return Reader(params, region, start, stop).read();
}

} // namespace OrvantaNS::camera
