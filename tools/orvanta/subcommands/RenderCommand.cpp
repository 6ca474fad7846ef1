#include "subcommands/RenderCommand.h"

#include <algorithm>
#include <stdexcept>
#include <thread>

#include <fmt/format.h>

#include "asking/OptionError.h"
#include "subcommands/OptionGroups.h"
#include "subcommands/PathOptions.h"
#include "subcommands/RenderRun.h"
#include "terminal/Messages.h"

namespace OrvantaNS::command {

namespace {

constexpr double kMostZoom = 100.0; // A pixel of the video as large as this many of the output is a wall of squares.
constexpr int kMostThreads = 64;

class RenderCommand : public Subcommand {
public:
    RenderCommand()
        : Subcommand("render", "Make a video that shows what the camera shows",
                     "  orvanta render session.jsonl -o close.mp4\n"
                     "  orvanta render session.jsonl video.mkv --size 1080x1920 --fps 30 -o portrait.mp4\n"
                     "  orvanta render session.jsonl --clip 0:30:1:00 --size 480x300 --fps 10 -o short.gif\n"
                     "  orvanta render session.jsonl --preview -o look.mp4\n"
                     "  orvanta render *.jsonl --out-dir videos --jobs 2\n"
                     "  orvanta render session.jsonl --frames-at 5,12.5,1:30 -o stills") {}

    ExitStatus run() override {
        if (!batch_.folder.empty()) {
            return runFolder();
        }
        if (output_.empty()) {
            throw OptionError("-o FILE is missing (or --out-dir DIR for several recordings)");
        }
        if (!ending_.empty()) {
            throw OptionError("--container: is for --out-dir; the ending of -o decides here");
        }
        if (videos_.size() > 1) {
            throw OptionError(
                fmt::format("{} files: one recording and its video are expected; several recordings need a folder for "
                            "their videos, --out-dir DIR",
                            videos_.size() + 1));
        }
        RenderRequest request = requestOf(recording_.path, output_);
        request.videoPath = videos_.empty() ? "" : videos_.front();
        checkRenderOptions(request);
        checkRenderOutput(request);
        const RenderResult result = runRender(request, recording_.read());
        if (!result.complaint.empty()) {
            tellNote(result.complaint);
            return kFailed;
        }
        return kDone;
    }

protected:
    void addOptions(CLI::App& app) override {
        recording_.addTo(app);
        app.add_option(
               "VIDEO", videos_,
               "Video of the recording (default: the one that its header names, or a file of its name with .mp4, "
               ".mkv, .webm or .mov); with --out-dir more recordings, of which each finds its own")
            ->type_name("FILE");
        app.add_option(
               "-o,--output", output_,
               "File to make: .mp4, .mov, .webm, .mkv or .gif; with --frames-at a folder. It appears whole or not "
               "at all")
            ->type_name("FILE");
        batch_.addTo(app);
        app.get_option("--out-dir")->excludes("--output");
        app.add_option("--container", ending_,
                       "Kind of the videos in --out-dir: mp4, mov, mkv, webm or gif (default mp4)")
            ->type_name("NAME")
            ->check(CLI::IsMember({"mp4", "mov", "mkv", "webm", "gif"}));
        app.add_option(
               "-s,--size", request_.size.text,
               "Output picture: WIDTHxHEIGHT, a scale of the video such as 0.5, or an aspect such as 9:16 (default: "
               "the video's size)")
            ->type_name("SIZE");
        app.add_option("--max-zoom", maxZoom_, "How far a pixel of the video may be enlarged (default 2)")
            ->type_name("Z");
        app.add_option("--fill", fill_,
                       "What shows beside a recording that does not fill the picture: blur, black, or a colour such as "
                       "#203040 (default blur)")
            ->type_name("FILL");
        easing_.addTo(app);
        request_.fade.addTo(app);
        request_.clip.addTo(app);
        request_.engine.addTo(app);
        wishes_.addTo(app);
        CLI::Option* const path =
            app.add_option("--path", path_,
                           "Render this camera path in JSON, edited or not, instead of asking an engine")
                ->type_name("FILE");
        for (const char* const other : {"--max-zoom", "--fade", "--engine"}) {
            path->excludes(app.get_option(other));
        }
        app.add_option("--crf", crf_, "Constant quality, smaller is better (default 23 for H.264, 32 for VP9)")
            ->type_name("Q");
        app.add_option("--bitrate", bitrate_, "Bits a second instead of a quality, such as 2500k or 4M")
            ->type_name("RATE")
            ->excludes("--crf");
        app.add_option("--preset", preset_, "Speed against size, ultrafast to veryslow (default medium)")
            ->type_name("PRESET");
        app.add_option("--fps", rate_, "Constant rate, such as 30 or 30000/1001 (default: the video's time stamps)")
            ->type_name("N");
        app.add_flag("--preview", preview_, "A quarter of the width and height, encoded fast");
        app.add_option("--frames-at", stills_, "PNG stills of these moments of the recording instead of a video")
            ->type_name("T[,T...]");
        app.add_option("--threads", threads_, "Threads that decode, scale and encode (default: as many as processors)")
            ->type_name("N")
            ->check(CLI::Range(1, kMostThreads));
    }

private:
    RenderRequest requestOf(const std::string& recording, const std::string& output) {
        RenderRequest request;
        request.recordingPath = recording;
        request.output = output;
        request.request = request_.value();
        request.easing = easing_.value();
        request.pathFile = path_;
        request.layWishes = [this](CameraPlan& plan) { wishes_.layOver(plan); };
        request.maxZoom = maxZoom();
        request.fill = fill_;
        request.crf = crf();
        request.bitrate = bitrate_;
        request.preset = preset_;
        request.rate = rate_;
        request.preview = preview_;
        request.stills = stills();
        request.threads = threads_;
        return request;
    }

