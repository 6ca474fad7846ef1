// Fuzz target: the command's readers of camera paths and wishes. The input is the file.

#include <cstdint>
#include <string>

#include "Check.h"
#include "asking/OptionError.h"
#include "asking/Planning.h"
#include "reading/InputError.h"
#include "reading/JsonFields.h"
#include "reading/LineReader.h"
#include "reading/PathFile.h"
#include "reading/WishesFile.h"
#include "writing/FfmpegScript.h"
#include "writing/MltProject.h"
#include "writing/PathOutput.h"

namespace {

using namespace OrvantaNS;

command::CameraPlan readBack(const std::string& text) {
    return command::pathOf(command::readJson(command::sourceOf(text), "file"), "file");
}

/// Writes the project of plans whose pictures are few: an hour's would take the time of ten thousand inputs.
void checkProject(const command::CameraPlan& plan) {
    constexpr double kLongest = 60.0; // Seconds.
    const double length = plan.toSeconds(plan.setup.clipStop) - plan.toSeconds(plan.setup.clipStart);
    if (!(length < kLongest)) {
        return;
    }
    try {
        FUZZ_CHECK(command::mltProject(plan, command::kMltRate, "video.mp4").ends_with("</mlt>\n"));
    } catch (const command::OptionError& error) {
        FUZZ_CHECK(std::string(error.what()).starts_with("--"));
    }
}

void checkPath(const std::string& text) {
    const command::CameraPlan plan = readBack(text);
    // Whatever could be read is a path, and comes back as it was.
    const CameraPath path = plan.path();
    for (const CameraMove& move : path.moves()) {
        FUZZ_CHECK(path.frameAt(move.stop).width > 0.0);
    }
    FUZZ_CHECK(readBack(command::pathJson(plan)) == plan);
    FUZZ_CHECK(!command::pathCsv(plan, true).empty());
    FUZZ_CHECK(command::ffmpegScript(plan).ends_with("\n"));
    checkProject(plan);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    try {
        checkPath(text);
    } catch (const command::InputError& error) {
        FUZZ_CHECK(std::string(error.what()).find('\n') == std::string::npos);
    }
    CameraSetup setup;
    setup.region = {0, 1280, 0, 800};
    setup.targetWidth = 640;
    setup.targetHeight = 400;
    setup.clipStop = 100000;
    try {
        const CameraWishes wishes =
            command::wishesOf(command::readJson(command::sourceOf(text), "file"), "file", setup);
        // What could be read can be applied.
        command::CameraPlan plan;
        plan.setup = setup;
        plan.keyframes = {{{500, {0, 640, 0, 400}}, "tight"}, {{50000, {600, 1240, 300, 700}}, "wide"}};
        command::layWishes(plan, wishes);
    } catch (const command::InputError& error) {
        FUZZ_CHECK(std::string(error.what()).find('\n') == std::string::npos);
    }
    return 0;
}
