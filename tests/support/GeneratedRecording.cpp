#include "GeneratedRecording.h"

#include <algorithm>
#include <vector>

#include "Random.h"
#include "frame/Geometry.h"

namespace OrvantaNS::testing {

namespace {

constexpr double kCursorPeriod = 1.0 / 60.0; // seconds between two samples of a moving cursor
constexpr double kFramePeriod = 1.0 / 30.0;  // seconds between two grabbed frames

// One hand at one desk: every gesture moves the clock on. No call has two arguments that draw random numbers: compilers
// evaluate arguments in orders of their own.
class Session {
public:
    Session(std::uint64_t seed, const SessionPlan& plan) : random_(seed), plan_(plan) {
        params_.setTimeScale(plan.timeScale).setTargetWidth(plan.targetWidth).setTargetHeight(plan.targetHeight);
        params_.setFadeDuration(ticks(1.0)).setClipInterval(0, ticks(plan.seconds));
        params_.recordingRegions().push_back({0, {0, plan.width, 0, plan.height}});
        x_ = plan.width / 2;
        y_ = plan.height / 2;
        const int count = random_.range(1, 4);
        for (int i = 0; i < count; ++i) {
            windows_.push_back(randomWindow());
        }
        showWindow(0.0);
    }

    Params play() {
        while (now_ < plan_.seconds) {
            const double choice = random_.unit();
            if (choice < 0.30) {
                clickInWindow();
            } else if (choice < 0.45) {
                wander();
            } else if (choice < 0.53) {
                rest(random_.real(0.6, 6.0));
            } else if (choice < 0.60) {
                dragInWindow();
            } else if (choice < 0.67) {
                pullDownMenu();
            } else if (choice < 0.74) {
                contextMenu();
            } else if (choice < 0.80) {
                moveWindow();
            } else if (choice < 0.86) {
                switchWindow();
            } else if (choice < 0.94) {
                wheel();
            } else {
                type();
            }
        }
        for (double time = 0.0; time < plan_.seconds; time += random_.real(0.05, 2.0 / plan_.dirtyPerSecond)) {
            change(time, inside(windows_.front(), 30, 20));
        }
        sortByTime(params_.cursorLocations());
        sortByTime(params_.cursorActions());
        sortByTime(params_.foreWindows());
        sortByTime(params_.dirtyRects());
        sortByTime(params_.caretRects());
        return std::move(params_);
    }

private:
    long long ticks(double seconds) const { return static_cast<long long>(seconds * plan_.timeScale + 0.5); }

    template <typename Sample> static void sortByTime(std::vector<Sample>& samples) {
        std::stable_sort(samples.begin(), samples.end(),
                         [](const Sample& a, const Sample& b) { return a.time < b.time; });
    }

    Rectangle randomWindow() {
        const int w = random_.range(plan_.width / 5, plan_.width * 4 / 5);
        const int h = random_.range(plan_.height / 5, plan_.height * 4 / 5);
        const int left = random_.range(0, plan_.width - w);
        const int top = random_.range(26, std::max(26, plan_.height - h));
        return {left, left + w, top, std::min(top + h, plan_.height)};
    }

    // A rectangle of up to the given size somewhere in another.
    Rectangle inside(const Rectangle& outer, int maxWidth, int maxHeight) {
        const int w = random_.range(1, std::max(1, std::min(maxWidth, outer.right - outer.left)));
        const int h = random_.range(1, std::max(1, std::min(maxHeight, outer.bottom - outer.top)));
        const int left = random_.range(outer.left, std::max(outer.left, outer.right - w));
        const int top = random_.range(outer.top, std::max(outer.top, outer.bottom - h));
        return {left, left + w, top, top + h};
    }

    // What the recorder takes for the window in front: an open menu, if there is one.
    void showWindow(double time) {
        params_.foreWindows().push_back({ticks(time), isEmpty(menu_) ? windows_.front() : menu_});
    }

