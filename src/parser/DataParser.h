// Recording interpretation: turns the raw streams of a recording into value objects, one live zone at a time.
#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "Interval_Type.h"
#include "OrvantaExport.h"
#include "Params.h"
#include "frame/DataStore.h"
#include "frame/Steps.h"
#include "parser/cursor/MouseStroke.h"
#include "parser/damage/DirtyRectObject.h"

namespace OrvantaNS {

class StreamIndex;
class WorkingList;
struct ZoneWalk;

/// Two passes take turns over one timeline. The primary pass reads the streams forward in time and makes primitive
/// objects. The meta pass, every 10 seconds of recording time, looks at the primitives with the time ahead in hand,
/// decides what each one meant, and hands what survives over to the store.
///
/// One parser serves one computation: nothing resets its skip cursors. It holds no reference to the request or the
/// store, which are passed to each call, and every operation works from its arguments and the fields as they stand;
/// only the walk over a zone keeps an index of what cannot change while it lasts. Streams must be sorted by time; a
/// negative time other than -1 is unsupported but harmless. Unless said otherwise, points and dirty-rectangle objects
/// are in screen pixels, and value objects in local pixels of their zone; rules that compare the two do so without
/// conversion.
class ORVANTA_EXPORT DataParser {
public:
    /// Ticks per second: one process-wide value, zero at load, written by the value engine at the start of each
    /// computation. A computation converts with the scale that it began with, whatever is written here while it runs;
    /// on a thread that computes nothing, conversions use this value.
    static std::atomic<double> StoreTimeScale;

    // State, in the order in which the walk uses it.
    std::uint32_t skipLocation = 0;    ///< Trailing cursor into `cursorLocations`, for the lookups of the meta rules.
    std::uint32_t skipAction = 0;      ///< Trailing cursor into `cursorActions`.
    std::uint32_t skipCaret = 0;       ///< Trailing cursor into `caretRects`.
    std::uint32_t skipForeWindow = 0;  ///< Trailing cursor into `foreWindows`.
    std::uint32_t skipDirtyRect = 0;   ///< Trailing cursor into `dirtyRects`; where `preProcessDR` starts reading.
    std::uint32_t skipDRObject = 0;    ///< Trailing cursor into `drObjects`.
    std::uint32_t pauseStroke = 0;     ///< First stroke that `findLastMousePause` looks at; nothing writes it.
    std::uint32_t nextLocation = 0;    ///< Forward cursor into `cursorLocations`.
    std::uint32_t nextAction = 0;      ///< Forward cursor into `cursorActions`.
    std::uint32_t nextCaret = 0;       ///< Forward cursor into `caretRects`.
    std::uint32_t nextForeWindow = 0;  ///< Forward cursor into `foreWindows`.
    long long actionTime = -1;         ///< Ticks: time of the action under `nextAction`, -1 past the end.
    long long caretTime = -1;          ///< Ticks: the same for `nextCaret`.
    long long foreWindowTime = -1;     ///< Ticks: the same for `nextForeWindow`.
    long long metaTime = -1;           ///< Ticks: when the next meta pass is due; -1 when no more are due in this zone.
    long long locationTime = -1;       ///< Ticks: the same as `actionTime` for `nextLocation`.
    long long metaStartTime = 0;       ///< Ticks: start of the next meta pass's interval.
    std::vector<MOUSE_STROKE> strokes; ///< Raw strokes since the last meta pass.
    std::vector<OV_VALUE_OBJECT> objects; ///< The working list: objects that are not yet final.
    std::vector<DR_OBJECT> drObjects;     ///< Changing areas of the current live zone, in order of `start`.
    OV_VALUE_OBJECT lastWindow;           ///< The most recent `ActiveWindow`, as a copy.
    /// Every stroke that `processStrokes` kept, in the whole run, with its first and its last point alone.
    std::vector<MOUSE_STROKE> keptStrokes;

    DataParser();

    // ---- Time model and progress ----

    /// Ticks to seconds, at the scale of the computation that runs on this thread, else at `StoreTimeScale`.
    static double convertTime(long long ticks);
    /// Seconds to ticks at the same scale, rounding half up for times from 0 on. What does not fit 64 bits becomes the
    /// lowest value.
    static long long revertTime(double seconds);
    /// Both ends through `convertTime`.
    static Interval_Type<double> convertInterval(Interval_Type<long long> interval);
    /// Asks the reporter whether to stop, then reports how far `time` (seconds) stands in the clip, on the band of
    /// `stage`. Does nothing without a reporter. Throws `OVERR_USER_CANCELLED`.
    static void setProgress(OV_DATA_STORE& store, double time, OV_PROGRESS_STAGE stage);

