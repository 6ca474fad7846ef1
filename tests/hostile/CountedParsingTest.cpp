// What the reading of a zone counts of its work, piece by piece. Each case makes one of the loops that can get long long,
// and all others short.

#include <cstdint>
#include <functional>
#include <vector>

#include <gtest/gtest.h>

#include "CountedSteps.h"
#include "ParserScene.h"
#include "parser/cursor/StrokePauses.h"
#include "parser/flood/DirtyRectFlood.h"
#include "parser/meaning/WorkingList.h"

namespace OrvantaNS::testing {
namespace {

class CountedParsingTest : public ParserTest {
protected:
    void expectCounted(std::uint64_t entries, const std::function<void()>& work) {
        testing::expectCounted(store, entries, work);
    }
    // One walk over the zone, with what was put into the parser by hand.
    void walk() { parser.processLiveZone(0, scene, store); }

    // Apart from one another, a hundred in a row, each 4 by 4.
    static Rectangle cell(std::int32_t k) { return box(k % 100 * 6, k / 100 * 6, 4, 4); }
    static constexpr Rectangle kFar{0, 2000000000, 0, 10}; // no tree can hold it

    // So many changed rectangles in each of some moments, a millisecond apart. What ends a moment's group is read over, so
    // that each moment but the first gets one more, which is not there for the parser.
    void changes(std::int32_t moments, std::int32_t rects,
                 const std::function<Rectangle(std::int32_t, std::int32_t)>& rectOf) {
        for (std::int32_t moment = 0; moment < moments; ++moment) {
            for (std::int32_t k = 0; k <= rects; ++k) {
                scene.params().dirtyRects().push_back({1 + moment, rectOf(moment, k)});
            }
        }
    }

