#include "CameraWishes.h"

#include <cmath>
#include <fstream>
#include <limits>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Random.h"

namespace OrvantaNS {

void PrintTo(const CameraWishedKeyframe& keyframe, std::ostream* out) {
    const Rectangle& r = keyframe.frame.rect;
    *out << "tick " << keyframe.frame.time << ": " << r.left << " " << r.top << " " << r.right - r.left << "x"
         << r.bottom - r.top << " origin " << static_cast<int>(keyframe.origin) << " index " << keyframe.index;
}

namespace testing {
namespace {

using nlohmann::json;
using ::testing::HasSubstr;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// The worked examples, which other implementations of the rules are held to as well.
class Examples {
public:
    Examples() : document_(json::parse(std::ifstream(ORVANTA_WISHES_DATA))) {}

    const json& cases() const { return document_.at("cases"); }

    CameraSetup setup() const {
        const json& given = document_.at("setup");
        CameraSetup setup;
        setup.region = {0, given["region"][0], 0, given["region"][1]};
        setup.targetWidth = given["target"][0];
        setup.targetHeight = given["target"][1];
        setup.fadeDuration = given["fade"];
        setup.clipStart = given["clip"][0];
        setup.clipStop = given["clip"][1];
        return setup;
    }

    Rectangle rect(const json& given) const {
        const json& r = given.is_string() ? document_.at("rectangles").at(given.get<std::string>()) : given;
        const int left = r[0];
        const int top = r[1];
        return {left, left + r[2].get<int>(), top, top + r[3].get<int>()};
    }

    std::vector<OV_TIME_RECT> keyframes(const json& given) const {
        std::vector<OV_TIME_RECT> list;
        for (const json& keyframe : given) {
            list.push_back({keyframe[0].get<long long>(), rect(keyframe[1])});
        }
        return list;
    }

    CameraWishes wishes(const json& given) const {
        CameraWishes wishes;
        for (const json& pin : given.value("pins", json::array())) {
            wishes.pins.push_back({stretch(pin), rect(pin[2])});
        }
        for (const json& whole : given.value("whole", json::array())) {
            wishes.whole.push_back(stretch(whole));
        }
        for (const json& keptOut : given.value("keepOut", json::array())) {
            wishes.keepOut.push_back(stretch(keptOut));
        }
        if (given.contains("leastZoom")) {
            wishes.leastZoom = given["leastZoom"];
        }
        if (given.contains("greatestZoom")) {
            wishes.greatestZoom = given["greatestZoom"];
        }
        if (given.contains("leastRest")) {
            wishes.leastRest = given["leastRest"];
        }
        return wishes;
    }

    std::vector<CameraWishedKeyframe> expected(const json& given) const {
        const std::vector<std::string> origins{"keyframe", "pin", "whole", "start"};
        std::vector<CameraWishedKeyframe> list;
        for (const json& keyframe : given) {
            const auto origin = std::find(origins.begin(), origins.end(), keyframe[2].get<std::string>());
            list.push_back({{keyframe[0].get<long long>(), rect(keyframe[1])},
                            static_cast<CameraOrigin>(origin - origins.begin()),
                            keyframe[3].get<std::size_t>()});
        }
        return list;
    }

private:
    static CameraStretch stretch(const json& given) { return {given[0].get<long long>(), given[1].get<long long>()}; }