    // ---- Driver and time walk ----

    /// The primary pass over one zone, with the meta passes in it; appends the zone's objects to `store.valueObjects`.
    /// `zone` is the index into `store.liveZones` and equals `store.currentZone`; zones come in increasing order.
    void processLiveZone(unsigned int zone, const Params& params, OV_DATA_STORE& store);
    /// The same with an index of the request's streams, `params` as they stand, that serves all its zones.
    void processLiveZone(unsigned int zone, const Params& params, OV_DATA_STORE& store, const StreamIndex& streams);
    /// Places all cursors for the start of `zone`: each on the last sample before it, where there is one.
    void skipToLiveZone(unsigned int zone, const Params& params, OV_DATA_STORE& store);
    /// Moves the six skip cursors up to the last sample before `time` (ticks); they never go back.
    void skipToTime(const Params& params, OV_DATA_STORE& store, long long time);
    /// Steps over one caret: carets influence no object.
    void processCaret(unsigned int zone, const Params& params, OV_DATA_STORE& store);

    // ---- Dirty-rectangle objects ----

    /// Fills `drObjects` for `zone`, reading from `skipDirtyRect`.
    void preProcessDR(unsigned int zone, const Params& params, OV_DATA_STORE& store);
    /// Adds dirty rectangle `index` to the clusters of its moment.
    void addDRToFrameSet(unsigned int index, const Params& params, std::vector<DR_OBJECT_FRAME>& frames);
    /// Matches the clusters of one moment against the objects alive; what finds no match becomes a new object.
    void mergeFramesToActiveSet(std::vector<DR_OBJECT_FRAME>& frames, std::vector<std::uint32_t>& active,
                                long long time);
    /// The objects from `skipDRObject` on that lie within `interval` (ticks, ends included) or overlap it by more than
    /// nothing, ascending.
    std::vector<std::uint32_t> getDRObjectsInTime(Interval_Type<long long> interval);
    /// The rectangle of an object at `time` (ticks): that of the last frame seen for the last time at or before it.
    Rectangle getDOFrameAtTime(unsigned int object, long long time);
    /// Ticks: from the time of the frame before, or the object's start for frame 0, to the time of this frame.
    Interval_Type<long long> getDRFrameSpan(unsigned int object, unsigned int frame);
    /// Pairs of object and frame that overlap `rect` (screen pixels) with positive area and `interval` in time.
    std::vector<std::pair<std::uint32_t, std::uint32_t>> getDRObjectsInSpaceTime(Interval_Type<long long> interval,
                                                                                 Rectangle rect);

    // ---- Cursor locations ----

    /// Reads samples from `nextLocation` on until one stroke, with the rest or absence behind it, is finished.
    void processCursorLocation(unsigned int zone, const Params& params, OV_DATA_STORE& store);
    /// Appends a sample to a stroke; false when the stroke has turned, or has been cut back to where the cursor rests.
    bool addToStroke(const OV_MOUSE_LOCATION& location, MOUSE_STROKE& stroke, const Params& params);
    /// Extends a rest to `location`'s time; false when the location differs by more than 4 pixels on an axis.
    bool extendIdle(const OV_MOUSE_LOCATION& location, MOUSE_IDLE& idle);
    /// Appends a `MouseIdle` to `objects`.
    void createIdlePrimitive(unsigned int zone, OV_DATA_STORE& store, MOUSE_IDLE& idle);
    /// Appends an `OffScreen` to `objects`.
    void createOffScreenPrimitive(unsigned int zone, OV_DATA_STORE& store, MOUSE_IDLE& idle);
    /// Makes a point (x, y) zone-relative; true when it lay in the zone's rectangle.
    bool clipPointToLZ(unsigned int zone, OV_DATA_STORE& store, std::pair<int, int>& point);
    /// The same for a cursor sample.
    bool clipPointToLZ(unsigned int zone, OV_DATA_STORE& store, OV_MOUSE_LOCATION& location);
    /// Cuts a rectangle to the zone's and makes it zone-relative; true when something remains. Changed in either case.
    bool clipRectToLZ(unsigned int zone, OV_DATA_STORE& store, Rectangle& rect);
    /// The first cursor sample at or after `time` (ticks), from `skipLocation` on; all -1 when there is none.
    OV_MOUSE_LOCATION getMouseAtTime(const Params& params, long long time);