    // A stroke with a sample in each millisecond from `first` on, a pixel further to the right each.
    void strokeFrom(long long first, std::int32_t points) {
        MOUSE_STROKE stroke;
        for (std::int32_t k = 0; k < points; ++k) {
            stroke.points.push_back({first + k, k, 50});
        }
        parser.strokes.push_back(stroke);
    }
    // A stroke that ends where it begins: it is dropped once all have been cut.
    void restAt(long long time) {
        MOUSE_STROKE stroke;
        stroke.points = {{time, 50, 50}, {time + 2, 50, 50}};
        parser.strokes.push_back(stroke);
    }
    // Drags that cut at `cuts` moments, `spacing` milliseconds apart; an even number.
    void cutsFrom(long long first, long long spacing, std::int32_t cuts) {
        const auto seconds = [&](std::int32_t k) { return DataParser::convertTime(first + k * spacing); };
        for (std::int32_t k = 0; k < cuts; k += 2) {
            object(Drag, seconds(k), seconds(k + 1), {0, 10, 0, 10});
        }
    }
};

// ---- The walk ----

TEST_F(CountedParsingTest, SamplesAheadOfTheZone_AreCountedAsTheyAreSkipped) {
    constexpr std::int32_t kRects = 4000;
    zone({0, 1280, 0, 800}, 30.0, 60.0);
    for (std::int32_t k = 0; k < kRects; ++k) {
        scene.dirty(0.001 * k, {0, 10, 0, 10});
    }
    expectCounted(kRects, [&] { walk(); });
}

TEST_F(CountedParsingTest, SamplesOfEachStreamAheadOfTheZone_AreCounted) {
    constexpr std::int32_t kSamples = 4000;
    zone({0, 1280, 0, 800}, 30.0, 60.0);
    Params& request = scene.params();
    const auto expectOnly = [&](auto& stream, const auto& sample) {
        stream.assign(kSamples, sample);
        parser = DataParser();
        expectCounted(kSamples, [&] { walk(); });
        stream.clear();
    };
    expectOnly(request.cursorLocations(), OV_MOUSE_LOCATION{1000, 10, 10});
    expectOnly(request.cursorActions(), OV_MOUSE_ACTION{1000, 9});
    expectOnly(request.caretRects(), OV_TIME_RECT{1000, {0, 1, 0, 10}});
    expectOnly(request.foreWindows(), OV_TIME_RECT{1000, {0, 100, 100, 200}});
}

TEST_F(CountedParsingTest, DirtyRectanglesThatHaveBeenSkipped_AreNotCountedAgainByEachZone) {
    constexpr std::int32_t kRects = 4000;
    constexpr std::uint32_t kZones = 300;
    for (std::int32_t k = 0; k < kRects; ++k) {
        scene.dirty(0.001 * k, {0, 10, 0, 10});
    }
    store.liveZones.clear();
    for (std::uint32_t k = 0; k < kZones; ++k) {
        store.liveZones.push_back({{0, 1280, 0, 800}, 30.0 + k, 30.1 + k});
    }
    expectCounted(kRects, [&] {
        for (std::uint32_t k = 0; k < kZones; ++k) {
            parser.processLiveZone(k, scene, store);
        }
    });
}

// Ten seconds do not fit the ticks of this clock, so that no meta pass comes and counts anything of its own.
TEST_F(CountedParsingTest, Samples_AreCountedAsTheyAreRead) {
    constexpr long long kSecond = 1000000000000000000;
    constexpr std::int32_t kCarets = 2000;
    DataParser::StoreTimeScale = static_cast<double>(kSecond);
    zone({0, 1280, 0, 800}, 0.0, 5.0);
    for (std::int32_t k = 0; k < kCarets; ++k) {
        scene.params().caretRects().push_back({kSecond + k, {0, 1, 0, 10}});
    }
    expectCounted(kCarets, [&] { walk(); });
}

TEST_F(CountedParsingTest, SamplesThatHaveBeenSkipped_AreNotCountedAgainByEachPass) {
    constexpr std::int32_t kCarets = 4000;
    zone({0, 1280, 0, 800}, 0.0, 3000.0); // three hundred passes
    for (std::int32_t k = 0; k < kCarets; ++k) {
        scene.caret(0.001 * k, {0, 1, 0, 10});
    }
    expectCounted(kCarets, [&] { walk(); });
}

// ---- Changed rectangles ----

TEST_F(CountedParsingTest, ARectangleInEachMoment_IsCounted) {
    constexpr std::int32_t kMoments = 2000;
    changes(kMoments, 1, [](std::int32_t, std::int32_t) { return box(0, 0, 40, 40); });
    expectCounted(2ULL * kMoments, [&] { parser.preProcessDR(0, scene, store); });
}

TEST_F(CountedParsingTest, AFewRectanglesInEachMoment_AreCounted_NotThoseAhead) {
    constexpr std::int32_t kMoments = 1500;
    changes(kMoments, 3, [](std::int32_t, std::int32_t k) { return cell(k); });
    expectCounted(4ULL * kMoments, [&] { parser.preProcessDR(0, scene, store); });
}

TEST_F(CountedParsingTest, ManyRectanglesInOneMoment_ByTheirPairs) {
    changes(1, kFloodRects - 1, [](std::int32_t, std::int32_t k) { return cell(k); });
    ASSERT_EQ(scene.params().dirtyRects().size(), kFloodRects);
    expectCounted(kFloodRects * (kFloodRects - 1) / 2, [&] { parser.preProcessDR(0, scene, store); });
}

// None is seen again, and all live on for a while.
TEST_F(CountedParsingTest, AreasAlive_ByThePairsOfThemAndTheRectanglesOfEachMoment) {
    constexpr std::int32_t kMoments = 60;
    constexpr std::int32_t kRects = 30;
    changes(kMoments, kRects, [](std::int32_t moment, std::int32_t k) { return cell(moment * (kRects + 1) + k); });
    expectCounted(std::uint64_t{kRects} * kRects * kMoments * (kMoments - 1) / 2,
                  [&] { parser.preProcessDR(0, scene, store); });
    EXPECT_EQ(parser.drObjects.size(), std::size_t{kRects} * kMoments + 1);
}

TEST_F(CountedParsingTest, AreasAlive_AreCountedInEachMoment) {
    constexpr std::int32_t kMoments = 1000;
    constexpr std::int32_t kAreas = 200;
    changes(1, kAreas - 1, [](std::int32_t, std::int32_t k) { return cell(k); });
    for (std::int32_t moment = 0; moment < kMoments; ++moment) { // the one that is read of each is elsewhere
        const long long time = 2 + moment;
        scene.params().dirtyRects().push_back({time, cell(kAreas)});
        scene.params().dirtyRects().push_back({time, cell(kAreas)});
    }
    expectCounted(std::uint64_t{kMoments} * kAreas, [&] { parser.preProcessDR(0, scene, store); });
}

TEST_F(CountedParsingTest, Floods_ByTheirOwnRecords) {
    constexpr std::uint32_t kAhead = 20000;
    constexpr std::uint32_t kRects = 300;
    std::vector<OV_TIME_RECT> rects(kAhead, {0, cell(0)});
    for (std::uint32_t k = 0; k < kRects; ++k) {
        rects.push_back({0, cell(static_cast<std::int32_t>(k))});
    }
    expectCounted(9ULL * kRects, [&] { clusterFlood(rects, kAhead, kAhead + kRects, &store); }); // log2(300) is 8.2
}

TEST_F(CountedParsingTest, Floods_OfFarRecords_ByTheirPairs) {
    constexpr std::uint32_t kRects = 1000;
    const std::vector<OV_TIME_RECT> rects(kRects, {0, kFar});
    expectCounted(kRects * (kRects - 1) / 2, [&] { clusterFlood(rects, 0, kRects, &store); });
}

TEST_F(CountedParsingTest, SimilarFrames_ByTheFramesThatAreLaidOut_AndThoseThatAreAskedAbout) {
    constexpr std::size_t kFrames = 2000;
    constexpr std::uint64_t kQuestions = 20;
    std::vector<DR_OBJECT_FRAME> frames(kFrames, DR_OBJECT_FRAME{{0}, kFar, false});
    expectCounted(kFrames, [&] { SimilarFrameFinder(frames, &store); });
    const SimilarFrameFinder far(frames, &store);
    const auto askAbout = [&](const SimilarFrameFinder& finder, const Rectangle& seen) {
        for (std::uint64_t k = 0; k < kQuestions; ++k) {
            EXPECT_EQ(finder.find(seen), kFrames);
        }
    };
    expectCounted(kQuestions * kFrames, [&] { askAbout(far, cell(0)); });
    for (DR_OBJECT_FRAME& frame : frames) {
        frame.rect = cell(0);
    }
    const SimilarFrameFinder near(frames, &store);
    expectCounted(kQuestions * kFrames, [&] { askAbout(near, kFar); });
}

// ---- Questions about areas ----

// The later areas come with earlier times, so that the order of the areas is none.
TEST_F(CountedParsingTest, AreasInDisorder_AreCountedByEachStrokeThatAsks) {
    constexpr std::int32_t kStrokes = 1000;
    constexpr std::int32_t kAreas = 250;
    for (const long long time : {3000, 2000}) {
        for (std::int32_t k = 0; k <= kAreas; ++k) {
            scene.params().dirtyRects().push_back({time, cell(time == 3000 ? k : k + 1000)});
        }
    }
    for (std::int32_t k = 0; k < kStrokes; ++k) {
        strokeFrom(10000 + 10LL * k, 9);
    }
    expectCounted(std::uint64_t{kStrokes} * 2 * kAreas, [&] { walk(); });
}

// Seen at a late moment first, so that its frames are read one by one.
TEST_F(CountedParsingTest, FramesInDisorder_AreCountedByEachPointThatAsks) {
    constexpr std::int32_t kFrames = 2000;
    constexpr std::int32_t kPoints = 200;
    scene.params().dirtyRects().push_back({2000, box(0, 0, 100, 100)});
    for (std::int32_t k = 0; k < kFrames; ++k) {
        scene.params().dirtyRects().push_back({1000 + k, box(k % 2, 0, 100, 100)});
        scene.params().dirtyRects().push_back({1000 + k, box(k % 2, 0, 100, 100)});
    }
    strokeFrom(1000 + kFrames - kPoints, kPoints);
    expectCounted(std::uint64_t{kFrames} * kPoints, [&] { walk(); });
    EXPECT_EQ(parser.drObjects.size(), 1u);
}

TEST_F(CountedParsingTest, FramesOfTheWholeScreen_AreCounted) {
    constexpr std::int32_t kFrames = 4000;
    std::vector<OV_TIME_RECT> frames;
    frames.reserve(kFrames);
    for (std::int32_t k = 0; k < kFrames; ++k) {
        frames.push_back({k, cell(0)});
    }
    changingArea(0.0, 4.0, {0, 1280, 0, 800}, frames);
    expectCounted(kFrames, [&] { parser.findFullScreenDR(scene, store, {0, 10000}); });
}

TEST_F(CountedParsingTest, AreasAroundWindowsAtTheTop_AreCountedByEachWindow) {
    constexpr std::int32_t kWindows = 1000;
    constexpr std::int32_t kAreas = 250;
    for (std::int32_t k = 0; k <= kAreas; ++k) {
        scene.params().dirtyRects().push_back({1000, box(k % 100 * 6, 100 + k / 100 * 6, 4, 4)});
    }
    for (std::int32_t k = 0; k < kWindows; ++k) {
        scene.params().foreWindows().push_back({1000, box(2000 + k, 0, 10, 10)}); // off the recording
        scene.params().foreWindows().push_back({1000, {}}); // none, so that the next one is not taken for its motion
    }
    expectCounted(std::uint64_t{kWindows} * kAreas, [&] { walk(); });
}

TEST_F(CountedParsingTest, AreasThatARuleLooksAt_AreCounted) {
    constexpr std::int32_t kAreas = 4000;
    for (std::int32_t k = 0; k < kAreas; ++k) {
        changingArea(1.0, 1.5, box(0, 0, 10, 10));
    }
    const unsigned int click = object(Click, 1.0, 1.1, box(200, 200, 1, 1));
    expectCounted(kAreas, [&] { parser.getClickResultWorker(0, scene, store, click); });
    expectCounted(kAreas, [&] { parser.detectClickDR(scene, store, parser.objects[click]); });
    const unsigned int menuClick = object(Click, 1.0, 1.1, box(200, 5, 1, 1));
    expectCounted(kAreas, [&] { parser.metaSystemMenuClick(0, scene, store, menuClick); });
    const unsigned int absence = object(OffScreen, 1.0, 1.1, box(200, 200, 1, 1));
    expectCounted(kAreas, [&] { parser.metaOutOfRegion(0, scene, store, absence); });
}

// ---- The working list ----

TEST_F(CountedParsingTest, ObjectsThatAPassDoesNotReachYet_AreCounted) {
    constexpr std::int32_t kObjects = 4000;
    for (std::int32_t k = 0; k < kObjects; ++k) {
        object(Move, 50.0, 51.0, {0, 10, 0, 10});
    }
    parser.metaTime = 10000;
    expectCounted(kObjects, [&] { parser.fluxCapacitor(0, scene, store); });
    EXPECT_EQ(parser.objects.size(), std::size_t{kObjects});
}

TEST_F(CountedParsingTest, AnIndexOfAKind_ByTheObjectsOfAll_AndItsQuestionsByTheBlocksThatMayAnswer) {
    constexpr std::int32_t kObjects = 4000;
    for (std::int32_t k = 0; k < kObjects; ++k) {
        object(Move, 0.0, 1.0, {0, 10, 0, 10});
    }
    WorkingList moves(parser.objects, store);
    expectCounted(kObjects, [&] { moves.windowInForceAt(5.0); });
    for (std::int32_t k = 0; k < kObjects; ++k) { // before and after the moment in turns
        object(ActiveWindow, k % 2 * 9, k % 2 * 9 + 1, {0, 10, 0, 10});
    }
    WorkingList windows(parser.objects, store);
    expectCounted(2ULL * kObjects, [&] { EXPECT_EQ(windows.windowInForceAt(5.0), WorkingList::kNone); });
    expectCounted(kObjects, [&] { EXPECT_EQ(windows.windowInForceAt(5.0), WorkingList::kNone); });
}

TEST_F(CountedParsingTest, WindowsBefore_AreCountedByTheQuestions) {
    constexpr std::uint64_t kQuestions = 2000;
    for (std::int32_t k = 0; k < 200; ++k) {
        object(ActiveWindow, 0.0, 1.0, {0, 10, 0, 10});
    }
    WorkingList windows(parser.objects, store);
    windows.windowBefore(100);
    expectCounted(8 * kQuestions, [&] { // two hundred places, halved again and again
        for (std::uint64_t k = 0; k < kQuestions; ++k) {
            EXPECT_EQ(windows.windowBefore(100), 99u);
        }
    });
}

TEST_F(CountedParsingTest, WindowsAtOnePlace_ByTheWindowsThatAreLaidOut_AndThoseThatAreVisited) {
    constexpr std::int32_t kWindows = 4000;
    for (std::int32_t k = 0; k < kWindows; ++k) {
        object(ActiveWindow, 0.0, 1.0, {0, 10, 0, 10});
    }
    WorkingList windows(parser.objects, store);
    std::int32_t visited = 0;
    const auto visit = [&](std::size_t) { return ++visited > 0; };
    expectCounted(kWindows, [&] { windows.atSamePlace({0, 20, 0, 20}, 0.0, visit); });
    EXPECT_EQ(visited, 0);
    expectCounted(kWindows, [&] { windows.atSamePlace({0, 10, 0, 10}, 0.0, visit); });
    EXPECT_EQ(visited, kWindows);
}

TEST_F(CountedParsingTest, Insertions_ByTheObjectsBehind) {
    constexpr std::size_t kObjects = 4000;
    constexpr std::uint64_t kInsertions = 20;
    parser.objects.resize(kObjects);
    WorkingList list(parser.objects, store);
    const auto insertBehind = [&](std::size_t index) {
        for (std::uint64_t k = 0; k < kInsertions; ++k) {
            list.insertBehind(index, {Menu, 0.0, 1.0, {0, 10, 0, 10}, 0.0});
        }
    };
    expectCounted(kObjects * kInsertions, [&] { insertBehind(0); });
    expectCounted(kInsertions * kInsertions, [&] { insertBehind(kObjects); });
}

// ---- Strokes ----

TEST_F(CountedParsingTest, Strokes_AreCountedOneByOne) {
    constexpr std::int32_t kStrokes = 2000;
    for (std::int32_t k = 0; k < kStrokes; ++k) {
        strokeFrom(5LL * k, 5);
    }
    expectCounted(kStrokes, [&] { walk(); });
}

// ---- Strokes that drags cut ----

TEST_F(CountedParsingTest, Cuts_ByThePointsBehindEach) {
    strokeFrom(0, 8000);
    cutsFrom(80, 79, 100);
    expectCounted(100 * 8000 / 2, [&] { walk(); });
}

TEST_F(CountedParsingTest, Cuts_ByTheStrokesThatMakeRoomForThePieces) {
    constexpr std::int32_t kCuts = 100;
    constexpr std::int32_t kBehind = 4000;
    strokeFrom(0, 4 * (kCuts + 1));
    cutsFrom(3, 4, kCuts);
    for (std::int32_t k = 0; k < kBehind; ++k) {
        restAt(5000 + k);
    }
    expectCounted(std::uint64_t{kCuts} * kBehind, [&] { walk(); });
}

TEST_F(CountedParsingTest, Cuts_NotByTheStrokesAhead) {
    constexpr std::int32_t kCuts = 100;
    constexpr std::int32_t kAhead = 4000;
    for (std::int32_t k = 0; k < kAhead; ++k) {
        restAt(k);
    }
    strokeFrom(5000, 4 * (kCuts + 1));
    cutsFrom(5003, 4, kCuts);
    expectCounted(kAhead + kCuts, [&] { walk(); });
}

// Neither piece of two points is a stroke.
TEST_F(CountedParsingTest, StrokesThatACutDestroys_ByThoseThatMoveUp) {
    constexpr std::int32_t kStrokes = 600;
    for (std::int32_t k = 0; k < kStrokes; ++k) {
        restAt(3LL * k);
    }
    cutsFrom(0, 3, kStrokes);
    expectCounted(std::uint64_t{kStrokes} * kStrokes / 2, [&] { walk(); });
}

TEST_F(CountedParsingTest, StrokesThatACutDestroys_NotByThoseAhead) {
    constexpr std::int32_t kAhead = 8000;
    constexpr std::int32_t kStrokes = 100;
    for (std::int32_t k = 0; k < kAhead; ++k) {
        restAt(k);
    }
    for (std::int32_t k = 0; k < kStrokes; ++k) {
        restAt(9000 + 3LL * k);
    }
    cutsFrom(9000, 3, kStrokes);
    expectCounted(kAhead + kStrokes * kStrokes / 2, [&] { walk(); });
}

// ---- Skipping ----

TEST_F(CountedParsingTest, SkippingAStream_ByItsSamplesInBetween) {
    constexpr std::int32_t kSamples = 1600;
    const auto fillers =
        std::vector<std::function<void(std::int32_t)>>{[&](std::int32_t k) {
                                                           scene.params().cursorLocations().push_back({k, 0, 0});
                                                       },
                                                       [&](std::int32_t k) {
                                                           scene.params().cursorActions().push_back({k, 9});
                                                       },
                                                       [&](std::int32_t k) {
                                                           scene.params().caretRects().push_back({k, kFar});
                                                       },
                                                       [&](std::int32_t k) {
                                                           scene.params().foreWindows().push_back({k, kFar});
                                                       },
                                                       [&](std::int32_t k) {
                                                           scene.params().dirtyRects().push_back({k, kFar});
                                                       },
                                                       [&](std::int32_t k) {
                                                           parser.drObjects.push_back({{}, 0, k, {}});
                                                       }};
    for (std::size_t stream = 0; stream < fillers.size(); ++stream) {
        SCOPED_TRACE(stream);
        for (std::int32_t k = 0; k < kSamples; ++k) {
            fillers[stream](k);
        }
        for (const std::int32_t half : {kSamples / 2, kSamples}) {
            expectCounted(kSamples / 2, [&] { parser.skipToTime(scene, store, half); });
        }
    }
}

// ---- A cursor in disorder ----

TEST_F(CountedParsingTest, ClicksOverACursorInDisorder_ByTheSamplesThatEachReads_NotThoseAheadOfTheZone) {
    constexpr std::int32_t kAhead = 10000;
    constexpr std::int32_t kNear = 10;
    constexpr std::int32_t kClicks = 400;
    zone({0, 1280, 0, 800}, 30.0, 60.0);
    for (std::int32_t k = 0; k < kAhead; ++k) {
        scene.params().cursorLocations().push_back({k, 100, 100});
    }
    for (std::int32_t k = 0; k < kNear; ++k) {
        scene.params().cursorLocations().push_back({31000 - k % 2, 100, 100});
    }
    for (std::int32_t k = 0; k < 2 * kClicks; ++k) {
        scene.params().cursorActions().push_back({32000, k % 2});
    }
    expectCounted(kAhead + kClicks * kNear, [&] { walk(); });
}

// Below each window the top of the screen has changed, so that it is a menu if the cursor is there, which it is not.
TEST_F(CountedParsingTest, ACursorInDisorder_IsCountedByEachWindowThatMayBeAMenu) {
    constexpr std::int32_t kWindows = 250;
    constexpr std::int32_t kSamples = 4000;
    changes(2, 1, [](std::int32_t moment, std::int32_t) { return box(0, 0, 4, 4 + moment); });
    for (std::int32_t k = 0; k < kSamples; ++k) {
        scene.params().cursorLocations().push_back({2 - k % 2, 1000, 700});
    }
    for (std::int32_t k = 0; k < kWindows; ++k) {
        scene.params().foreWindows().push_back({2, box(2000 + k, 0, 10, 10)}); // off the recording
        scene.params().foreWindows().push_back({2, {}}); // none, so that the next one is not taken for its motion
    }
    expectCounted(std::uint64_t{kWindows} * kSamples, [&] { walk(); });
}

// ---- Pauses between strokes ----

// The first stroke leads back to its own start. All others tell of times before it, as a clock that is put back makes
// them, and each is looked at in turn.
TEST_F(CountedParsingTest, PausesOfAClockThatWasPutBack_ByTheStrokesThatTellOfEarlierTimes) {
    constexpr std::size_t kStrokes = 2000;
    constexpr std::uint64_t kQuestions = 20;
    MOUSE_STROKE stroke;
    stroke.points = {{0, 0, 0}, {1000, 50, 0}};
    parser.keptStrokes.push_back(stroke);
    stroke.points = {{100, 0, 0}, {-5, 50, 0}};
    parser.keptStrokes.resize(kStrokes, stroke);
    const StrokePauses pauses(parser, &store);
    expectCounted(kQuestions * kStrokes, [&] {
        for (std::uint64_t k = 0; k < kQuestions; ++k) {
            EXPECT_EQ(pauses.lastBefore(0.5), 0.5);
        }
    });
}

} // namespace
} // namespace OrvantaNS::testing
