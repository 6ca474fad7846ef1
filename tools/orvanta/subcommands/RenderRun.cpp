#include "subcommands/RenderRun.h"

#include "asking/OptionError.h"

#if !defined(ORVANTA_HAS_RENDER)

namespace OrvantaNS::command {

void checkRenderOptions(const RenderRequest&) {
    throw OptionError("this orvanta was built without the libraries that make videos; build it where pkg-config finds "
                      "libavformat, libavcodec, libavfilter, libswscale and zimg");
}

void checkRenderOutput(const RenderRequest&) {}

RenderResult runRender(const RenderRequest& request, Recording) {
    checkRenderOptions(request);
    return {};
}

} // namespace OrvantaNS::command

#else

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <thread>
#include <utility>

#include <fmt/format.h>

extern "C" {
#include <libavutil/parseutils.h>
}

#include "CameraPath.h"
#include "asking/OutputSize.h"
#include "asking/Planning.h"
#include "reading/InputError.h"
#include "reading/PathFile.h"
#include "reading/VideoLookup.h"
#include "render/RenderError.h"
#include "render/VideoRendering.h"
#include "terminal/Interrupt.h"
#include "terminal/Messages.h"
#include "terminal/ProgressLine.h"
#include "terminal/RenderBar.h"
#include "terminal/TextFormat.h"
#include "writing/Output.h"

namespace OrvantaNS::command {

namespace {

namespace fs = std::filesystem;

AVRational parseRate(const std::string& text) {
    AVRational rate{0, 1};
    constexpr int kMostRate = 1000; // Pictures a second.
    if (av_parse_video_rate(&rate, text.c_str()) < 0 || rate.num <= 0 || av_q2d(rate) > kMostRate) {
        throw OptionError(fmt::format("--fps {}: expected pictures a second, such as 30 or 30000/1001", text));
    }
    return rate;
}

/// Makes the folder of the stills.
void makeFolder(const std::string& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    if (!fs::is_directory(folder)) {
        throw OutputError(
            fmt::format("{}: is no folder, and the stills of --frames-at need one", printableName(folder)));
    }
}

/// What the options alone say of a rendering.
render::RenderJob settingsOf(const RenderRequest& request) {
    render::RenderJob job;
    if (request.stills.empty()) {
        const auto form = render::mediaFormOf(request.output);
        if (!form) {
            throw OptionError(fmt::format("-o {}: the ending decides the kind of video; expected one of {}",
                                          request.output, render::mediaEndings()));
        }
        job.form = *form;
    }
    job.fill = render::parseFill(request.fill);
    if (!request.rate.empty()) {
        job.rate = parseRate(request.rate);
    }
    job.encoding.crf = request.crf;
    if (!request.bitrate.empty()) {
        job.encoding.bitrate = render::parseBitrate(request.bitrate);
    }
    job.encoding.preset = !request.preset.empty() ? request.preset : request.preview ? "ultrafast" : "medium";
    render::checkPreset(job.encoding.preset);
    job.threads =
        request.threads > 0 ? request.threads : std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
    job.encoding.threads =
        request.threads; // Encoders have reasons of their own to take more than there are processors.
    return job;
}

/// One rendering, with what its parts share.
class Rendering {
public:
    Rendering(const RenderRequest& request, Recording recording)
        : request_(request), recording_(std::move(recording)), job_(settingsOf(request)),
          video_(findVideo(request.videoPath, request.recordingPath, recording_)),
          reader_(video_, request.threads, interrupted) {
        if (recording_.params.recordingRegions().empty()) {
            throw InputError(fmt::format("{}: has no region, so nobody knows what the video shows", recording_.name));
        }
        region_ = recording_.params.recordingRegions().front().rect;
        if (!request_.pathFile.empty()) {
            given_ = readPathFile(request_.pathFile);
        }
    }

    RenderResult run() {
        if (request_.stills.empty()) {
            refuseOverwriting(request_.output, video_, "video");
        }
        const FrameSize size = sizeOf(job_);
        warnOfMismatch();
        setCamera(job_, size);
        return request_.stills.empty() ? renderFile(job_) : renderStills(job_);
    }

private:
    FrameSize videoSize() const { return {reader_.sample().width, reader_.sample().height}; }

