#include "camera/director/Evidence.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "camera/director/EvidenceMeasures.h"
#include "camera/director/Redraws.h"
#include "camera/director/Sites.h"

namespace OrvantaNS::camera {

namespace {

// ---- Times, seconds ----
constexpr double kBeforePress = 0.5; // the viewer wants to see the hand arrive
constexpr double kAfterPress = 1.0;  // and what comes of it
constexpr double kAroundDrag = 0.5;
constexpr double kBeforeTyping = 0.25;
constexpr double kAfterTyping = 1.25;
constexpr double kChangeSeconds = 0.75;
constexpr double kWindowStays = 0.3; // a window that stays shorter is moving
constexpr double kOpening = 2.5;
constexpr double kAfterPage = 2.5; // what has scrolled is read
constexpr double kBriefLinger = 4.0;
constexpr double kLongLinger = 10.0;
constexpr double kRestingCursor = 1.0;
constexpr double kForgottenCursor = 6.0;

// ---- Lengths, lines of text ----
constexpr double kCursorSize = 3.3;
constexpr double kDragMargin = 1.5;
constexpr double kLeastDragArea = 20.0; // square lines: less is a press with a trembling hand

constexpr double kSpeckPart = 0.3;   // share of its weight that a speck has
constexpr double kLargePart = 0.4;   // and a change larger than a readable frame: it hardly says where to look
constexpr double kPressAnswer = 1.0; // seconds after a press within which a change answers it
constexpr double kPointed = 20.0;    // seconds for which a press tells where something is typed
constexpr double kMuchLarger = 0.7;  // of the readable zoom: a window that needs a lower one is large
// Part of a page that has a readable frame's size from which the page counts in full. Of one that is larger still, less
// can be told when it is shown whole, and it counts in proportion.
constexpr double kTellingPart = 0.5;

// Of a readable frame's width: of a wide area as much is read as that frame holds with a little room. Were it less, a frame
// that cuts a row which is a little wider would seem no worse than one that holds it.
constexpr double kReadPart = 0.95;

// Part of a page's weight from which it is remembered as what the viewer looks at.
constexpr double kSeldomPart = 0.5;

// Seconds for which something is done in one place until all of it is to be read; what is over before the camera could
// come and go need only be seen.
constexpr double kReadingStay = 3.0;
// Sites that are looked at for one piece of evidence: nobody works in more places while something is seen.
constexpr std::ptrdiff_t kMostSites = 256;
// After so many seconds in one place a redraw of the window there is no new page, though the hand asked for it.
constexpr double kAtWork = 1.0;
// What comes within so many seconds after the last act in a place belongs to it.
constexpr double kAfterSite = 1.0;

/// Gathers evidence stream by stream.
class Gatherer {
public:
    Gatherer(const Scene& scene, const FrameShape& shape, const DirectorWeights& weights)
        : scene_(scene), shape_(shape), weights_(weights), screen_{0.0, 0.0, scene.width, scene.height},
          sites_(findSites(scene, shape)), strong_(static_cast<std::size_t>(scene.steps)),
          focus_(static_cast<std::size_t>(scene.steps)) {}

    std::vector<Evidence> gather() {
        presses();
        typing();
        windows();
        changes();
        linger();
        cursor();
        add(EvidenceKind::Whole, 0.0, scene_.length, screen_, weights_.whole);
        return std::move(evidence_);
    }

private:
    /// Takes what has an area, a weight and a time in the stretch.
    void add(EvidenceKind kind, double from, double to, const RealRect& rect, double weight) {
        if (isEmpty(rect) || !(weight > 0.0) || !(to > 0.0) || !(from < scene_.length)) {
            return;
        }
        const std::int32_t first = scene_.stepAt(from);
        const std::int32_t last =
            std::max(first, static_cast<std::int32_t>(std::min(std::ceil(to / scene_.step), scene_.steps * 1.0)) - 1);
        evidence_.push_back({kind, first, last + 1, rect, weight, readingOf(kind, from, to, rect)});
    }

    /// The first site that does not end long before a moment.
    std::vector<Site>::const_iterator siteAt(double seconds) const {
        return std::partition_point(sites_.begin(), sites_.end(),
                                    [seconds](const Site& site) { return site.to + kAfterSite <= seconds; });
    }