    // A recorder samples the standing window about ten times a second.
    void sampleWindow(double until) {
        for (; windowClock_ < until; windowClock_ += 0.1) {
            showWindow(windowClock_);
        }
    }

    void change(double time, const Rectangle& rect) {
        const double frame = static_cast<double>(static_cast<long long>(time / kFramePeriod)) * kFramePeriod;
        params_.dirtyRects().push_back({ticks(frame), rect});
    }

    void sampleCursor(double time) { params_.cursorLocations().push_back({ticks(time), x_, y_}); }

    void pass(double seconds) {
        now_ += seconds;
        sampleWindow(now_);
    }

    // A curved move that speeds up and slows down, trembles, and sometimes overshoots.
    void moveTo(int x, int y) {
        const int fromX = x_;
        const int fromY = y_;
        const double distance = std::max(std::abs(x - fromX), std::abs(y - fromY));
        const double duration = 0.15 + distance / 1200.0 + random_.real(0.0, 0.2);
        const double bow = random_.real(-0.1, 0.1) * distance;
        for (double t = kCursorPeriod; t < duration; t += kCursorPeriod) {
            const double s = t / duration;
            const double way = s * s * (3.0 - 2.0 * s);
            const double bend = 4.0 * way * (1.0 - way) * bow;
            x_ = clampX(fromX + (x - fromX) * way + bend + random_.real(-1.0, 1.0));
            y_ = clampY(fromY + (y - fromY) * way - bend + random_.real(-1.0, 1.0));
            sampleCursor(now_ + t);
        }
        x_ = clampX(x);
        y_ = clampY(y);
        sampleCursor(now_ + duration);
        pass(duration);
    }

    int clampX(double x) const { return std::clamp(static_cast<int>(x), 0, plan_.width - 1); }
    int clampY(double y) const { return std::clamp(static_cast<int>(y), 0, plan_.height - 1); }

    void moveInto(const Rectangle& rect) {
        const Rectangle spot = inside(rect, 1, 1);
        moveTo(spot.left, spot.top);
    }

    void press(int code) { params_.cursorActions().push_back({ticks(now_), code}); }

    void click(int code) {
        press(code);
        pass(random_.real(0.05, 0.15));
        press(code + 1);
    }

    void clickInWindow() {
        moveInto(windows_.front());
        pass(random_.real(0.05, 0.4));
        click(0);
        if (random_.chance(0.2)) {
            pass(random_.real(0.05, 0.25));
            click(0);
        }
        const double answer = now_ + random_.real(0.0, 0.2);
        change(answer, {x_ - 20, x_ + random_.range(10, 120), y_ - 10, y_ + 15});
        if (random_.chance(0.5)) {
            const double result = now_ + random_.real(0.2, 1.8);
            change(result, inside(windows_.front(), 400, 300));
        }
        pass(random_.real(0.1, 1.5));
    }

    void wander() {
        const int x = random_.range(0, plan_.width - 1);
        moveTo(x, random_.range(0, plan_.height - 1));
    }

    void rest(double seconds) {
        const double begin = now_;
        sampleCursor(now_);
        pass(0.2);
        sampleCursor(now_);
        pass(seconds);
        sampleCursor(now_);
        for (double time = begin; time < now_; time += random_.real(0.1, 0.8)) {
            change(time, inside(windows_.front(), 200, 100));
        }
    }

    void dragInWindow() {
        moveInto(windows_.front());
        press(0);
        moveInto(windows_.front());
        change(now_, inside(windows_.front(), 300, 200));
        press(1);
        pass(random_.real(0.1, 0.5));
    }

    void openMenu(const Rectangle& menu) {
        menu_ = menu;
        showWindow(now_);
    }

    void closeMenu() {
        menu_ = {};
        showWindow(now_);
    }