    // ---- Cursor actions ----

    /// Handles the action under `nextAction` and moves `nextAction` on.
    void processCursorAction(unsigned int zone, const Params& params, OV_DATA_STORE& store);
    /// The rectangle spanned by the cursor between two actions. `location` is where the search in `cursorLocations`
    /// starts; it is left at the last sample read.
    Rectangle getClickRect(const Params& params, unsigned int down, unsigned int up, unsigned int& location);
    /// Gathers the run of wheel actions that starts at `nextAction` into one `Scroll`.
    void detectScroll(unsigned int zone, const Params& params, OV_DATA_STORE& store);

    // ---- Foreground windows and menus ----

    /// Consumes one run of window samples from `nextForeWindow` and makes its objects. Throws `std::out_of_range` when
    /// the request has no recording region.
    void processForeWindow(unsigned int zone, const Params& params, OV_DATA_STORE& store);
    /// Consumes a run of menu samples from `nextForeWindow`. Throws `std::out_of_range` as above.
    void processMenu(unsigned int zone, const Params& params, OV_DATA_STORE& store);
    /// True when window sample `index` is a menu pulled down from the screen's top. Throws as above.
    bool isMenu(const Params& params, OV_DATA_STORE& store, unsigned int index);

    // ---- Meta pass and strokes ----

    /// One meta pass: interprets the working list and hands over what is final. Throws `OVERR_USER_CANCELLED`.
    void fluxCapacitor(unsigned int zone, const Params& params, OV_DATA_STORE& store);
    /// The interval of this pass, ticks; clamps `metaTime` to the zone's stop when no cursor location is left.
    Interval_Type<long long> setMetaTime(unsigned int zone, OV_DATA_STORE& store);
    /// Appends a `FullScreenDirty` for each frame in `interval` (ticks) that covers the whole first region.
    void findFullScreenDR(const Params& params, OV_DATA_STORE& store, Interval_Type<long long> interval);
    /// Gives each stroke in `strokes` its object and searches its hovers.
    void processStrokes(OV_DATA_STORE& store);
    /// Cuts `strokes` at the time limits of drags.
    void chopStrokes();
    /// The box spanned by the stroke's first and last points. The stroke must have points.
    Rectangle convertStrokeToRect(MOUSE_STROKE& stroke);
    /// Appends the hover objects of one stroke.
    void findMouseHoverDR(OV_DATA_STORE& store, MOUSE_STROKE& stroke);
    /// The hover of one stroke over one changing area, in screen pixels; its type is `Dead` when there is none.
    OV_VALUE_OBJECT findHoverPrimitive(unsigned int object, MOUSE_STROKE& stroke);
    /// The first `ActiveWindow` of the working list in force at `time` (ticks, ends included); all zero without one.
    Rectangle getPrimitiveWindowAtTime(long long time);
    /// True when `frame` overlaps the box of 64 pixels around the location with positive area.
    bool isFrameNearMouse(OV_MOUSE_LOCATION location, Rectangle frame);

    // ---- Click results ----

    /// Finds the results of every click whose end the meta pass has passed.
    void getClickResult(unsigned int zone, const Params& params, OV_DATA_STORE& store);
    /// The results of click `index`: the window it opened, the areas it changed, within 2 seconds of its start.
    void getClickResultWorker(unsigned int zone, const Params& params, OV_DATA_STORE& store, unsigned int index);
    /// Rule for clicks: shapes the click's rectangle into the thing that was clicked.
    void metaClickDetect(unsigned int zone, const Params& params, OV_DATA_STORE& store, unsigned int index);
    /// The first changing area that answers a click, local pixels; all zero when there is none.
    Rectangle detectClickDR(const Params& params, OV_DATA_STORE& store, OV_VALUE_OBJECT& object);
    /// Hands object `index` over to the store once the meta pass has passed its stop.
    void metaAddPersist(unsigned int zone, const Params& params, OV_DATA_STORE& store, unsigned int index);
    /// Rule for drags: takes in what changed under the dragged cursor.
    void metaDragDirty(unsigned int zone, const Params& params, OV_DATA_STORE& store, unsigned int index);
    /// Removes a stroke that nothing explains. The meta pass does not run it: strokes keep their place.
    void metaKillStrokes(unsigned int zone, const Params& params, OV_DATA_STORE& store, unsigned int index);

