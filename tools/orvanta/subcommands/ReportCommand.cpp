#include "subcommands/ReportCommand.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <system_error>
#include <utility>

#include <fmt/format.h>

#include "OrvantaException.h"
#include "asking/OptionError.h"
#include "reading/InputError.h"
#include "reading/VideoLookup.h"
#include "report/ReportPage.h"
#include "subcommands/OptionGroups.h"
#include "terminal/FileName.h"
#include "writing/Inspection.h"
#include "writing/KeyframeOutput.h"
#include "writing/Output.h"
#include "writing/PlanReport.h"

namespace OrvantaNS::command {

namespace {

namespace fs = std::filesystem;

/// A larger video makes a page that browsers refuse to open: they hold a page's text as one string of at most 512 MiB.
constexpr std::uintmax_t kLargestEmbedded = std::uintmax_t{300} << 20;

class ReportCommand : public Subcommand {
public:
    ReportCommand()
        : Subcommand("report", "Write a page that shows what was seen, where the camera stands and why",
                     "  orvanta report session.jsonl --size 640x400 -o report.html\n"
                     "  orvanta report session.jsonl session.mp4 --size 640x400 --embed-video -o report.html") {}

    ExitStatus run() override {
        if (!hasReportPage()) {
            throw OptionError(
                "report: this command was built without the page; install Node.js 18.19 or later with npm, "
                "configure with -DORVANTA_BUILD_PAGE=ON and build again");
        }
        const RequestOptions request = request_.value();
        output_.check(recording_);
        refuseOverwriting(output_.path, video_, "video");
        Recording recording = recording_.read();
        completeRequest(recording, request);
        std::optional<ReportVideo> video = videoFor(recording);
        Json inspection = inspect(recording, request.engine);
        writeOutput(output_.path, reportPage({recording, std::move(inspection), std::move(video)}));
        return kDone;
    }

protected:
    void addOptions(CLI::App& app) override {
        recording_.addTo(app);
        app.add_option("VIDEO", video_,
                       "Video of the recording (default: the one that its header names, else a file of its name with "
                       ".mp4, .mkv, .webm or .mov beside it, if there is one)");
        request_.addTo(app);
        app.add_flag("--embed-video", embed_,
                     "Put the video into the page; without it the page links to the video by its name");
        output_.addTo(app);
    }

private:
    static Json inspect(const Recording& recording, const EngineSetup& engine) {
        if (engine == EngineChoice::Director) {
            Json document = planDocument(askPlan(recording.params, engine.director), recording);
            document["failure"] = Json();
            document["keyframes"] = std::move(document["shots"]);
            document.erase("shots");
            return document;
        }
        if (engine != EngineChoice::Value) {
            Json document = requestDocument(recording, engine);
            document["failure"] = Json();
            Json& keyframes = document["keyframes"] = Json::array();
            for (const ReasonedKeyframe& keyframe : answerKeyframes(recording, engine).keyframes) {
                keyframes.push_back(keyframeEntry(keyframe, recording, true)); // null where there is no reason
            }
            return document;
        }
        Inspection inspection;
        try {
            OV_DATA_STORE store;
            runStages(recording.params, store, [&inspection](OV_PIPELINE_STAGE stage, const OV_DATA_STORE& reached) {
                keepStage(inspection, stage, reached);
            });
        } catch (const OrvantaException& failure) {
            // No keyframe is an answer too: the whole recording stays on show, and the page tells why.
            if (failure.errorCode() != OVERR_NO_KEYFRAMES) {
                throw;
            }
        }
        Json document = inspectionDocument(inspection, recording);
        for (std::size_t i = 0; i < inspection.keyframes.size(); ++i) {
            const std::optional<std::uint32_t>& slice = inspection.keyframes[i].slice;
            document["keyframes"][i]["slice"] = slice ? Json(*slice) : Json();
        }
        return document;
    }

    /// The path of the video, as `render` finds it; nothing when there is none and none was asked for.
    std::optional<fs::path> videoPath(const Recording& recording) const {
        try {
            return pathOf(findVideo(video_, recording_.path, recording));
        } catch (const InputError& missing) {
            if (!video_.empty()) {
                throw;
            }
            if (embed_) {
                throw OptionError(fmt::format("--embed-video: {}", missing.what()));
            }
            return std::nullopt; // The page then draws the screen.
        }
    }

    std::optional<ReportVideo> videoFor(const Recording& recording) const {
        const std::optional<fs::path> path = videoPath(recording);
        if (!path) {
            return std::nullopt;
        }
        ReportVideo video;
        video.type = videoType(nameOf(*path));
        video.embed = embed_;
        if (embed_) {
            std::error_code error;
            if (const std::uintmax_t size = fs::file_size(*path, error); !error && size > kLargestEmbedded) {
                throw OptionError(fmt::format("--embed-video: {} has {} MB, and browsers open no page with more than "
                                              "{} MB of video; leave the option out and keep the video beside the page",
                                              nameOf(*path), size >> 20, kLargestEmbedded >> 20));
            }
            video.link = nameOf(path->filename());
            video.content = readWhole(*path);
            return video;
        }
        std::error_code error;
        const fs::path folder = output_.path.empty() ? fs::path() : pathOf(output_.path).parent_path();
        const fs::path link = fs::relative(*path, folder.empty() ? fs::current_path() : folder, error);
        video.link = nameOf((error || link.empty() ? *path : link).generic_u8string());
        return video;
    }

    static std::string readWhole(const fs::path& path) {
        std::ifstream file(path, std::ios::binary);
        std::string content{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
        if (!file) {
            throw InputError(fmt::format("{}: cannot be read", nameOf(path)));
        }
        return content;
    }

    RecordingArgument recording_;
    std::string video_;
    RequestArguments request_;
    bool embed_ = false;
    OutputArgument output_;
};

} // namespace

std::unique_ptr<Subcommand> makeReportCommand() { return std::make_unique<ReportCommand>(); }

} // namespace OrvantaNS::command