    void pullDownMenu() {
        const int x = random_.range(5, plan_.width / 2);
        moveTo(x, random_.range(2, 20));
        click(0);
        const Rectangle menu{x_ - 5, x_ + random_.range(80, 220), 0, random_.range(100, 300)};
        change(now_ + 0.03, menu);
        change(now_ + 0.06, menu);
        if (random_.chance(0.6)) {
            openMenu(menu);
        }
        pass(0.3);
        // The entry under the cursor is drawn again and again while the cursor comes in.
        const Rectangle entry = inside({menu.left, menu.right, 30, menu.bottom}, menu.right - menu.left, 20);
        for (double delay = 0.0; delay < 0.8; delay += kFramePeriod) {
            change(now_ + delay, entry);
        }
        moveInto(entry);
        click(0);
        closeMenu();
        pass(random_.real(0.1, 0.6));
    }

    void contextMenu() {
        moveInto(windows_.front());
        click(2);
        const Rectangle menu{x_ + 1, std::min(x_ + random_.range(100, 300), plan_.width), y_ + 1,
                             std::min(y_ + random_.range(60, 300), plan_.height)};
        openMenu(menu);
        change(now_ + 0.05, menu);
        pass(0.5);
        moveInto(menu);
        click(0);
        closeMenu();
        pass(random_.real(0.2, 1.0));
    }

    void moveWindow() {
        Rectangle& window = windows_.front();
        moveTo((window.left + window.right) / 2, window.top + 5);
        press(0);
        const int steps = random_.range(5, 40);
        const int dx = random_.range(-6, 6);
        const int dy = random_.range(-4, 4);
        for (int i = 0; i < steps; ++i) {
            const Rectangle moved{window.left + dx, window.right + dx, window.top + dy, window.bottom + dy};
            if (moved.left < 0 || moved.right > plan_.width || moved.top < 26 || moved.bottom > plan_.height) {
                break;
            }
            window = moved;
            x_ = clampX(x_ + dx);
            y_ = clampY(y_ + dy);
            now_ += kFramePeriod;
            sampleCursor(now_);
            showWindow(now_);
            change(now_, window);
        }
        windowClock_ = std::max(windowClock_, now_);
        press(1);
        pass(random_.real(0.1, 0.5));
    }

    void switchWindow() {
        if (random_.chance(0.4)) {
            windows_.insert(windows_.begin(), randomWindow());
        } else {
            std::rotate(windows_.begin(), windows_.begin() + 1, windows_.end());
        }
        if (random_.chance(0.1)) {
            windows_.front() = {0, plan_.width, 0, plan_.height};
        }
        moveInto(windows_.front());
        click(0);
        showWindow(now_);
        change(now_ + 0.03, windows_.front());
        pass(random_.real(0.2, 1.5));
    }

    void wheel() {
        const int steps = random_.range(1, 20);
        for (int i = 0; i < steps; ++i) {
            params_.cursorActions().push_back({ticks(now_), random_.range(6, 7)});
            change(now_ + 0.02, windows_.front());
            pass(random_.real(0.05, 0.4));
        }
    }

    void type() {
        const Rectangle line = inside(windows_.front(), 300, 20);
        const int keys = random_.range(5, 60);
        for (int i = 0; i < keys; ++i) {
            const int x = line.left + i * 5;
            params_.caretRects().push_back({ticks(now_), {x, x + 1, line.top, line.bottom}});
            change(now_, {x - 6, x + 2, line.top, line.bottom});
            pass(random_.real(0.05, 0.25));
        }
    }

    Random random_;
    SessionPlan plan_;
    Params params_;
    std::vector<Rectangle> windows_; // the one in front first
    Rectangle menu_;                 // the menu that is open, empty when none is
    double now_ = 0.0;               // seconds
    double windowClock_ = 0.0;       // seconds: when the standing window is sampled next
    int x_ = 0;
    int y_ = 0;
};

} // namespace

Params generatedRecording(std::uint64_t seed, const SessionPlan& plan) { return Session(seed, plan).play(); }

} // namespace OrvantaNS::testing