    // ---- Window and menu rules of the meta pass: `index` is the object under the walk ----

    /// A click in the menu bar that dropped a menu.
    void metaSystemMenuClick(unsigned int zone, const Params& params, OV_DATA_STORE& store, unsigned int index);
    /// A stroke along the menu bar that dropped a menu.
    void metaSystemMenuHover(unsigned int zone, const Params& params, OV_DATA_STORE& store, unsigned int index);
    /// Hands over the hovers within a stroke's time.
    void metaPromoteHover(unsigned int zone, const Params& params, OV_DATA_STORE& store, unsigned int index);
    /// Hands over the hovers within a menu as panes.
    void metaMenuHover(unsigned int zone, const Params& params, OV_DATA_STORE& store, unsigned int index);
    /// Retypes what a click in a menu changed outside it.
    void metaMenuResult(unsigned int zone, const Params& params, OV_DATA_STORE& store, unsigned int index);
    /// A click's window that is a menu at the cursor.
    void metaContextMenu(unsigned int zone, const Params& params, OV_DATA_STORE& store, unsigned int index);
    /// A window within a window, or a repetition of one.
    void metaWindowPane(unsigned int zone, const Params& params, OV_DATA_STORE& store, unsigned int index);
    /// Joins animations that follow each other within a second, and hands them over.
    void metaJoinAnimatedWindows(unsigned int zone, const Params& params, OV_DATA_STORE& store, unsigned int index);
    /// Drops windows that only flashed and repeats of one opening.
    void metaKillPopWindow(unsigned int zone, const Params& params, OV_DATA_STORE& store, unsigned int index);
    /// What changes in the window while the cursor rests outside it.
    void metaOutOfWindowIdle(unsigned int zone, const Params& params, OV_DATA_STORE& store, unsigned int index);
    /// What changes in the window while the cursor rests briefly inside it.
    void metaInWindowIdle(unsigned int zone, const Params& params, OV_DATA_STORE& store, unsigned int index);
    /// What changes in the window while the cursor is briefly off the zone; the object always dies.
    void metaOutOfRegion(unsigned int zone, const Params& params, OV_DATA_STORE& store, unsigned int index);

    // ---- For keyframe creation ----

    /// The moment, in seconds, at which the run of cursor motion that leads to `time` began; `time` without one.
    double findLastMousePause(double time);

private:
    // The rules, over all objects up to the first that starts later than `limit`, seconds.
    void applyRules(unsigned int zone, const Params& params, OV_DATA_STORE& store, double limit);
    // Gives the latest start of a meta pass that was run; the lowest time when none was.
    long long walkZone(unsigned int zone, const Params& params, OV_DATA_STORE& store);
    // What has been read of a stream: all ahead of position `end`, of which none is later than `latest`, ticks.
    struct ReadSamples {
        std::uint32_t end = 0;
        long long latest = 0;
    };
    // `preProcessDR`. Gives what it has read of the dirty rectangles, from `skipDirtyRect` on.
    ReadSamples findAreas(unsigned int zone, const Params& params, OV_DATA_STORE& store);
    // `skipToTime` for one stream, of which some may have been read, and for all others.
    void skipDirtyRects(const Params& params, OV_DATA_STORE& store, long long time, const ReadSamples& read);
    void skipAllButDirtyRects(const Params& params, OV_DATA_STORE& store, long long time);

    // `getPrimitiveWindowAtTime` for a moment in seconds.
    Rectangle windowAt(double seconds) const;

    // The list of the pass that is running; without one, a list for one rule, made in `own`.
    WorkingList& listFor(std::optional<WorkingList>& own, OV_DATA_STORE& store);

    /// Counts work of members that are not given the store (`countSteps`). Throws `OVERR_USER_CANCELLED`.
    void count(std::uint64_t steps) {
        if (counting_ != nullptr) {
            countSteps(*counting_, steps);
        }
    }

    OV_DATA_STORE* counting_ = nullptr; // While a zone is in work; null for a member called on its own.
    const ZoneWalk* walk_ = nullptr;    // While a zone is walked; the parser does not own it.
    WorkingList* list_ = nullptr;       // The same for a meta pass.
    double passStart_ = 0.0;            // In a meta pass: `metaStartTime` in seconds.
    MOUSE_STROKE strokeInWork_;         // Of `processCursorLocation`, kept for its memory.
};

} // namespace OrvantaNS
