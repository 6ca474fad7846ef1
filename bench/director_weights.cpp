// Experiments with the director's weights, on sessions with named moments.
//
//   director_weights table   FOLDER              each session: both shapes, three values of calm
//   director_weights curve   FOLDER              CSV: seen and read against calm, all sessions together
//   director_weights vary    FOLDER [N [SEED]]   weights multiplied at random by 0.6 to 1.6, N times (20)
//   director_weights screens FOLDER              the same sessions on other screens, and with the moments known
//   director_weights leave   FOLDER NAME [ROUNDS]  tunes on all sessions but NAME, from round numbers, and judges NAME
//   director_weights tune    FOLDER [ROUNDS]     the same on all sessions
//
// NAME=VALUE arguments change the weight of that name first. Portrait figures leave out moments that no frame holds.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <vector>

#include "DirectorTrials.h"
#include "Random.h"

namespace {

using namespace OrvantaNS;
using namespace OrvantaNS::trials;
using camera::DirectorWeights;
using camera::MomentView;

const std::vector<Conditions> kShapes{{640, 400, 1.0, false, false, false}, {360, 640, 1.0, false, true, false}};
// The recorded screen, larger ones with the same windows, and some with as much on them in finer pixels.
const std::vector<Screen> kScreens{{}, {1.0, 1.5}, {1.0, 2.0}, {4.0 / 3.0, 1.0}, {1.5, 1.0}, {2.0, 1.0}};
// Those on which weights are tuned.
const std::vector<Screen> kTuningScreens{{}, {1.0, 1.5}, {4.0 / 3.0, 1.0}};

void print(const std::string& name, const Conditions& at, const Tally& tally) {
    std::printf("%-16s %4dx%-4d calm %-5.3g", name.c_str(), at.width, at.height, at.calm);
    const auto view = [&tally](const char* title, MomentView which) {
        if (tally.count(which) == 0) {
            std::printf("  %s (0)  -/-  ", title);
        } else {
            std::printf("  %s (%zu) %3.0f/%-3.0f", title, tally.count(which), 100.0 * tally.seen(which),
                        100.0 * tally.read(which));
        }
    };
    view("close", MomentView::Close);
    view("window", MomentView::Window);
    view("wide", MomentView::Wide);
    std::printf("  presses %3.0f at rest %3.0f  readable %2.0f  moves %.1f\n", 100.0 * tally.pressesInside(),
                100.0 * tally.pressesAtRest(), 100.0 * tally.readableShare(), tally.movesAMinute());
}

void printAll(const std::string& name, const std::vector<Session>& sessions, const DirectorWeights& weights) {
    for (const Conditions& shape : kShapes) {
        for (const double calm : {0.5, 1.0, 2.0}) {
            Conditions at = shape;
            at.calm = calm;
            print(name, at, judge(sessions, weights, at));
        }
    }
}

void table(const std::vector<Session>& sessions, const DirectorWeights& weights) {
    for (const Session& session : sessions) {
        printAll(session.name, {session}, weights);
    }
    printAll("all", sessions, weights);
    for (const double calm : {0.5, 1.0, 2.0}) {
        const Conditions overhanging{360, 640, calm, true, false, false};
        print("all, overhang", overhanging, judge(sessions, weights, overhanging));
    }
}

void curve(const std::vector<Session>& sessions, const DirectorWeights& weights) {
    std::printf("width,height,calm,close_seen,close_read,window_seen,window_read,wide_seen,moves_a_minute\n");
    for (const Conditions& shape : kShapes) {
        for (double calm = 0.125; calm < 12.0; calm *= std::sqrt(2.0)) {
            Conditions at = shape;
            at.calm = calm;
            const Tally tally = judge(sessions, weights, at);
            std::printf("%d,%d,%.3f,%.3f,%.3f,%.3f,%.3f,%.3f,%.2f\n", at.width, at.height, calm,
                        tally.seen(MomentView::Close), tally.read(MomentView::Close), tally.seen(MomentView::Window),
                        tally.read(MomentView::Window), tally.seen(MomentView::Wide), tally.movesAMinute());
        }
    }
}

void vary(const std::vector<Session>& sessions, const DirectorWeights& weights, int count, unsigned seed) {
    testing::Random random(seed);
    std::printf("seed %u\n", seed);
    for (const Conditions& shape : kShapes) {
        std::vector<std::vector<double>> figures(5);
        for (int i = 0; i < count; ++i) {
            DirectorWeights other = weights;
            for (const NamedWeight& named : namedWeights()) {
                constexpr double kLeast = 0.6;
                constexpr double kMost = 1.6;
                other.*named.weight *= kLeast * std::pow(kMost / kLeast, random.unit());
            }
            const Tally tally = judge(sessions, other, shape);
            print("varied", shape, tally);
            figures[0].push_back(100.0 * tally.readableShare());
            figures[1].push_back(100.0 * tally.seen(MomentView::Close));
            figures[2].push_back(100.0 * tally.read(MomentView::Close));
            figures[3].push_back(100.0 * tally.seen(MomentView::Window));
            figures[4].push_back(tally.movesAMinute());
        }
        const char* const names[] = {"readable share", "close seen", "close read", "window seen", "moves a minute"};
        for (std::size_t i = 0; i < figures.size(); ++i) {
            std::sort(figures[i].begin(), figures[i].end());
            std::printf("%dx%d %s: %.1f to %.1f, median %.1f\n", shape.width, shape.height, names[i],
                        figures[i].front(), figures[i].back(), figures[i][figures[i].size() / 2]);
        }
    }
}

void printWeights(const DirectorWeights& weights) {
    for (const NamedWeight& named : namedWeights()) {
        std::printf("%s=%.3g ", named.name, weights.*named.weight);
    }
    std::printf("\n");
}

void tune(const std::string& folder, const std::string& left, int rounds, const DirectorWeights& start) {
    std::vector<std::vector<Session>> screens;
    for (const Screen& screen : kTuningScreens) {
        screens.push_back(readSessions(folder, screen));
    }
    std::vector<Session> out;
    for (std::vector<Session>& sessions : screens) {
        std::erase_if(sessions, [&](const Session& session) {
            if (session.name == left && out.empty()) {
                out.push_back(session);
            }
            return session.name == left;
        });
    }
    if (!left.empty() && out.empty()) {
        std::fprintf(stderr, "director_weights: no session %s in %s\n", left.c_str(), folder.c_str());
        std::exit(2);
    }
    const DirectorWeights weights = tuned(screens, start, rounds);
    printWeights(weights);
    printAll(out.empty() ? "tuned on" : "left out " + left, out.empty() ? screens.front() : out, weights);
}

int run(std::vector<std::string> arguments) {
    DirectorWeights weights;
    DirectorWeights plain = plainWeights();
    std::erase_if(arguments, [&](const std::string& argument) {
        const std::size_t equals = argument.find('=');
        for (const NamedWeight& named : namedWeights()) {
            if (equals != std::string::npos && argument.substr(0, equals) == named.name) {
                weights.*named.weight = std::strtod(argument.c_str() + equals + 1, nullptr);
                plain.*named.weight = weights.*named.weight;
                return true;
            }
        }
        return false;
    });
    if (arguments.size() < 2) {
        std::fprintf(stderr, "usage: director_weights table|curve|vary|screens|leave|tune FOLDER ...\n");
        return 2;
    }
    const std::string& what = arguments[0];
    const std::string& folder = arguments[1];
    const auto number = [&arguments](std::size_t index, int usual) {
        return arguments.size() > index ? std::atoi(arguments[index].c_str()) : usual;
    };
    if (what == "table") {
        table(readSessions(folder), weights);
    } else if (what == "curve") {
        curve(readSessions(folder), weights);
    } else if (what == "vary") {
        vary(readSessions(folder), weights, std::max(1, number(2, 20)), static_cast<unsigned>(number(3, 1)));
    } else if (what == "screens") {
        for (const Screen& screen : kScreens) {
            std::printf("coordinates x %.3g, region x %.3g\n", screen.fineness, screen.room);
            const std::vector<Session> sessions = readSessions(folder, screen);
            for (const Conditions& shape : kShapes) {
                print("all", shape, judge(sessions, weights, shape));
                Conditions known = shape;
                known.knowsMoments = true;
                print("moments known", known, judge(sessions, weights, known));
            }
        }
    } else if (what == "leave" && arguments.size() > 2) {
        tune(folder, arguments[2], number(3, 3), plain);
    } else if (what == "tune") {
        tune(folder, "", number(2, 3), plain);
    } else {
        std::fprintf(stderr, "director_weights: what is %s?\n", what.c_str());
        return 2;
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return run({argv + 1, argv + argc});
    } catch (const std::exception& error) {
        std::fprintf(stderr, "director_weights: %s\n", error.what());
        return 1;
    }
}
