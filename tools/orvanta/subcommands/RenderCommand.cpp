#include "subcommands/RenderCommand.h"

#include <fmt/format.h>

#include "asking/OptionError.h"
#include "subcommands/OptionGroups.h"
#include "subcommands/PathOptions.h"
#include "subcommands/RenderRun.h"

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
                     "  orvanta render session.jsonl --frames-at 5,12.5,1:30 -o stills") {}

    ExitStatus run() override {
        RenderRequest request;
        request.recordingPath = recording_.path;
        request.videoPath = video_;
        request.output = output_;
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
        return runRender(request, recording_.read());
    }

protected:
    void addOptions(CLI::App& app) override {
        recording_.addTo(app);
        app.add_option(
            "VIDEO", video_,
            "Video of the recording (default: the one that its header names, or a file of its name with .mp4, "
            ".mkv, .webm or .mov)");
        app.add_option(
               "-o,--output", output_,
               "File to make: .mp4, .mov, .webm, .mkv or .gif; with --frames-at a folder. It appears whole or not "
               "at all")
            ->type_name("FILE")
            ->required();
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
    std::string video_;
    std::string output_;
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
