// The value engine: interprets a recording, values what happened, and cuts, merges and frames camera shots.
#pragma once

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include "Interval_Type.h"
#include "Orvanta.h"

namespace OrvantaNS {

class DataParser;
class ValueSpace;
enum OV_MERGE_STRATEGY : std::int32_t;
struct MERGE_ENTRY;
struct OV_DATA_STORE;
struct OV_FOCUS_SLICE;
struct SLICE_BREAKDOWN;
struct VS_VALUE_MAP;

/// The stages of a computation, as an observer meets them: each value says that the stage is complete.
enum OV_PIPELINE_STAGE : std::int32_t {
    OV_PIPELINE_ZONES = 0,     ///< The live zones stand.
    OV_PIPELINE_OBJECTS = 1,   ///< The value objects stand, sorted.
    OV_PIPELINE_SLICES = 2,    ///< The slices stand as slicing leaves them.
    OV_PIPELINE_SHOTS = 3,     ///< Merging is over: live slices are shots.
    OV_PIPELINE_KEYFRAMES = 4, ///< The keyframes stand.
};

/// The value engine. A host needs the three questions of `Orvanta` alone; every stage behind them is public as well, so
/// that tests and diagnostics can reach it. All operations are const and keep no state: what a computation needs
/// travels in the `OV_DATA_STORE`. Slices and objects are named by index, and indices are trusted.
class ORVANTA_EXPORT OrvantaWorker : public Orvanta {
public:
    /// What the questions of `Orvanta` answer.
    using KeyframeList = std::shared_ptr<std::vector<OV_TIME_RECT>>;
    /// The merge queue: a max-heap by priority whose ties follow its exact moves.
    using MergeQueue = std::vector<MERGE_ENTRY>;
    /// Called after each stage of `runPipeline`, on the caller's thread.
    using StageObserver = std::function<void(OV_PIPELINE_STAGE stage, const OV_DATA_STORE& store)>;

    OrvantaWorker();
    ~OrvantaWorker() override;

    // ---- The three questions ----

    /// Throws codes 1 to 8 of `OVERR_CODES`; prints the sizes at fault to the standard output before codes 1 and 2.
    KeyframeList calcOrvantaKeyframes(const Params& params, ProgressReporter* reporter) const override;
    /// Answers from the 20 seconds around `time` (ticks). Throws codes 1 to 4.
    KeyframeList calcOrvantaKeyframeAtTime(const Params& params, long long time) const override;
    /// Frames the first entry of `foreWindows`. Throws codes 2 and 4.
    KeyframeList calcKeyframeAtWindow(const Params& params) const override;

    // ---- Pipeline driver ----

    /// Everything behind `calcOrvantaKeyframes` but the copy of the result: checks the request, then fills `store`,
    /// which must be fresh, stage by stage. `observer` may be empty. Throws as `calcOrvantaKeyframes` does.
    void runPipeline(const Params& params, ProgressReporter* reporter, OV_DATA_STORE& store,
                     const StageObserver& observer) const;

    // ---- Live zones and object data ----

    /// Fills `store.liveZones`, with a margin of the fade and a second around each change of region. Needs
    /// `fadeSeconds` and the clip. Throws `OVERR_NO_LIVE_ZONES`.
    void parseLiveZones(const Params& params, OV_DATA_STORE& store) const;
    /// Fills `store.valueObjects`, sorted by start with ties in order of creation, and `store.windowObjects`.
    void parseObjectData(const Params& params, OV_DATA_STORE& store, DataParser& parser) const;
    /// Appends copies of the window objects to `store.windowObjects`.
    void filterWindows(OV_DATA_STORE& store) const;

    // ---- Time slicing (seconds) ----