    FrameSize sizeOf(render::RenderJob& job) const {
        std::optional<SizeOption> wanted = request_.request.size;
        if (!wanted && given_) {
            // A path brings the shape of its picture.
            wanted = SizeOption{SizeOption::Kind::Aspect,
                                {},
                                0.0,
                                static_cast<double>(given_->setup.targetWidth),
                                static_cast<double>(given_->setup.targetHeight)};
        }
        const FrameSize size = outputSize(wanted, videoSize());
        const FrameSize shown = request_.preview ? previewSize(size) : size;
        constexpr std::int32_t kLeastSide = 16; // Pixels: encoders want a block or more.
        constexpr std::int32_t kMostSide = 16384;
        if (std::min(shown.width, shown.height) < kLeastSide || std::max(shown.width, shown.height) > kMostSide) {
            throw OptionError(fmt::format("--size: a video of {}x{} cannot be made; each side has {} to {} pixels",
                                          shown.width, shown.height, kLeastSide, kMostSide));
        }
        job.width = shown.width;
        job.height = shown.height;
        return size;
    }

    /// Seconds of the video's time at a tick.
    double videoSeconds(long long tick) const {
        return (static_cast<double>(tick) - static_cast<double>(recording_.videoOffset.value_or(0))) /
               recording_.params.timeScale();
    }

    void warnOfMismatch() const {
        if (!recording_.videoOffset) {
            tellNote(
                "the recording does not say when its video begins (header field videoOffset); taken to begin with it");
        }
        const FrameSize video = videoSize();
        const double shape = static_cast<double>(video.width) / video.height;
        const double recorded = static_cast<double>(region_.right - region_.left) / (region_.bottom - region_.top);
        constexpr double kShapeTolerance = 0.01; // A row or column of rounding in a small video.
        if (std::abs(shape / recorded - 1.0) > kShapeTolerance) {
            tellNote(fmt::format(
                "{}: is {}x{}, but the recording's region is {}x{}, of another shape; is it its video?", video_,
                video.width, video.height, region_.right - region_.left, region_.bottom - region_.top));
        }
        const std::optional<double> length = reader_.claimedSeconds();
        const double end = videoSeconds(recording_.stop);
        constexpr double kLengthTolerance = 5.0; // Seconds: recorders of events and pictures do not stop at one moment.
        if (length && std::abs(*length - end) > kLengthTolerance) {
            tellNote(
                fmt::format("{}: ends at {:.1f} s, but the recording goes on to {:.1f} s of its time; is it its video?",
                            video_, *length, end));
        }
        if (request_.rate.empty() && request_.stills.empty() && reader_.rate().num > 0 &&
            av_q2d(reader_.rate()) < kChoppyRate) {
            tellNote(fmt::format(
                "the video has {:.3g} pictures a second, and so will the camera's moves; --fps 30 makes them "
                "smooth",
                av_q2d(reader_.rate())));
        }
    }

    /// What an engine makes of the recording.
    CameraPlan plannedCamera(const FrameSize& size) {
        const auto planned = plannedSize(size, request_.maxZoom, videoSize(), region_, request_.request.engine);
        RequestOptions options = request_.request;
        options.size = SizeOption{};
        options.size->pixels = planned.value_or(size);
        completeRequest(recording_, options, planned ? Question::Timeline : Question::Nothing);
        std::vector<ReasonedKeyframe> keyframes;
        if (planned) {
            KeyframeAnswer answer = answerKeyframes(recording_, options.engine);
            if (answer.remark.empty()) {
                keyframes = std::move(answer.keyframes);
            } else {
                tellNote(answer.remark);
            }
        } else {
            tellNote(fmt::format(
                "a picture of {}x{} at --max-zoom {} shows the whole recording anyway, so the camera stays; a "
                "larger zoom or a smaller size gives it room",
                size.width, size.height, request_.maxZoom));
        }
        return planOf(recording_, options.engine, keyframes, request_.easing.value_or(CameraEasing()));
    }

    /// The path that --path gives, for this recording.
    CameraPlan givenCamera(const FrameSize& size) {
        CameraPlan plan = *given_;
        const Rectangle& made = plan.setup.region;
        if (made.right - made.left != region_.right - region_.left ||
            made.bottom - made.top != region_.bottom - region_.top) {
            throw OptionError(fmt::format("--path {}: was made for a recording of {}x{}, and this one is {}x{}",
                                          request_.pathFile, made.right - made.left, made.bottom - made.top,
                                          region_.right - region_.left, region_.bottom - region_.top));
        }
        RequestOptions options = request_.request;
        options.size = SizeOption{};
        options.size->pixels = size;
        completeRequest(recording_, options, Question::Nothing); // For the clip.
        plan.setup.easing = request_.easing.value_or(plan.setup.easing);
        return plan;
    }

