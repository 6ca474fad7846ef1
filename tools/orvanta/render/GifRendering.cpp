#include "render/GifRendering.h"

#include <algorithm>
#include <map>
#include <utility>

#include <fmt/format.h>

extern "C" {
#include <libavfilter/buffersink.h>
#include <libavfilter/buffersrc.h>
#include <libavutil/mathematics.h>
}

#include "render/MediaWriter.h"
#include "render/RenderError.h"
#include "render/RenderPlan.h"

namespace OrvantaNS::render {

namespace {

constexpr const char* kGifFailure = "the GIF cannot be made";
constexpr AVRational kGifTick{1, 100}; // Seconds: what the format counts in.
// Browsers show pictures that last a hundredth or less for a tenth of a second instead.
constexpr std::int64_t kLeastTicks = 2;

/// A filter graph with pictures of one form going in.
class PictureFilter {
public:
    PictureFilter(const PictureForm& form, const char* filters) : graph_(avfilter_graph_alloc()) {
        if (graph_ == nullptr) {
            throw std::bad_alloc();
        }
        const std::string text =
            fmt::format("buffer@in=width={}:height={}:pix_fmt={}:time_base={}/{},{}", form.width, form.height,
                        static_cast<int>(form.format), kGifTick.num, kGifTick.den, filters);
        AVFilterInOut* inputs = nullptr;
        AVFilterInOut* outputs = nullptr;
        const int code = avfilter_graph_parse2(graph_.get(), text.c_str(), &inputs, &outputs);
        avfilter_inout_free(&inputs);
        avfilter_inout_free(&outputs);
        checkAv(code, kGifFailure);
        checkAv(avfilter_graph_config(graph_.get(), nullptr), kGifFailure);
    }

    /// Null tells that there are no more.
    void add(const char* input, AVFrame* picture) {
        checkAv(av_buffersrc_add_frame(find(input), picture), kGifFailure);
    }
    /// Null when there is none yet.
    FramePointer take() {
        FramePointer frame = newFrame();
        const int code = av_buffersink_get_frame(find("buffersink@out"), frame.get());
        if (code == AVERROR(EAGAIN) || code == AVERROR_EOF) {
            return nullptr;
        }
        checkAv(code, kGifFailure);
        return frame;
    }

private:
    AVFilterContext* find(const char* name) {
        AVFilterContext* filter = avfilter_graph_get_filter(graph_.get(), name);
        if (filter == nullptr) {
            throw RenderError(kGifFailure);
        }
        return filter;
    }

    GraphPointer graph_;
};

/// Rounds stamps to the format's, and tells which pictures there is no room for.
class GifStamps {
public:
    explicit GifStamps(AVRational timeBase) : timeBase_(timeBase) {}

    /// False: leave it out.
    bool admit(PaintedPicture& painted) {
        const std::int64_t end = av_rescale_q(painted.stamp + painted.duration, timeBase_, kGifTick);
        const std::int64_t stamp = av_rescale_q(painted.stamp, timeBase_, kGifTick);
        if (last_ && stamp < *last_ + kLeastTicks) {
            return false;
        }
        last_ = stamp;
        painted.stamp = stamp;
        painted.duration = std::max(end - stamp, kLeastTicks);
        return true;
    }

private:
    AVRational timeBase_;
    std::optional<std::int64_t> last_;
};

} // namespace

RenderOutcome renderGif(VideoReader& reader, const RenderJob& job, OutputFile& file, const TellState& tell,
                        const StopQuestion& stop) {
    PassPlan plan = planOf(job);
    plan.form = convertedForm(reader.sample(), job, AV_PIX_FMT_GBRP);
    RenderState state;
    state.passes = 2;
    state.ofSeconds = expectedSeconds(reader, job.clip);
    const AVRational timeBase = passTimeBase(reader, plan);
    const auto run = [&](const std::function<void(FramePointer, std::int64_t)>& take) {
        GifStamps stamps(timeBase);
        state.pictures = 0;
        return runPass(
            reader, plan,
            [&](PaintedPicture painted) {
                const double seconds = painted.clipSeconds + static_cast<double>(painted.duration) * av_q2d(timeBase);
                if (stamps.admit(painted)) {
                    painted.picture->pts = painted.stamp;
                    take(std::move(painted.picture), painted.duration);
                    ++state.pictures;
                }
                state.seconds = seconds;
                tell(state);
            },
            [](const SoundPacket&) {}, stop);
    };

    goToStart(reader, job.clip);
    PictureFilter colours(plan.form, "palettegen=stats_mode=full,buffersink@out");
    const PassResult counted =
        run([&](FramePointer picture, std::int64_t) { colours.add("buffer@in", picture.get()); });
    if (stop()) {
        return {};
    }
    checkNotEmpty(counted, reader, job.clip);
    const std::string complaint = reader.complaint();
    colours.add("buffer@in", nullptr);
    const FramePointer palette = colours.take();
    if (palette == nullptr) {
        throw RenderError(kGifFailure);
    }

    PictureFilter painter(plan.form, fmt::format("format=bgra[pictures];buffer@palette=width={}:height={}:pix_fmt={}:"
                                                 "time_base=1/100[palette];[pictures][palette]paletteuse=dither=bayer:"
                                                 "bayer_scale=4:diff_mode=rectangle,buffersink@out",
                                                 palette->width, palette->height, palette->format)
                                         .c_str());
    palette->pts = 0;
    painter.add("buffer@palette", palette.get());
    painter.add("buffer@palette", nullptr);
    PictureForm indexed = plan.form;
    indexed.format = AV_PIX_FMT_PAL8;
    indexed.range = AVCOL_RANGE_UNSPECIFIED;
    indexed.matrix = AVCOL_SPC_UNSPECIFIED;
    MediaWriter writer(job.form, file);
    VideoEncoder encoder(job.form, indexed, job.encoding, kGifTick, {0, 1}, writer.wantsGlobalHeader());
    const int stream = writer.addVideo(encoder.context(), {0, 1});
    writer.writeHeader();
    std::map<std::int64_t, std::int64_t> durations; // By stamp.
    const auto write = [&](AVPacket& packet) {
        packet.duration = durations.count(packet.pts) != 0 ? durations[packet.pts] : kLeastTicks;
        durations.erase(packet.pts);
        writer.write(packet, stream, kGifTick);
    };
    const auto encode = [&] {
        while (const FramePointer picture = painter.take()) {
            encoder.encode(*picture, write);
        }
    };
    state.pass = 2;
    reader.seek(job.clip.start);
    const PassResult result = run([&](FramePointer picture, std::int64_t duration) {
        durations[picture->pts] = duration;
        painter.add("buffer@in", picture.get());
        encode();
    });
    if (stop()) {
        return {};
    }
    painter.add("buffer@in", nullptr);
    encode();
    encoder.finish(write);
    writer.writeTrailer();
    RenderOutcome outcome;
    outcome.pictures = state.pictures;
    outcome.seconds = state.seconds;
    outcome.complaint = complaint;
    addNotes(outcome, reader, result);
    return outcome;
}

} // namespace OrvantaNS::render