    /// Cuts each live zone into `store.slices`, end to end. Throws `OVERR_NO_KEYFRAMES` when there are no objects, and
    /// `OVERR_USER_CANCELLED`.
    void sliceTime(OV_DATA_STORE& store) const;
    /// The slice that starts at `time`.
    OV_FOCUS_SLICE detectSlice(OV_DATA_STORE& store, ValueSpace& space, double time) const;
    /// Takes the objects whose life has ended before `time` out of the space.
    void advanceValueSpace(OV_DATA_STORE& store, double time, ValueSpace& space) const;
    /// Puts the objects that overlap the interval into the space, from `nextObject` on.
    void loadObjects(OV_DATA_STORE& store, Interval_Type<double> interval, ValueSpace& space) const;
    /// Brings the value of every object in the space up to date for the interval.
    void recalcValueInterval(OV_DATA_STORE& store, Interval_Type<double> interval, ValueSpace& space) const;
    /// The integral of an object's worth over the interval, value-seconds.
    double getIntegrationValue(unsigned int object, Interval_Type<double> interval, OV_DATA_STORE& store) const;
    /// The first trigger object from index `from` on that starts strictly after `time`; the number of objects when
    /// there is none.
    unsigned int getFirstTriggerObject(OV_DATA_STORE& store, double time, unsigned int from) const;
    /// True when any edge of `a` is `threshold` pixels or more away from the same edge of `b`.
    bool detectMotion(Rectangle a, Rectangle b, int threshold) const;
    /// Start of the first `ActiveWindow` strictly after `time`; `time` when there is none.
    double getNextWindowTime(OV_DATA_STORE& store, double time) const;
    /// Finds the first `ActiveWindow` that spans the whole interval; false, and `window` untouched, without one.
    bool getConstantWindow(OV_DATA_STORE& store, Interval_Type<double> interval, Rectangle& window) const;
    /// Bounds of a slice's tier-4 rectangles, else its window, else one pixel at the origin.
    Rectangle getSliceValueTier(OV_DATA_STORE& store, unsigned int slice) const;

    // ---- Merge driver ----

    /// Turns many slices into few shots, in place. The double is not read. Throws `OVERR_MERGE_FAILED` and
    /// `OVERR_USER_CANCELLED`.
    void mergeSlices(const Params& params, OV_DATA_STORE& store, double) const;
    /// Folds a last slice that is too short to be shown backwards; the only place in merging that erases slices.
    void forceLastKeyframe(OV_DATA_STORE& store) const;
    /// Proposes a merge of `slice` with its next target; returns that target, or `slice` when there is none.
    unsigned int createMergeEntry(OV_DATA_STORE& store, MergeQueue& queue, unsigned int slice) const;
    /// Puts an entry on the heap; an entry equal to its parent stops below it.
    void pushMergeEntry(MergeQueue& queue, const MERGE_ENTRY& entry) const;
    /// Takes the root off the heap, which must not be empty; a child of equal priority rises past the moving element.
    MERGE_ENTRY popMergeEntry(MergeQueue& queue) const;
    /// Drops a stale entry, or carries it out. Throws `OVERR_MERGE_FAILED`.
    void processMerge(OV_DATA_STORE& store, MergeQueue& queue, MERGE_ENTRY& entry) const;
    /// Folds the live slices after `first` up to and including `last` into `first`: its stop and revision move.
    void combineSlices(OV_DATA_STORE& store, unsigned int first, unsigned int last) const;
    /// Makes fresh proposals around a changed slice, the earlier pair first.
    void retestMerge(OV_DATA_STORE& store, MergeQueue& queue, unsigned int slice) const;
    /// Makes fresh proposals around a fixed transition, which itself is not proposed again.
    void retestBlock(OV_DATA_STORE& store, MergeQueue& queue, unsigned int first, unsigned int next) const;

    // ---- Slice classification and merge strategy ----

    /// Classifies a slice; also writes its camera mode, and its hot rectangle into its map.
    SLICE_BREAKDOWN identifySlice(OV_DATA_STORE& store, unsigned int slice) const;
    /// Fills priority and strategy of a fresh entry.
    void determineMergeStrategy(OV_DATA_STORE& store, MERGE_ENTRY& entry) const;
    /// True when the pair is to be kept apart by a fixed transition, which is then set.
    bool determineBlockStrategy(OV_DATA_STORE& store, MERGE_ENTRY& entry) const;
    /// Each raises the entry to its merge strategy when that applies and is worth more; may set `decided`.
    void detectTightMerge(OV_DATA_STORE& store, MERGE_ENTRY& entry, bool& decided) const;
    void detectWideMerge(OV_DATA_STORE& store, MERGE_ENTRY& entry, bool& decided) const;
    void detectOffWindowMerge(OV_DATA_STORE& store, MERGE_ENTRY& entry, bool& decided) const;
    void detectFullScreenMerge(OV_DATA_STORE& store, MERGE_ENTRY& entry, bool& decided) const;
    /// `base` weighted by the lengths of the pair: the shorter, the more urgent.
    int calculateMergePriority(OV_DATA_STORE& store, MERGE_ENTRY& entry, int base) const;
    /// Gives the entry `strategy` when its priority for `base` is strictly greater than the entry's.
    void testPriority(OV_DATA_STORE& store, MERGE_ENTRY& entry, OV_MERGE_STRATEGY strategy, int base) const;
    /// Seconds from the slice's start to its next target's start; its own length without a next target.
    double getLengthPlusBlanks(OV_DATA_STORE& store, unsigned int slice) const;
    /// The first live slice after `slice` that is not blank; `slice` itself when there is none.
    unsigned int findNextTargetSlice(OV_DATA_STORE& store, unsigned int slice) const;
    /// The nearest live slice before `slice` that is not blank; `slice` itself when there is none.
    unsigned int findPreviousTargetSlice(OV_DATA_STORE& store, unsigned int slice) const;
    /// A pure test, in spite of its name: may the windows of the pair share a camera?
    bool doWindowsMerge(OV_DATA_STORE& store, MERGE_ENTRY& entry) const;