    /// The part of its reading that counts. What is done where one stays is to be read; what is over soon, seen.
    double readingOf(EvidenceKind kind, double from, double to, const RealRect& rect) const {
        if (kind == EvidenceKind::SmallWindow || kind == EvidenceKind::WindowOpens || kind == EvidenceKind::Page) {
            return 1.0;
        }
        double longest = 0.0;
        const auto first = siteAt(from);
        const auto last = first + std::min(kMostSites, sites_.end() - first);
        for (auto site = first; site != last && site->from < to; ++site) {
            if (area(intersection(site->rect, rect)) > 0.5 * area(rect)) {
                longest = std::max(longest, site->to - site->from);
            }
        }
        return std::clamp(longest / kReadingStay, std::min(1.0, weights_.unreadBrief), 1.0);
    }

    /// True when work has gone on in one place for a while.
    bool isAtWork(double seconds) const {
        const auto site = siteAt(seconds);
        return site != sites_.end() && seconds > site->from + kAtWork;
    }

    /// The same as `add`, and remembered as what the viewer looks at.
    void addStrong(EvidenceKind kind, double from, double to, const RealRect& rect, double weight) {
        const std::size_t before = evidence_.size();
        add(kind, from, to, rect, weight);
        if (evidence_.size() == before) {
            return;
        }
        const Evidence& one = evidence_.back();
        for (std::int32_t step = one.from; step < one.to; ++step) {
            const auto i = static_cast<std::size_t>(step);
            focus_[i] = strong_[i] > 0.0 ? boundingUnion(focus_[i], rect) : rect;
            strong_[i] += weight;
        }
    }

    void presses() {
        const double line = scene_.lineHeight;
        for (const ScenePress& press : scene_.presses) {
            addStrong(EvidenceKind::Press, press.seconds - kBeforePress, press.release + kAfterPress,
                      boxAround(press.x, press.y, kPressWidth * line, kPressHeight * line, scene_), weights_.press);
            if (press.release - press.seconds > kLongPress) {
                const RealRect box = intersection({press.path.left - kDragMargin * line, press.path.top - line,
                                                   press.path.right + kDragMargin * line, press.path.bottom + line},
                                                  screen_);
                if (area(box) > kLeastDragArea * line * line) {
                    addStrong(EvidenceKind::Drag, press.seconds - kAroundDrag / 2.0, press.release + kAroundDrag, box,
                              weights_.drag);
                }
            }
        }
    }

    void typing() {
        const double line = scene_.lineHeight;
        for (const SceneCaret& caret : scene_.carets) {
            addStrong(
                EvidenceKind::Typing, caret.from - kBeforeTyping, std::min(caret.from + kAfterTyping, caret.to),
                boxAround(centreX(caret.rect), centreY(caret.rect), kTypingWidth * line, kTypingHeight * line, scene_),
                weights_.typing);
        }
    }

    /// 1 for a window that a readable frame holds, 0 for one that is much larger.
    double smallness(const RealRect& rect) const {
        return std::clamp((shape_.fittingZoom(rect) / shape_.readable() - kMuchLarger) / (1.0 - kMuchLarger), 0.0, 1.0);
    }

    /// 1 for a page of which something can be told when it is shown as whole as can be; less for one that is larger.
    double telling(const RealRect& rect) const {
        const double readable = shape_.outputWidth() * shape_.outputHeight() / (shape_.readable() * shape_.readable());
        const double most = shape_.widest();
        const double shown = std::min(width(rect), most) * std::min(height(rect), most / shape_.ratio());
        return std::min(1.0, readable / (kTellingPart * shown));
    }

    void windows() {
        std::array<RealRect, 3> last{};
        std::size_t next = 0;
        RealRect parent;
        for (const SceneWindow& run : scene_.windows) {
            if (isEmpty(run.rect)) {
                continue;
            }
            if (run.to - run.from < kWindowStays) {
                add(EvidenceKind::WindowOpens, run.from, run.to, run.rect, weights_.windowOpens / 2.0);
                continue;
            }
            if (std::find(last.begin(), last.end(), run.rect) == last.end()) {
                addStrong(EvidenceKind::WindowOpens, run.from, std::min(run.to, run.from + kOpening), run.rect,
                          weights_.windowOpens);
            }
            last[next++ % last.size()] = run.rect;
            const double small = smallness(run.rect);
            addStrong(EvidenceKind::SmallWindow, run.from, run.to, run.rect, small * weights_.smallWindow);
            // A menu or dialog is part of what is done in the window that it came from.
            if (!isEmpty(parent)) {
                add(EvidenceKind::Page, run.from, run.to, parent, telling(parent) * small * weights_.parent);
            }
            if (small < 0.5) {
                parent = run.rect;
                addStrong(EvidenceKind::Page, run.from, std::min(run.to, run.from + kOpening), run.rect,
                          telling(run.rect) * (1.0 - small) * weights_.returns);
            }
            add(EvidenceKind::Context, run.from, run.to, run.rect, (1.0 - small) * weights_.context);
        }
    }

