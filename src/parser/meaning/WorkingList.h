// What the rules of the meta pass ask of the working list, answered without reading the whole list each time.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <vector>

#include "frame/DataStore.h"
#include "frame/ValueObject.h"

namespace OrvantaNS {

/// The working list during one meta pass, or one rule. Answers are positions, in list order, and exactly those that a
/// scan of the list would give, whatever times it holds. While a `WorkingList` is in use, windows, menus and what a
/// rule asks for are changed through it alone; other objects may be appended to the list.
///
/// A list of what people do within ten seconds is short and is simply read, from the first object of the kind on. A long
/// one gets, for each kind of object that the rules ask for, the positions of that kind in blocks, and over them a tree
/// with the bounds of their times: a question goes down only where the bounds allow an answer.
class WorkingList {
public:
    /// The kinds of objects that rules ask for.
    enum Kind : std::size_t {
        Anything,
        Windows,      ///< `ActiveWindow`.
        Openings,     ///< `ForeOpen`.
        InFront,      ///< `ActiveWindow` and `ForeAnimate`.
        Shown,        ///< `ActiveWindow`, `ForeAnimate` and `Menu`.
        Menus,        ///< `Menu`.
        Hovers,       ///< `Hover`.
        Clicks,       ///< `Click` and `DoubleClick`.
        ClickResults, ///< `ClickDirty` and `ClickWindow`.
        Departures,   ///< `MoveOutOfWindow`.
    };

    /// Answer of a question that no object answers: behind every position.
    static constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

    /// `objects` and `store` must outlive the list. The work is counted in `store` (`countSteps`).
    WorkingList(std::vector<OV_VALUE_OBJECT>& objects, OV_DATA_STORE& store) : objects_(objects), store_(store) {}

    // ---- Questions: each looks at positions from `from` on; ends of intervals are included unless said otherwise ----

    /// The first `ActiveWindow` in force at `time`, seconds.
    std::size_t windowInForceAt(double time);
    /// The first window, animation or menu that begins from `start` on and either ends by `stop` or overlaps the time
    /// from `start` to `stop` by more than nothing.
    std::size_t windowFollowing(double start, double stop);
    /// The last `ActiveWindow` or `ForeAnimate` before position `index`.
    std::size_t windowBefore(std::size_t index);
    /// Visits every `ActiveWindow` and `ForeOpen` with this rectangle that begins from `start` on, until `visit` gives
    /// false.
    void atSamePlace(const Rectangle& rect, double start, const std::function<bool(std::size_t)>& visit);
    /// The first menu that spans the time from `start` to `stop`, or overlaps it by more than nothing.
    std::size_t menuDuring(double start, double stop);
    /// The first object of the kind that lies within the time from `start` to `stop`.
    std::size_t within(Kind kind, std::size_t from, double start, double stop);
    /// The first object of the kind that begins within the time from `earliest` to `latest`.
    std::size_t beginning(Kind kind, std::size_t from, double earliest, double latest);
    /// The first object of the kind that begins later than `after`, and by `latest`.
    std::size_t beginningBetween(Kind kind, std::size_t from, double after, double latest);
    /// The first object of the kind that begins later than `time`.
    std::size_t beginningAfter(Kind kind, std::size_t from, double time);
    /// The first object of the kind that does not begin later than `time`.
    std::size_t notBeginningAfter(Kind kind, std::size_t from, double time);

    // ---- Changes ----

    void retype(std::size_t index, OV_OBJECT_TYPE type);
    void setStop(std::size_t index, double stop);
    /// The new object stands directly behind position `index`.
    void insertBehind(std::size_t index, const OV_VALUE_OBJECT& object);

private:
    static constexpr std::size_t kKinds = Departures + 1;

    // Of the times of some objects; inside out without any.
    struct Bounds {
        double earliestStart = std::numeric_limits<double>::infinity();
        double latestStart = -std::numeric_limits<double>::infinity();
        double earliestStop = std::numeric_limits<double>::infinity();
        double latestStop = -std::numeric_limits<double>::infinity();
        bool isEmpty = true;
        bool isOdd = false; // Some time is not a number: the bounds tell nothing.
    };
    struct Index {
        std::vector<std::size_t> positions; // Ascending: objects that are of the kind, or may become so.
        std::size_t leafCount = 0;
        std::vector<Bounds> bounds; // A binary tree, the root at 1, over blocks of positions.
    };

    static bool isOf(Kind kind, std::uint32_t type);
    static bool mayBecome(Kind kind, std::uint32_t type);
    bool isLong() const;
    const Index& indexOf(Kind kind);
    Bounds boundsOf(Kind kind, const Index& index, std::size_t block) const;
    static Bounds around(const Bounds& a, const Bounds& b);
    void refresh(std::size_t index);

    template <typename MayHold, typename Matches>
    std::size_t first(Kind kind, std::size_t from, MayHold mayHold, Matches matches);
    template <typename MayHold, typename Matches>
    std::size_t firstBelow(Kind kind, const Index& index, std::size_t node, std::size_t blocks, std::size_t fromPlace,
                           MayHold mayHold, Matches matches);
    std::size_t lastBefore(Kind kind, std::size_t before);

    std::vector<OV_VALUE_OBJECT>& objects_;
    OV_DATA_STORE& store_;
    std::array<Index, kKinds> indices_;
    std::array<bool, kKinds> isMade_{};
    std::array<std::size_t, kKinds> begins_{}; // No object before this position is of the kind, or will become so.
    std::vector<std::size_t> byPlace_;         // Positions of windows and openings by rectangle, then by position.
    bool isByPlaceMade_ = false;
    bool isByPlaceInTime_ = false; // Those of one rectangle stand in order of start.
};

} // namespace OrvantaNS