    // ---- Merge executors: each carries out one valid entry and asks for fresh proposals ----

    void doTightMerge(OV_DATA_STORE& store, MergeQueue& queue, MERGE_ENTRY& entry) const;
    void doWideMerge(OV_DATA_STORE& store, MergeQueue& queue, MERGE_ENTRY& entry) const;
    void doLooseMerge(OV_DATA_STORE& store, MergeQueue& queue, MERGE_ENTRY& entry) const;
    void doForcedMerge(OV_DATA_STORE& store, MergeQueue& queue, MERGE_ENTRY& entry) const;
    void doOffWindowMerge(OV_DATA_STORE& store, MergeQueue& queue, MERGE_ENTRY& entry) const;
    void doFullScreenMerge(OV_DATA_STORE& store, MergeQueue& queue, MERGE_ENTRY& entry) const;
    void doTightPanTight(OV_DATA_STORE& store, MergeQueue& queue, MERGE_ENTRY& entry) const;
    void doTightGrowWide(OV_DATA_STORE& store, MergeQueue& queue, MERGE_ENTRY& entry) const;
    void doWideShrinkTight(OV_DATA_STORE& store, MergeQueue& queue, MERGE_ENTRY& entry) const;
    void doReturnWindow(OV_DATA_STORE& store, MergeQueue& queue, MERGE_ENTRY& entry) const;
    void doGoFullScreen(OV_DATA_STORE& store, MergeQueue& queue, MERGE_ENTRY& entry) const;
    void doGoOffWindow(OV_DATA_STORE& store, MergeQueue& queue, MERGE_ENTRY& entry) const;
    /// Gives three shots in a row a proper middle. No strategy selects it; `mergeTightLooseTight` does its work.
    void doTightLooseTight(OV_DATA_STORE& store, MergeQueue& queue, MERGE_ENTRY& entry) const;

    // ---- Value-map merging ----

    /// One map for the time of both; the order of the arguments matters. The result has no `tier4Rects`.
    VS_VALUE_MAP mergeMaps(VS_VALUE_MAP first, VS_VALUE_MAP second) const;
    /// Reduces the spaces at or above `threshold` to one rectangle with its value; the map must be sorted, densest
    /// first, and is not changed.
    std::pair<Rectangle, double> summarizeMerge(VS_VALUE_MAP& map, double threshold) const;
    /// The hot rectangle of a map; all zero when nothing reached tier 4.
    Rectangle getTier4Rect(const VS_VALUE_MAP& map) const;

    // ---- Merge combinations: pointless moves between finished frames ----

    void processMergeCombos(const Params& params, OV_DATA_STORE& store) const;
    /// Folds `next` into `first` when their frames almost coincide; true when it did.
    bool mergeNear(const Params& params, OV_DATA_STORE& store, unsigned int first, unsigned int next) const;
    /// Drops a brief wider shot between two near frames; true when it did.
    bool mergeInOutIn(const Params& params, OV_DATA_STORE& store, unsigned int first, unsigned int middle,
                      unsigned int next) const;
    /// Makes a brief loose stretch between two close shots a proper shot of both; true when it did.
    bool mergeTightLooseTight(OV_DATA_STORE& store, unsigned int first, unsigned int middle, unsigned int next) const;
    /// The frame of a slice as its keyframe would show it, local pixels.
    Rectangle getSliceGeometry(const Params& params, OV_DATA_STORE& store, unsigned int slice) const;
    /// Folds `next` into `first` by what the two slices are.
    void doBestMerge(OV_DATA_STORE& store, unsigned int first, unsigned int next) const;