    void setCamera(render::RenderJob& job, const FrameSize& size) {
        CameraPlan plan = given_ ? givenCamera(size) : plannedCamera(size);
        setClip(job, plan.setup);
        // From here on a zoom counts in pixels of the output, whatever the engine planned for.
        plan.setup.targetWidth = size.width;
        plan.setup.targetHeight = size.height;
        if (request_.layWishes) {
            request_.layWishes(plan);
        }
        const double offset = static_cast<double>(recording_.videoOffset.value_or(0)) / recording_.params.timeScale();
        job.camera = [path = plan.path(), offset](double seconds) {
            const CameraFrame frame = path.frameAtSeconds(seconds + offset);
            return render::PictureRegion{frame.left, frame.top, frame.width, frame.height};
        };
        job.recordedWidth = region_.right - region_.left;
        job.recordedHeight = region_.bottom - region_.top;
    }

    /// An end that was left out is the video's own, which may reach a little beyond the recording's; a given path may bring
    /// a clip of its own.
    void setClip(render::RenderJob& job, const CameraSetup& path) const {
        const CameraSetup asked = CameraSetup::of(recording_.params);
        const ClipOption& clip = request_.request.clip;
        const double start = static_cast<double>(path.clipStart) / path.timeScale;
        const double stop = static_cast<double>(path.clipStop) / path.timeScale;
        const double offset = static_cast<double>(recording_.videoOffset.value_or(0)) / recording_.params.timeScale();
        if (clip.start) {
            job.clip.start = std::max(videoSeconds(asked.clipStart), 0.0);
        } else if (given_ && start > recording_.startSeconds()) {
            job.clip.start = std::max(start - offset, 0.0);
        }
        if (clip.stop) {
            job.clip.stop = videoSeconds(asked.clipStop);
        } else if (given_ && stop < recording_.stopSeconds()) {
            job.clip.stop = stop - offset;
        }
    }

    RenderResult renderFile(const render::RenderJob& job) {
        render::OutputFile file(request_.output);
        render::RenderOutcome outcome;
        {
            RenderBar bar(progressScreen());
            const auto tell = [&bar](const render::RenderState& state) {
                bar.show({state.pictures, state.seconds, state.ofSeconds, state.pass, state.passes});
            };
            outcome = render::renderVideo(reader_, job, file, tell, interrupted);
        }
        throwIfInterrupted();
        file.publish();
        for (const std::string& note : outcome.notes) {
            tellNote(note);
        }
        RenderResult result{fmt::format("{}x{}, {:.1f} s", job.width, job.height, outcome.seconds)};
        if (!outcome.complaint.empty()) {
            result.complaint = fmt::format("{}; {} was made as far as it goes ({:.1f} s)", outcome.complaint,
                                           printableName(request_.output), outcome.seconds);
        }
        return result;
    }

    RenderResult renderStills(const render::RenderJob& job) {
        const fs::path folder(request_.output);
        const std::string stem =
            request_.recordingPath == "-" ? "still" : fs::path(request_.recordingPath).stem().string();
        for (const double moment : request_.stills) {
            const double seconds = videoSeconds(resolveMoment(moment, recording_));
            const std::string png = render::renderStill(reader_, job, seconds, interrupted);
            throwIfInterrupted();
            writeOutput((folder / fmt::format("{}-{:08.3f}s.png", stem, moment)).string(), png);
        }
        return {fmt::format("{} still{}", request_.stills.size(), request_.stills.size() == 1 ? "" : "s")};
    }

    static constexpr double kChoppyRate = 20.0; // Pictures a second: below that a move is seen to go in steps.

    const RenderRequest& request_;
    Recording recording_;
    render::RenderJob job_;
    std::string video_;
    render::VideoReader reader_;
    Rectangle region_;
    std::optional<CameraPlan> given_; // By --path.
};

} // namespace

void checkRenderOptions(const RenderRequest& request) {
    render::keepAvMessages(); // The libraries would say the same in their own words.
    try {
        settingsOf(request);
    } catch (const render::SettingError& error) {
        throw OptionError(error.what());
    }
}

void checkRenderOutput(const RenderRequest& request) {
    if (request.stills.empty()) {
        checkOutput(request.output);
        refuseOverwriting(request.output, request.recordingPath);
        refuseOverwriting(request.output, request.videoPath, "video");
        refuseOverwriting(request.output, request.pathFile, "path");
    } else {
        makeFolder(request.output);
    }
}

RenderResult runRender(const RenderRequest& request, Recording recording) {
    try {
        return Rendering(request, std::move(recording)).run();
    } catch (const render::VideoError& error) {
        throwIfInterrupted(); // Reading ends with an error when Ctrl-C ends it.
        throw InputError(error.what());
    } catch (const render::SettingError& error) {
        throw OptionError(error.what());
    }
}

} // namespace OrvantaNS::command

#endif