    void changes() {
        const double line = scene_.lineHeight;
        const double readingArea = shape_.readingWidth() * shape_.readingWidth() / shape_.ratio();
        std::size_t next = 0;
        std::size_t wheel = 0;
        double lastWheel = -100.0;
        std::size_t press = 0;
        double lastPress = -100.0;
        const std::vector<double> redraws = redrawsOf(scene_);
        FrontWindow window(scene_);
        double page = -1.0;   // until when the page is of interest
        double little = -1.0; // and until when it is so because the program draws all for little
        for (std::int32_t step = 0; step < scene_.steps; ++step) {
            const std::size_t end = scene_.changeEnds[static_cast<std::size_t>(step)];
            const double time = step * scene_.step;
            while (wheel < scene_.wheels.size() && scene_.wheels[wheel] < time + scene_.step) {
                lastWheel = scene_.wheels[wheel++];
            }
            const RealRect& front = window.at(time);
            double sum = 0.0;
            for (std::size_t i = next; i < end; ++i) {
                sum += scene_.changes[i].attention;
            }
            const double news = newsIn(scene_, front, next, end);
            const bool isScrolling = time - lastWheel < 0.5 && news > 0.1 * area(front);
            while (press < scene_.presses.size() && scene_.presses[press].seconds < time + scene_.step) {
                lastPress = std::max(lastPress, scene_.presses[press++].release);
            }
            const bool isAnswer = time - lastPress < kPressAnswer;
            const bool isPage = isScrolling || news > kPageShare * area(front);
            if (isPage) {
                const bool isQuestion = isAnswer && !isAtWork(time);
                const bool isAsked = isScrolling || isQuestion;
                const double part = isAsked ? 1.0 : rarityOf(redraws, time);
                const double until = time + kAfterPage;
                // What the hand asked for is looked for all over the page, however large that is.
                const double worth = isQuestion ? weights_.page : telling(front) * weights_.page;
                if (part >= kSeldomPart) {
                    addStrong(EvidenceKind::Page, std::max(page, time - scene_.step), until, front, part * worth);
                    page = until;
                } else {
                    add(EvidenceKind::Page, std::max({page, little, time - scene_.step}), until, front, part * worth);
                    little = until;
                }
            }
            for (; next < end; ++next) {
                const SceneChange& change = scene_.changes[next];
                double weight = weights_.change * change.attention / std::max(1.0, sum);
                const bool isSpeck = area(change.rect) < kSpeckArea * line * line;
                if (isSpeck) {
                    weight *= kSpeckPart;
                }
                if (area(change.rect) > readingArea) {
                    weight *= kLargePart;
                }
                const bool isNews = change.attention == 1.0 && !isPage && !isSpeck;
                addChange(change.rect, time, weight, isNews);
            }
        }
    }

    /// A change is seen where it is, unless no readable frame holds its width: programs draw whole rows for a letter, and
    /// reading begins at the left, or where the hand has pointed.
    void addChange(const RealRect& rect, double time, double weight, bool isNews) {
        const auto put = [&](const RealRect& part, double share) {
            if (isNews) {
                addStrong(EvidenceKind::Change, time, time + kChangeSeconds, part, share * weight);
            } else {
                add(EvidenceKind::Change, time, time + kChangeSeconds, part, share * weight);
            }
        };
        if (!isNews || width(rect) <= shape_.readingWidth()) {
            put(rect, 1.0);
            return;
        }
        put(leftPart(rect, shape_, kReadPart), weights_.leftPart);
        const ScenePress* press = lastPressIn(rect, time);
        const double line = scene_.lineHeight;
        if (press != nullptr) {
            put(boxAround(press->x, press->y, kTypingWidth * line, kTypingHeight * line, scene_), weights_.pressPart);
        }
        add(EvidenceKind::Change, time, time + kChangeSeconds, rect,
            weight * std::max(0.0, 1.0 - weights_.leftPart - (press != nullptr ? weights_.pressPart : 0.0)));
    }