    json document_;
};

TEST(CameraWishesTest, WorkedExamples_ComeOutAsWorkedOut) {
    const Examples examples;
    ASSERT_GT(examples.cases().size(), 20u);
    for (const json& example : examples.cases()) {
        SCOPED_TRACE(example.at("claim").get<std::string>());
        EXPECT_EQ(applyWishes(examples.keyframes(example.at("keyframes")), examples.setup(),
                              examples.wishes(example.at("wishes"))),
                  examples.expected(example.at("expected")));
    }
}

CameraSetup plainSetup() {
    CameraSetup setup;
    setup.region = {0, 1000, 0, 800};
    setup.targetWidth = 320;
    setup.targetHeight = 200;
    setup.fadeDuration = 100;
    setup.clipStop = 100000;
    return setup;
}

std::string refusal(const CameraWishes& wishes) {
    try {
        applyWishes({}, plainSetup(), wishes);
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
    return "no std::invalid_argument";
}

TEST(CameraWishesTest, WishesOutOfRange_AreRefusedByName) {
    CameraWishes wishes;
    wishes.pins = {{{0, 10}, {0, 10, 0, 10}}, {{10, 10}, {0, 10, 0, 10}}};
    EXPECT_EQ(refusal(wishes), "wishes: pin 1 must stop after it starts");
    for (const Rectangle& none :
         std::vector<Rectangle>{{10, 10, 0, 10}, {0, 10, 10, 10}, {10, 9, 0, 10}, {0, 10, 5, 4}}) {
        wishes.pins = {{{0, 10}, none}};
        EXPECT_EQ(refusal(wishes), "wishes: the rectangle of pin 0 covers no pixel");
    }
    wishes.pins = {{{0, 1}, {0, 1, 0, 1}}};
    EXPECT_EQ(refusal(wishes), "no std::invalid_argument");
    wishes = {};
    wishes.whole = {{5, 4}};
    EXPECT_EQ(refusal(wishes), "wishes: stretch on the whole 0 must stop after it starts");
    wishes = {};
    wishes.keepOut = {{5, 6}, {5, 5}};
    EXPECT_EQ(refusal(wishes), "wishes: kept-out stretch 1 must stop after it starts");
    wishes.keepOut = {{5, 5}, {5, 6}};
    EXPECT_EQ(refusal(wishes), "wishes: kept-out stretch 0 must stop after it starts");
    for (const double zoom : {0.0, -1.0, kNaN, kInfinity}) {
        wishes = {};
        wishes.leastZoom = zoom;
        EXPECT_THAT(refusal(wishes), HasSubstr("the least zoom must be above 0 and finite"));
        wishes = {};
        wishes.greatestZoom = zoom;
        EXPECT_THAT(refusal(wishes), HasSubstr("the greatest zoom must be above 0 and finite"));
    }
    wishes = {};
    wishes.leastZoom = 0.5;
    wishes.greatestZoom = 0.4;
    EXPECT_EQ(refusal(wishes), "wishes: the least zoom must not be above the greatest");
    wishes = {};
    wishes.leastRest = -1;
    EXPECT_EQ(refusal(wishes), "wishes: the least rest must be 0 or more");
}

TEST(CameraWishesTest, WhatAPathRefuses_IsRefusedHereToo) {
    CameraWishes none;
    CameraSetup setup = plainSetup();
    setup.targetWidth = 0;
    EXPECT_THROW(applyWishes({}, setup, none), std::invalid_argument);
    EXPECT_THROW(applyWishes({{0, {5, 5, 0, 10}}}, plainSetup(), none), std::invalid_argument);
}

TEST(CameraWishesTest, KeepOut_WithoutFade_HoldsTheMomentsOfJumps) {
    CameraSetup setup = plainSetup();
    setup.fadeDuration = 0;
    CameraWishes wishes;
    wishes.keepOut = {{100, 200}};
    const Rectangle a{0, 320, 0, 200};
    const Rectangle b{100, 420, 0, 200};
    const auto times = [&](long long time) {
        return applyWishes({{10, a}, {time, b}}, setup, wishes).back().frame.time;
    };
    EXPECT_EQ(times(99), 99);
    EXPECT_EQ(times(100), 200);
    EXPECT_EQ(times(199), 200);
    EXPECT_EQ(times(200), 200);
}

TEST(CameraWishesTest, Zoom_LimitsKeepFramesInside_AndThoseAtTheLimitAsTheyAre) {
    const auto limited = [](const Rectangle& rect, std::optional<double> least, std::optional<double> greatest) {
        CameraWishes wishes;
        wishes.leastZoom = least;
        wishes.greatestZoom = greatest;
        return applyWishes({{10, rect}}, plainSetup(), wishes).at(0).frame.rect;
    };
    // 64 by 40 pixels in either corner become 320 by 200.
    EXPECT_EQ(limited({936, 1000, 760, 800}, {}, 1.0), (Rectangle{680, 1000, 600, 800}));
    EXPECT_EQ(limited({0, 64, 0, 40}, {}, 1.0), (Rectangle{0, 320, 0, 200}));
    EXPECT_EQ(limited({200, 264, 300, 340}, {}, 1.0), (Rectangle{72, 392, 220, 420}));
    // The whole, 1280 by 800, becomes 1066 by 666: wider than the recording, and in the middle of its height.
    EXPECT_EQ(limited({0, 1000, 0, 800}, 0.3, {}), (Rectangle{0, 1066, 67, 733}));
    // As large as the whole is the whole, and no frame is smaller than a pixel.
    EXPECT_EQ(limited({200, 264, 300, 340}, {}, 0.25), (Rectangle{0, 1000, 0, 800}));
    EXPECT_EQ(limited({200, 264, 300, 340}, 400.0, {}), (Rectangle{231, 232, 319, 320}));
    // A row off the shape, at just the limit.
    const Rectangle off{100, 420, 100, 299};
    EXPECT_EQ(limited(off, {}, 1.0), off);
    EXPECT_EQ(limited(off, 1.0, {}), off);
    EXPECT_NE(limited(off, {}, 0.99), off);
    EXPECT_NE(limited(off, 1.01, {}), off);
}

TEST(CameraWishesTest, ExtremeNumbers_AreNoTrouble) {
    constexpr long long kLatest = std::numeric_limits<long long>::max();
    constexpr long long kEarliest = std::numeric_limits<long long>::lowest();
    constexpr std::int32_t kHigh = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t kLow = std::numeric_limits<std::int32_t>::lowest();
    CameraSetup setup;
    setup.region = {kLow, kHigh, kLow, kHigh};
    setup.targetWidth = 1;
    setup.targetHeight = kHigh;
    setup.fadeDuration = kLatest;
    setup.clipStart = kEarliest;
    setup.clipStop = kLatest;
    CameraWishes wishes;
    wishes.pins = {{{kEarliest, kLatest}, {kLow, kHigh, kLow, kHigh}}};
    wishes.whole = {{kEarliest, kEarliest + 1}, {kLatest - 1, kLatest}};
    wishes.keepOut = {{kEarliest, kLatest}, {0, 1}};
    wishes.leastRest = kLatest;
    for (const double zoom : {1e-300, 1e-9, 0.5, 1e9, 1e300}) {
        wishes.leastZoom = zoom;
        wishes.greatestZoom = zoom;
        const auto result = applyWishes(
            {{kEarliest, {kLow, kHigh, kLow, kHigh}}, {0, {0, 1, 0, 1}}, {kLatest, {5, 6, 7, 9}}}, setup, wishes);
        for (const CameraWishedKeyframe& keyframe : result) {
            EXPECT_GT(keyframe.frame.rect.right, keyframe.frame.rect.left);
            EXPECT_GT(keyframe.frame.rect.bottom, keyframe.frame.rect.top);
        }
    }
}

TEST(CameraWishesTest, Keyframe_AtTheLatestTick_StaysWhereNoClipEnds) {
    constexpr long long kLatest = std::numeric_limits<long long>::max();
    CameraSetup setup = plainSetup();
    setup.clipStop = setup.clipStart;
    CameraWishes wishes;
    wishes.leastRest = 0;
    const auto result = applyWishes({{5, {0, 64, 0, 40}}, {kLatest, {0, 320, 0, 200}}}, setup, wishes);
    ASSERT_EQ(result.size(), 2u);
    EXPECT_EQ(result[1].frame.time, kLatest);
}

TEST(CameraWishesTest, Keyframes_OfOneTimeAndFrame_TheLastGivenStays) {
    CameraWishes wishes;
    wishes.leastRest = 0;
    const auto result = applyWishes({{5, {0, 64, 0, 40}}, {5, {0, 64, 0, 40}}}, plainSetup(), wishes);
    ASSERT_EQ(result.size(), 1u);
    EXPECT_EQ(result[0].index, 1u);
}

// ---- Laws over generated wishes ----

struct Scene {
    CameraSetup setup = plainSetup();
    std::vector<OV_TIME_RECT> keyframes;
    CameraWishes wishes;
};

CameraStretch generatedStretch(Random& random) {
    const long long start = random.range(0, 20000);
    return {start, start + random.range(1, 3000)};
}

Rectangle generatedRect(Random& random) {
    const int width = random.range(20, 900);
    const int left = random.range(0, 100);
    const int top = random.range(0, 100);
    return {left, left + width, top, top + width * 5 / 8};
}

Scene generated(Random& random) {
    Scene scene;
    for (int i = random.range(0, 12); i > 0; --i) {
        scene.keyframes.push_back({random.range(0, 20000), generatedRect(random)});
    }
    for (int i = random.range(0, 3); i > 0; --i) {
        scene.wishes.pins.push_back({generatedStretch(random), generatedRect(random)});
    }
    for (int i = random.range(0, 2); i > 0; --i) {
        scene.wishes.whole.push_back(generatedStretch(random));
    }
    for (int i = random.range(0, 3); i > 0; --i) {
        scene.wishes.keepOut.push_back(generatedStretch(random));
    }
    if (random.chance(0.5)) {
        scene.wishes.leastZoom = random.real(0.2, 0.6);
    }
    if (random.chance(0.5)) {
        scene.wishes.greatestZoom = random.real(0.6, 2);
    }
    if (random.chance(0.5)) {
        scene.wishes.leastRest = random.range(0, 3000);
    }
    return scene;
}

template <typename Claim> void forEveryScene(std::uint64_t seed, Claim claim) {
    Random random(seed);
    for (int i = 0; i < 2000; ++i) {
        SCOPED_TRACE("seed " + std::to_string(seed) + " scene " + std::to_string(i));
        const Scene scene = generated(random);
        claim(scene, applyWishes(scene.keyframes, scene.setup, scene.wishes));
        if (::testing::Test::HasFailure()) {
            return;
        }
    }
}

bool isFree(const CameraWishedKeyframe& keyframe) {
    return keyframe.origin == CameraOrigin::Keyframe || keyframe.origin == CameraOrigin::Start;
}

TEST(CameraWishesLawsTest, Result_RisesInTimeAndRepeatsNothing) {
    forEveryScene(21, [](const Scene& scene, const std::vector<CameraWishedKeyframe>& result) {
        if (scene.wishes.empty()) {
            return;
        }
        for (std::size_t i = 1; i < result.size(); ++i) {
            EXPECT_LT(result[i - 1].frame.time, result[i].frame.time);
            EXPECT_NE(result[i - 1].frame.rect, result[i].frame.rect);
        }
    });
}

TEST(CameraWishesLawsTest, Pins_AreOnShowFromTheirStartToTheirStop) {
    forEveryScene(22, [](const Scene& scene, const std::vector<CameraWishedKeyframe>& result) {
        // The frame that the list leads to at a moment.
        const auto goal = [&](long long time) {
            Rectangle rect{0, 1000, 0, 800};
            for (const CameraWishedKeyframe& keyframe : result) {
                rect = keyframe.frame.time <= time ? keyframe.frame.rect : rect;
            }
            return rect;
        };
        const auto& pins = scene.wishes.pins;
        for (std::size_t i = 0; i < pins.size(); ++i) {
            for (const long long time : {pins[i].stretch.start, pins[i].stretch.stop - 1}) {
                const bool covered = std::any_of(
                    pins.begin() + static_cast<std::ptrdiff_t>(i) + 1, pins.end(),
                    [&](const CameraPin& pin) { return pin.stretch.start <= time && time < pin.stretch.stop; });
                if (!covered) {
                    EXPECT_EQ(goal(time), pins[i].rect) << "pin " << i << " at " << time;
                }
            }
        }
    });
}

TEST(CameraWishesLawsTest, KeptOutStretches_HaveNoMoveButThoseAskedForByName) {
    forEveryScene(23, [](const Scene& scene, const std::vector<CameraWishedKeyframe>& result) {
        for (const CameraWishedKeyframe& keyframe : result) {
            for (const CameraStretch& stretch : scene.wishes.keepOut) {
                const bool touches = keyframe.frame.time < stretch.stop &&
                                     keyframe.frame.time + scene.setup.fadeDuration > stretch.start;
                EXPECT_FALSE(touches && isFree(keyframe));
            }
        }
    });
}

TEST(CameraWishesLawsTest, Rests_AreKeptAroundEveryMoveNotAskedForByName) {
    forEveryScene(24, [](const Scene& scene, const std::vector<CameraWishedKeyframe>& result) {
        if (!scene.wishes.leastRest) {
            return;
        }
        for (std::size_t i = 1; i < result.size(); ++i) {
            if (isFree(result[i - 1]) || isFree(result[i])) {
                EXPECT_GE(result[i].frame.time - result[i - 1].frame.time,
                          scene.setup.fadeDuration + *scene.wishes.leastRest);
            }
        }
    });
}

TEST(CameraWishesLawsTest, Zoom_StaysWithinItsLimits) {
    forEveryScene(25, [](const Scene& scene, const std::vector<CameraWishedKeyframe>& result) {
        const CameraPath path({}, scene.setup);
        for (const CameraWishedKeyframe& keyframe : result) {
            if (keyframe.origin != CameraOrigin::Keyframe) {
                continue;
            }
            const double zoom = scene.setup.targetWidth / path.frameOf(keyframe.frame.rect).width;
            EXPECT_GE(zoom, scene.wishes.leastZoom.value_or(0) * (1 - 1e-12));
            EXPECT_LE(zoom, scene.wishes.greatestZoom.value_or(1e9) * (1 + 1e-12));
        }
    });
}

TEST(CameraWishesLawsTest, Region_MayStandAnywhereOnTheScreen) {
    forEveryScene(27, [](const Scene& scene, const std::vector<CameraWishedKeyframe>& result) {
        CameraSetup elsewhere = scene.setup;
        elsewhere.region = {-300, 700, 4000, 4800};
        EXPECT_EQ(applyWishes(scene.keyframes, elsewhere, scene.wishes), result);
    });
}

TEST(CameraWishesLawsTest, WishesOnTheirOwnResult_ChangeNothingMore) {
    forEveryScene(26, [](const Scene& scene, const std::vector<CameraWishedKeyframe>& result) {
        if (!scene.wishes.pins.empty() || !scene.wishes.whole.empty()) {
            return; // What comes back as a plain keyframe is free to move.
        }
        std::vector<OV_TIME_RECT> again;
        for (const CameraWishedKeyframe& keyframe : result) {
            again.push_back(keyframe.frame);
        }
        const auto second = applyWishes(again, scene.setup, scene.wishes);
        ASSERT_EQ(second.size(), again.size());
        for (std::size_t i = 0; i < second.size(); ++i) {
            EXPECT_EQ(second[i].frame.time, again[i].time);
            EXPECT_EQ(second[i].frame.rect, again[i].rect);
        }
    });
}

} // namespace
} // namespace testing
} // namespace OrvantaNS
