// Whole recordings of desktop sessions against golden files: every question that an engine answers, compared line by
// line. docs/golden-review.md tells what happens in the sessions and why the frames stand where they do;
// scripts/update-golden rewrites the files.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "asking/Engine.h"
#include "frame/Geometry.h"
#include "reading/Recording.h"

namespace OrvantaNS::command {
namespace {

/// A session, and the moments that the golden file asks about.
struct Session {
    std::string name;
    std::string path;
    std::vector<double> moments; ///< Seconds.
};

void PrintTo(const Session& session, std::ostream* out) { *out << session.name; }

std::vector<Session> sessions() {
    const std::string examples = ORVANTA_EXAMPLES_FOLDER "/recordings/";
    return {
        // Reading, the drop-down list of a form, the animation, the window on the whole screen.
        {"browser", examples + "browser.jsonl", {6.0, 50.0, 85.0, 110.0}},
        // Reading, a menu of the window, the calculator, the window in motion.
        {"editor", ORVANTA_GOLDEN_FOLDER "/recordings/editor.jsonl", {8.0, 25.0, 70.0, 104.0}},
        // Folders, the context menu, the terminal, the terminal on the whole screen.
        {"files_terminal", examples + "files_terminal.jsonl", {5.0, 21.0, 60.0, 110.0}},
    };
}

std::string rectText(const Rectangle& rect) {
    return fmt::format("{} {} {} {}", rect.left, rect.top, width(rect), height(rect));
}

/// A request of its own for each question: the size of an aspect depends on the engine.
Recording request(const Session& session, std::string_view size, EngineChoice engine) {
    Recording recording = readRecordingFile(session.path);
    RequestOptions options;
    options.size = parseSize(size);
    options.engine = engine;
    completeRequest(recording, options);
    return recording;
}

std::string keyframesText(const Session& session, std::string_view size, EngineChoice engine) {
    const Recording recording = request(session, size, engine);
    std::string text = fmt::format("\n{} engine, keyframes of the clip for {}x{}\n",
                                   engine == EngineChoice::Value ? "value" : "voting", recording.params.targetWidth(),
                                   recording.params.targetHeight());
    for (const ReasonedKeyframe& keyframe : askKeyframes(recording.params, engine)) {
        const std::string_view reason = reasonName(keyframe.mode);
        text += fmt::format("{}: {}{}{}\n", keyframe.frame.time, rectText(keyframe.frame.rect),
                            reason.empty() ? "" : " ", reason);
    }
    return text;
}

std::string momentsText(const Session& session, std::string_view size, EngineChoice engine) {
    const Recording recording = request(session, size, engine);
    std::string text =
        fmt::format("\n{} engine, single moments for {}\n", engine == EngineChoice::Value ? "value" : "voting", size);
    for (const double seconds : session.moments) {
        const auto tick = static_cast<long long>(seconds * recording.params.timeScale());
        const OV_TIME_RECT frame = askFrameAt(recording.params, engine, tick);
        text += fmt::format("{}: {}\n", frame.time, rectText(frame.rect));
    }
    return text;
}

std::string answersText(const Session& session) {
    std::string text = fmt::format("{}: tick: left top width height reason\n", session.name);
    text += keyframesText(session, "640x400", EngineChoice::Value);
    text += keyframesText(session, "9:16", EngineChoice::Value);
    text += keyframesText(session, "640x400", EngineChoice::Voting);

    text += momentsText(session, "640x400", EngineChoice::Value);
    text += momentsText(session, "640x400", EngineChoice::Voting);

    const Recording recording = request(session, "640x400", EngineChoice::Value);
    const OV_TIME_RECT window = askFrameAtWindow(recording.params, EngineChoice::Value);
    text += fmt::format("\nvalue engine, the first window for 640x400\n{}: {}\n", window.time, rectText(window.rect));
    return text;
}

std::vector<std::string> linesOf(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

/// The lines that both have as they are, those of the golden file alone with -, those of the answer alone with +.
/// Lines are matched by the longest common subsequence, so that one more keyframe shows as one line.
std::string diffText(const std::vector<std::string>& golden, const std::vector<std::string>& actual) {
    std::vector<std::vector<std::size_t>> common(golden.size() + 1, std::vector<std::size_t>(actual.size() + 1, 0));
    for (std::size_t i = golden.size(); i-- > 0;) {
        for (std::size_t j = actual.size(); j-- > 0;) {
            common[i][j] =
                golden[i] == actual[j] ? common[i + 1][j + 1] + 1 : std::max(common[i + 1][j], common[i][j + 1]);
        }
    }
    std::string text;
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < golden.size() || j < actual.size()) {
        if (i < golden.size() && j < actual.size() && golden[i] == actual[j]) {
            text += fmt::format("  {}\n", golden[i]);
            ++i;
            ++j;
        } else if (j == actual.size() || (i < golden.size() && common[i + 1][j] >= common[i][j + 1])) {
            text += fmt::format("- {}\n", golden[i++]);
        } else {
            text += fmt::format("+ {}\n", actual[j++]);
        }
    }
    return text;
}

class GoldenTest : public testing::TestWithParam<Session> {};

TEST_P(GoldenTest, WholeRecording_EveryQuestion_AnswersAsReviewed) {
    const Session& session = GetParam();
    const std::string path = fmt::format(ORVANTA_GOLDEN_FOLDER "/{}.txt", session.name);
    const std::string actual = answersText(session);
    if (std::getenv("ORVANTA_UPDATE_GOLDEN") != nullptr) {
        std::ofstream file(path, std::ios::binary);
        file << actual;
        ASSERT_TRUE(file.flush()) << path;
        GTEST_SKIP() << path << " written, not compared";
    }
    std::ifstream file(path, std::ios::binary);
    ASSERT_TRUE(file) << path;
    std::stringstream golden;
    golden << file.rdbuf();
    EXPECT_TRUE(golden.str() == actual) << session.name << " differs from its golden file (- golden, + answer):\n"
                                        << diffText(linesOf(golden.str()), linesOf(actual));
}

INSTANTIATE_TEST_SUITE_P(Sessions, GoldenTest, testing::ValuesIn(sessions()),
                         [](const auto& session) { return session.param.name; });

} // namespace
} // namespace OrvantaNS::command