    // ---- Cleanup pass ----

    /// Takes in what is too short for a move to finish in, and sweeps up blanks.
    void mergeCleanupPass(OV_DATA_STORE& store) const;

    // ---- Padding and framing (local pixels) ----

    /// On entry the paddings hold the target's size; on return, how much `rect` must grow (negative: shrink) in each
    /// dimension to get the target's shape.
    void calculatePadding(int& padWidth, int& padHeight, Rectangle bound, Rectangle rect) const;
    /// Applies the padding, at the window's walls first, and brings the result within `bound`.
    void padToAspectRatio(Rectangle& rect, int padWidth, int padHeight, Rectangle window, Rectangle bound) const;
    /// Spends padding on closing gaps of less than 64 pixels to the window's edges; true when any edge moved.
    bool stretchToWindow(Rectangle& rect, Rectangle window, int& padWidth, int& padHeight) const;
    /// Spends padding on taking in the valuable rectangles of `map`. The last rectangle is not read.
    void snapToValue(Rectangle& rect, int& padWidth, int& padHeight, Rectangle window, VS_VALUE_MAP map,
                     Rectangle) const;

    // ---- Keyframe creation ----

    /// Fills `store.keyframes`. The double is not read.
    void createKeyframeLoop(const Params& params, OV_DATA_STORE& store, DataParser& parser, double) const;
    /// The frame of one slice in each camera mode, local pixels.
    Rectangle createTightKeyframe(const Params& params, OV_DATA_STORE& store, unsigned int slice) const;
    Rectangle createWideKeyframe(const Params& params, OV_DATA_STORE& store, unsigned int slice) const;
    Rectangle createOffWindowKeyframe(const Params& params, OV_DATA_STORE& store, unsigned int slice) const;
    Rectangle createFullScreenKeyframe(const Params& params, OV_DATA_STORE& store, unsigned int slice) const;
    /// Moves the slice's start earlier, to where the viewer's eye will be ready.
    void adjustZoomTime(OV_DATA_STORE& store, DataParser& parser, unsigned int slice) const;

    // ---- Keyframe at a time ----

    /// Appends the single live zone of this path: up to 10 seconds on either side of `time` (ticks).
    void createLiveZoneAtTime(const Params& params, OV_DATA_STORE& store, long long time) const;
    /// Picks the frame by window, animation or value, and appends the keyframe.
    void applyOrvantaKeyframeMode(const Params& params, OV_DATA_STORE& store, long long time) const;
    /// The value summary of the three seconds from `time` (seconds), densest rectangle first.
    VS_VALUE_MAP detectKeyframe(OV_DATA_STORE& store, double time) const;
    /// The steady window at `time` (seconds); all zero without one.
    Rectangle getSnapWindowAtTime(double time, OV_DATA_STORE& store) const;
    /// The window in motion around `time` (seconds); all zero without one.
    Rectangle getAnimWindowAtTime(double time, OV_DATA_STORE& store) const;

    // ---- Diagnostics: nothing calls these ----

    /// Writes a request to "/Users/Shared/cursordatadump.txt". A file that cannot be opened is passed over.
    void printStuff(int targetWidth, int targetHeight, const std::vector<OV_TIME_RECT>& foreWindows,
                    const std::vector<OV_MOUSE_ACTION>& cursorActions,
                    const std::vector<OV_MOUSE_LOCATION>& cursorLocations, const std::vector<OV_TIME_RECT>& dirtyRects,
                    const std::vector<OV_TIME_RECT>& caretRects, const std::vector<OV_TIME_RECT>& recordingRegions,
                    double timeScale) const;
    /// Writes the objects in work that lie in or overlap the interval (seconds) to the standard output, or to
    /// "/Users/Shared/valuedatadump.txt".
    void printValueObjects(OV_DATA_STORE& store, bool toConsole, Interval_Type<double> interval) const;
    /// Writes one slice to the standard output; the index is not checked.
    void printFocusSlice(OV_DATA_STORE& store, unsigned slice) const;
};

} // namespace OrvantaNS