    ExitStatus runFolder() {
        if (!path_.empty()) {
            throw OptionError("--path: is the camera of one recording, and cannot serve all of --out-dir");
        }
        std::vector<std::string> recordings{recording_.path};
        recordings.insert(recordings.end(), videos_.begin(), videos_.end());
        // Stills go into a folder for each recording.
        const std::string ending = !stills_.empty() ? "" : fmt::format(".{}", ending_.empty() ? "mp4" : ending_);
        const std::vector<BatchItem> items = batch_.items(recordings, ending);
        const int processors = std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
        const int jobs = std::min(batch_.jobs > 0 ? batch_.jobs : processors, static_cast<int>(items.size()));
        checkRenderOptions(requestOf(items.front().recording, items.front().output)); // Told once, and before the work.
        return runBatch(items, jobs, [&](const BatchItem& item) {
            RenderRequest request = requestOf(item.recording, item.output);
            if (request.threads == 0) {
                request.threads = std::max(1, processors / jobs);
            }
            checkRenderOutput(request);
            const RenderResult result = runRender(request, RecordingArgument{item.recording, recording_.strict}.read());
            if (!result.complaint.empty()) {
                throw std::runtime_error(result.complaint);
            }
            return result.text;
        });
    }

    double maxZoom() const {
        const auto zoom = parseDecimal(maxZoom_);
        if (!zoom || *zoom <= 0.0 || *zoom > kMostZoom) {
            throw OptionError(fmt::format("--max-zoom {}: expected a number above 0, such as 2", maxZoom_));
        }
        return *zoom;
    }

    std::optional<double> crf() const {
        if (crf_.empty()) {
            return std::nullopt;
        }
        const auto quality = parseDecimal(crf_);
        if (!quality) {
            throw OptionError(fmt::format("--crf {}: expected a number, such as 23", crf_));
        }
        return quality;
    }

    std::vector<double> stills() const {
        std::vector<double> moments;
        for (std::size_t from = 0; !stills_.empty() && from <= stills_.size();) {
            const std::size_t comma = std::min(stills_.find(',', from), stills_.size());
            const std::string text = stills_.substr(from, comma - from);
            const auto moment = parseTime(text);
            if (!moment) {
                throw OptionError(
                    fmt::format("--frames-at {}: expected seconds or m:ss.mmm, with commas between", text));
            }
            moments.push_back(*moment);
            from = comma + 1;
        }
        return moments;
    }

    RecordingArgument recording_;
    RequestArguments request_;
    std::vector<std::string> videos_; // With --out-dir: recordings behind the first one.
    std::string output_;
    BatchArguments batch_;
    std::string ending_; // Of the videos in a folder, without its point; empty: mp4.
    std::string maxZoom_ = "2";
    std::string fill_ = "blur";
    EasingArgument easing_;
    WishesArguments wishes_;
    std::string path_;
    std::string crf_;
    std::string bitrate_;
    std::string preset_;
    std::string rate_;
    bool preview_ = false;
    std::string stills_;
    int threads_ = 0;
};

} // namespace

std::unique_ptr<Subcommand> makeRenderCommand() { return std::make_unique<RenderCommand>(); }

} // namespace OrvantaNS::command
