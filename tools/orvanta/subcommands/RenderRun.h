// What `orvanta render` does once its options are read.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "CameraEasing.h"
#include "asking/Engine.h"
#include "reading/CameraPlan.h"
#include "reading/Recording.h"

namespace OrvantaNS::command {

/// What is asked for. Text that only the video's side understands is passed on as it was typed.
struct RenderRequest {
    std::string recordingPath;
    std::string videoPath; ///< Empty: looked for.
    std::string output;    ///< A file, or the folder of the stills.
    RequestOptions request;
    std::optional<CameraEasing> easing;         ///< Nothing: the usual one, or that of the path.
    std::string pathFile;                       ///< A path to render instead of asking an engine; empty: none.
    std::function<void(CameraPlan&)> layWishes; ///< Changes the plan as a person wants it; empty: as it is.
    double maxZoom = 2.0;
    std::string fill = "blur";
    std::optional<double> crf;
    std::string bitrate; ///< Empty: a quality instead.
    std::string preset;  ///< Empty: the usual one.
    std::string rate;    ///< Empty: the video's own time stamps.
    bool preview = false;
    std::vector<double> stills; ///< Seconds of the recording; empty: a video.
    int threads = 0;            ///< 0: as many as processors.
};

/// What became of it.
struct RenderResult {
    std::string text{}; ///< What was made, such as "1077 pictures, 134.6 s".
    std::string
        complaint{}; ///< The video was cut short or damaged; what could be made of it was kept. Empty: all went well.
};

/// Looks at the options that the video's side understands, before anything is read. Throws `OptionError`.
void checkRenderOptions(const RenderRequest& request);
/// Looks at the place of the output before the work, and makes the folder of stills. Throws `OutputError`.
void checkRenderOutput(const RenderRequest& request);

/// Throws `OptionError`, `InputError`, `OrvantaException`, `Interrupted` and what writing throws.
RenderResult runRender(const RenderRequest& request, Recording recording);

} // namespace OrvantaNS::command
