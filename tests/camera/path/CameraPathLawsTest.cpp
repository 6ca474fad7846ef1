// What holds for every path, over generated keyframes.

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "CameraPath.h"
#include "Random.h"

namespace OrvantaNS::testing {
namespace {

constexpr int kPaths = 400;

struct Scene {
    CameraSetup setup;
    std::vector<OV_TIME_RECT> keyframes;
};

CameraEasing generatedEasing(Random& random) {
    const auto names = CameraEasing::names();
    return *CameraEasing::named(names[static_cast<std::size_t>(random.range(0, static_cast<int>(names.size()) - 1))]);
}

/// Keyframes such as an engine gives, and such as nobody would: hurried, repeated, beyond the edges, of any shape.
Scene generated(Random& random) {
    Scene scene;
    CameraSetup& setup = scene.setup;
    const int regionWidth = random.range(100, 4000);
    const int regionHeight = random.range(100, 3000);
    const int x = random.range(-500, 500);
    setup.region = {x, x + regionWidth, 40, 40 + regionHeight};
    setup.targetWidth = random.range(64, 2000);
    setup.targetHeight = random.range(64, 2000);
    setup.timeScale = 1000;
    setup.fadeDuration = random.range(1, 2000);
    setup.clipStart = random.range(-1000, 1000);
    setup.clipStop = setup.clipStart + 60000;
    setup.easing = generatedEasing(random);
    const double shape = static_cast<double>(setup.targetHeight) / setup.targetWidth;
    long long time = setup.clipStart;
    const int count = random.range(1, 8);
    for (int i = 0; i < count; ++i) {
        time += random.range(1, random.chance(0.3) ? 500 : 5000);
        const int width = random.range(2, regionWidth);
        const int height =
            random.chance(0.7) ? std::max(1, static_cast<int>(width * shape)) : random.range(2, regionHeight);
        const int left = random.range(-50, regionWidth);
        const int top = random.range(-50, regionHeight);
        scene.keyframes.push_back({time, {left, left + width, top, top + height}});
        if (random.chance(0.1)) {
            scene.keyframes.back().rect = {0, regionWidth, 0, regionHeight};
        }
    }
    return scene;
}

double regionWidth(const Scene& scene) { return scene.setup.region.right - scene.setup.region.left; }
double regionHeight(const Scene& scene) { return scene.setup.region.bottom - scene.setup.region.top; }

/// Seconds, at and around each start and end of a move, and between.
std::vector<double> moments(const CameraPath& path, Random& random) {
    std::vector<double> times;
    for (const CameraMove& move : path.moves()) {
        for (const long long edge : {move.start, move.stop}) {
            for (const double offset : {-0.5, -0.001, 0.0, 0.001, 0.5}) {
                times.push_back((static_cast<double>(edge) + offset) / 1000);
            }
        }
        for (int i = 0; i < 10; ++i) {
            times.push_back(random.real(static_cast<double>(move.start), static_cast<double>(move.stop)) / 1000);
        }
    }
    return times;
}

void expectNear(const CameraFrame& a, const CameraFrame& b, double pixels) {
    EXPECT_NEAR(a.left, b.left, pixels);
    EXPECT_NEAR(a.top, b.top, pixels);
    EXPECT_NEAR(a.width, b.width, pixels);
    EXPECT_NEAR(a.height, b.height, pixels);
}

template <typename Claim> void forEveryPath(std::uint64_t seed, Claim claim) {
    Random random(seed);
    for (int i = 0; i < kPaths; ++i) {
        SCOPED_TRACE("seed " + std::to_string(seed) + " path " + std::to_string(i));
        const Scene scene = generated(random);
        const CameraPath path(scene.keyframes, scene.setup);
        claim(scene, path, random);
        if (::testing::Test::HasFailure()) {
            return;
        }
    }
}

TEST(CameraPathLawsTest, EveryFrame_HasTheShapeOfTheTarget) {
    forEveryPath(1, [](const Scene& scene, const CameraPath& path, Random& random) {
        const double shape = static_cast<double>(scene.setup.targetWidth) / scene.setup.targetHeight;
        for (const double time : moments(path, random)) {
            const CameraFrame frame = path.frameAtSeconds(time);
            EXPECT_NEAR(frame.width / frame.height, shape, shape * 1e-14);
        }
    });
}

TEST(CameraPathLawsTest, EveryFrame_LiesInsideOrStandsOutEvenly) {
    forEveryPath(2, [](const Scene& scene, const CameraPath& path, Random& random) {
        const auto check = [](double low, double size, double limit) {
            if (size <= limit) {
                EXPECT_GE(low, 0.0);
                EXPECT_LE(low + size, limit);
            } else {
                EXPECT_LT(low, 0.0);
                EXPECT_NEAR(-low, low + size - limit, 1e-9);
            }
        };
        for (const double time : moments(path, random)) {
            const CameraFrame frame = path.frameAtSeconds(time);
            check(frame.left, frame.width, regionWidth(scene));
            check(frame.top, frame.height, regionHeight(scene));
            EXPECT_EQ(frame.overhangs, frame.width > regionWidth(scene) || frame.height > regionHeight(scene));
        }
    });
}

TEST(CameraPathLawsTest, NothingOfAKeyframeIsLost) {
    forEveryPath(3, [](const Scene& scene, const CameraPath& path, Random&) {
        for (const OV_TIME_RECT& keyframe : scene.keyframes) {
            const CameraFrame frame = path.frameOf(keyframe.rect);
            const Rectangle& r = keyframe.rect;
            EXPECT_GE(frame.width, r.right - r.left);
            EXPECT_GE(frame.height, r.bottom - r.top);
            EXPECT_TRUE(frame.width == r.right - r.left || frame.height == r.bottom - r.top);
            // What lies inside the recording stays on show.
            EXPECT_LE(frame.left, std::max(r.left, 0) + 1e-9);
            EXPECT_LE(frame.top, std::max(r.top, 0) + 1e-9);
            EXPECT_GE(frame.left + frame.width, std::min<double>(r.right, regionWidth(scene)) - 1e-9);
            EXPECT_GE(frame.top + frame.height, std::min<double>(r.bottom, regionHeight(scene)) - 1e-9);
        }
    });
}

TEST(CameraPathLawsTest, Camera_RestsBetweenMovesOnItsKeyframe) {
    forEveryPath(4, [](const Scene& scene, const CameraPath& path, Random& random) {
        EXPECT_EQ(path.frameAt(scene.setup.clipStart), path.wholeFrame());
        EXPECT_EQ(path.frameAt(path.moves().front().start), path.wholeFrame());
        for (std::size_t i = 0; i < path.moves().size(); ++i) {
            const CameraMove& move = path.moves()[i];
            EXPECT_EQ(path.frameAt(move.start), move.from);
            if (move.cutShort) {
                continue;
            }
            const CameraFrame goal = path.frameOf(scene.keyframes[move.keyframe].rect);
            EXPECT_EQ(move.to, goal);
            const long long until = i + 1 < path.moves().size() ? path.moves()[i + 1].start : move.stop + 10000;
            const double between = random.real(static_cast<double>(move.stop), static_cast<double>(until));
            EXPECT_EQ(path.frameAt(move.stop), goal);
            EXPECT_EQ(path.frameAt(until), goal);
            EXPECT_EQ(path.frameAtSeconds(between / 1000), goal);
        }
    });
}

// With the presets, the way done changes by at most 3 times the share of the time; the edges' share by at most
// r ln r / (r - 1) times that, r being the larger size by the smaller; and an edge runs no further than twice the
// largest side at hand.
TEST(CameraPathLawsTest, Frame_ChangesWithoutJumps) {
    forEveryPath(5, [](const Scene& scene, const CameraPath& path, Random&) {
        constexpr int kSteps = 2000;
        const double first = static_cast<double>(scene.setup.clipStart) - 10;
        const double last = static_cast<double>(path.moves().back().stop) + 10;
        double fastest = 0; // Pixels a tick.
        for (const CameraMove& move : path.moves()) {
            const double r = std::max(move.from.width / move.to.width, move.to.width / move.from.width);
            const double bend = r > 1 ? r * std::log(r) / (r - 1) : 1.0;
            const double far = std::max({move.from.width, move.from.height, move.to.width, move.to.height,
                                         regionWidth(scene), regionHeight(scene)});
            fastest = std::max(fastest, 3 * bend * 2 * far / static_cast<double>(scene.setup.fadeDuration));
        }
        const double step = (last - first) / kSteps;
        CameraFrame before = path.frameAtSeconds(first / 1000);
        for (int i = 1; i <= kSteps; ++i) {
            const CameraFrame now = path.frameAtSeconds((first + i * step) / 1000);
            expectNear(now, before, fastest * step + 1e-6);
            before = now;
        }
        // The closer two moments, the closer their frames, at the very edges of the moves too.
        for (const CameraMove& move : path.moves()) {
            for (const long long edge : {move.start, move.stop}) {
                expectNear(path.frameAtSeconds((static_cast<double>(edge) - 1e-6) / 1000),
                           path.frameAtSeconds((static_cast<double>(edge) + 1e-6) / 1000), fastest * 4e-6 + 1e-6);
            }
        }
    });
}

TEST(CameraPathLawsTest, Size_GoesOneWayInAMove) {
    forEveryPath(6, [](const Scene&, const CameraPath& path, Random&) {
        for (const CameraMove& move : path.moves()) {
            const bool grows = move.to.width > move.from.width;
            double before = move.from.width;
            for (int i = 0; i <= 50; ++i) {
                const long long tick = move.start + (move.stop - move.start) * i / 50;
                const double now = path.frameAt(tick).width;
                EXPECT_TRUE(grows ? now >= before * (1 - 1e-15) : now <= before * (1 + 1e-15)) << tick;
                before = now;
            }
        }
    });
}

TEST(CameraPathLawsTest, Path_IsTheSameInWhateverOrderItIsMadeAndAsked) {
    forEveryPath(7, [](const Scene& scene, const CameraPath& path, Random& random) {
        Scene shuffled = scene;
        for (std::size_t i = shuffled.keyframes.size(); i > 1; --i) {
            std::swap(shuffled.keyframes[i - 1],
                      shuffled.keyframes[static_cast<std::size_t>(random.range(0, static_cast<int>(i) - 1))]);
        }
        const CameraPath other(shuffled.keyframes, shuffled.setup);
        const std::vector<double> times = moments(path, random);
        const std::vector<CameraFrame> frames = path.framesAtSeconds(times);
        for (std::size_t i = times.size(); i > 0; --i) {
            EXPECT_EQ(other.frameAtSeconds(times[i - 1]), frames[i - 1]);
        }
    });
}

TEST(CameraPathLawsTest, KeyframeOfWhereTheCameraRests_ChangesNothing) {
    forEveryPath(8, [](const Scene& scene, const CameraPath& path, Random& random) {
        Scene repeated = scene;
        for (std::size_t i = 0; i < path.moves().size(); ++i) {
            const CameraMove& move = path.moves()[i];
            const bool roomForAMove =
                i + 1 == path.moves().size() || move.stop + scene.setup.fadeDuration < path.moves()[i + 1].start;
            if (!move.cutShort && roomForAMove) {
                repeated.keyframes.push_back({move.stop, scene.keyframes[move.keyframe].rect});
            }
        }
        const CameraPath other(repeated.keyframes, repeated.setup);
        for (const double time : moments(path, random)) {
            EXPECT_EQ(path.frameAtSeconds(time), other.frameAtSeconds(time));
        }
    });
}

TEST(CameraPathLawsTest, LaterKeyframes_DoNotChangeThePast) {
    forEveryPath(9, [](const Scene& scene, const CameraPath& path, Random& random) {
        std::vector<OV_TIME_RECT> fewer = scene.keyframes;
        const OV_TIME_RECT last = fewer.back();
        fewer.pop_back();
        const CameraPath before(fewer, scene.setup);
        for (const double time : moments(path, random)) {
            if (time * 1000 <= static_cast<double>(last.time)) {
                EXPECT_EQ(before.frameAtSeconds(time), path.frameAtSeconds(time));
            }
        }
    });
}

TEST(CameraPathLawsTest, Clock_MayBeginAnywhere) {
    forEveryPath(10, [](const Scene& scene, const CameraPath& path, Random& random) {
        Scene later = scene;
        const long long shift = 1LL << random.range(10, 60);
        later.setup.clipStart += shift;
        for (OV_TIME_RECT& keyframe : later.keyframes) {
            keyframe.time += shift;
        }
        const CameraPath other(later.keyframes, later.setup);
        for (const CameraMove& move : path.moves()) {
            for (const long long tick : {move.start, move.start + 1, (move.start + move.stop) / 2, move.stop}) {
                EXPECT_EQ(other.frameAt(tick + shift), path.frameAt(tick));
            }
        }
    });
}

TEST(CameraPathLawsTest, MoveBackwards_GoesTheSameWay) {
    const std::uint64_t seed = 12;
    Random random(seed);
    for (int i = 0; i < kPaths; ++i) {
        Scene scene = generated(random);
        scene.setup.easing = CameraEasing::linear();
        scene.setup.fadeDuration = 1000;
        const Rectangle a = scene.keyframes.front().rect;
        const Rectangle b = scene.keyframes.back().rect;
        const long long start = scene.setup.clipStart;
        const CameraPath path({{start, a}, {start + 10000, b}, {start + 20000, a}}, scene.setup);
        SCOPED_TRACE("seed " + std::to_string(seed) + " path " + std::to_string(i));
        for (long long tick = 0; tick <= 1000; tick += 50) {
            expectNear(path.frameAt(start + 10000 + tick), path.frameAt(start + 21000 - tick), 1e-8);
        }
    }
}

} // namespace
} // namespace OrvantaNS::testing