    /// The last press before a moment, if it lies in the rectangle and is not long ago.
    const ScenePress* lastPressIn(const RealRect& rect, double time) const {
        auto after = std::upper_bound(scene_.presses.begin(), scene_.presses.end(), time,
                                      [](double t, const ScenePress& p) { return t < p.seconds; });
        if (after == scene_.presses.begin()) {
            return nullptr;
        }
        const ScenePress& press = *std::prev(after);
        return time - press.seconds < kPointed && containsPoint(rect, press.x, press.y) ? &press : nullptr;
    }

    /// Where nothing is of interest, what was so last still is, for a while.
    void linger() {
        std::int32_t last = -1;
        std::int32_t from = -1;
        for (std::int32_t step = 0; step <= scene_.steps; ++step) {
            const bool isStrong = step < scene_.steps && strong_[static_cast<std::size_t>(step)] >= 0.3;
            if (!isStrong && step < scene_.steps) {
                from = from < 0 ? step : from;
                continue;
            }
            if (from >= 0 && last >= 0) {
                RealRect rect = focus_[static_cast<std::size_t>(last)];
                // What was looked at in the seconds before belongs to it, as long as a readable frame holds all.
                for (std::int32_t back = last; back >= 0 && (last - back) * scene_.step < kBriefLinger; --back) {
                    const RealRect both = boundingUnion(rect, focus_[static_cast<std::size_t>(back)]);
                    if (strong_[static_cast<std::size_t>(back)] > 0.0 &&
                        shape_.fittingZoom(both) >= shape_.readable()) {
                        rect = both;
                    }
                }
                const double start = from * scene_.step;
                const double stop = step * scene_.step;
                add(EvidenceKind::Linger, start, std::min(stop, start + kBriefLinger), rect, weights_.linger);
                if (stop > start + kBriefLinger) {
                    add(EvidenceKind::Linger, start + kBriefLinger, std::min(stop, start + kLongLinger), rect,
                        weights_.linger / 2.0);
                }
                if (stop > start + kLongLinger) {
                    add(EvidenceKind::Linger, start + kLongLinger, stop, rect, weights_.linger / 4.0);
                }
            }
            from = -1;
            last = step;
        }
    }

    void cursor() {
        double moved = -100.0;
        for (std::int32_t step = 0; step < static_cast<std::int32_t>(scene_.cursor.size()); ++step) {
            const SceneCursor& cursor = scene_.cursor[static_cast<std::size_t>(step)];
            const double time = step * scene_.step;
            if (cursor.isNew) {
                moved = time;
            }
            if (!cursor.isInside) {
                continue;
            }
            const double rest = time - moved;
            const double weight = rest < kRestingCursor     ? weights_.cursor
                                  : rest < kForgottenCursor ? 0.4 * weights_.cursor
                                                            : 0.08 * weights_.cursor;
            const double size = kCursorSize * scene_.lineHeight;
            add(EvidenceKind::Cursor, time, time + scene_.step, boxAround(cursor.x, cursor.y, size, size, scene_),
                weight);
        }
    }

    const Scene& scene_;
    const FrameShape& shape_;
    const DirectorWeights& weights_;
    const RealRect screen_;
    const std::vector<Site> sites_;
    std::vector<Evidence> evidence_;
    std::vector<double> strong_;  ///< For each step, the weight of what is of interest.
    std::vector<RealRect> focus_; ///< For each step, the box around it.
};

} // namespace

std::string_view nameOf(EvidenceKind kind) {
    constexpr std::array<std::string_view, kEvidenceKinds> kNames{"press",        "drag",         "typing", "change",
                                                                  "small window", "window opens", "page",   "linger",
                                                                  "context",      "cursor",       "whole"};
    return kNames[static_cast<std::size_t>(kind)];
}

std::vector<Evidence> gatherEvidence(const Scene& scene, const FrameShape& shape, const DirectorWeights& weights) {
    return Gatherer(scene, shape, weights).gather();
}

} // namespace OrvantaNS::camera
