#include "render/VideoRendering.h"

#include <algorithm>
#include <map>
#include <memory>
#include <utility>

#include <fmt/format.h>

extern "C" {
#include <libavutil/pixdesc.h>
}

#include "render/GifRendering.h"
#include "render/MediaWriter.h"
#include "render/PixelLayout.h"
#include "render/RenderError.h"
#include "render/RenderPlan.h"
#include "render/SoundTrack.h"

namespace OrvantaNS::render {

namespace {

/// Everything between the pictures and the file. Taken apart in the reverse order of its making.
class FileMaker {
public:
    FileMaker(const VideoReader& reader, const RenderJob& job, const PassPlan& plan, OutputFile& file)
        : writer_(job.form, file), timeBase_(passTimeBase(reader, plan)) {
        const AVRational rate = job.rate.value_or(reader.rate());
        encoder_ = std::make_unique<VideoEncoder>(job.form, plan.form, job.encoding, timeBase_, rate,
                                                  writer_.wantsGlobalHeader());
        writer_.copyMetadata(reader.format());
        stream_ = writer_.addVideo(encoder_->context(), rate);
        for (const AVStream* track : reader.soundTracks()) {
            tracks_.push_back(std::make_unique<SoundTrack>(*track, job.form, job.clip, writer_));
        }
        writer_.writeHeader();
    }

    void add(PaintedPicture painted) {
        painted.picture->pts = painted.stamp;
        durations_[painted.stamp] = painted.duration;
        encoder_->encode(*painted.picture, [this](AVPacket& packet) { write(packet); });
    }

    void add(SoundPacket packet) { tracks_[packet.track]->add(*packet.packet); }

    void finish() {
        encoder_->finish([this](AVPacket& packet) { write(packet); });
        for (const auto& track : tracks_) {
            track->finish();
        }
        writer_.writeTrailer();
    }

    std::string soundNote() const {
        for (const auto& track : tracks_) {
            if (!track->copied()) {
                return "the container does not take the sound as it is; it was encoded anew";
            }
        }
        return {};
    }

private:
    void write(AVPacket& packet) {
        // Encoders hand on how long a picture shows in newer versions only; the last one of a file needs it.
        if (const auto found = durations_.find(packet.pts); found != durations_.end()) {
            packet.duration = found->second;
            durations_.erase(found);
        }
        writer_.write(packet, stream_, timeBase_);
    }

    MediaWriter writer_;
    AVRational timeBase_;
    std::unique_ptr<VideoEncoder> encoder_;
    int stream_ = -1;
    std::vector<std::unique_ptr<SoundTrack>> tracks_;
    std::map<std::int64_t, std::int64_t> durations_; // Of the pictures that the encoder still holds, by stamp.
};

void checkSize(const PictureForm& form, const RenderJob& job) {
    const auto layout = planarLayout(form.format);
    const int stepX = 1 << layout->subsampleWidth;
    const int stepY = 1 << layout->subsampleHeight;
    if (job.width % stepX != 0 || job.height % stepY != 0) {
        throw SettingError(
            fmt::format("{} with the video's pixel format {} has even sizes only; {}x{} would be one: --size "
                        "{}x{}",
                        job.form.videoName, av_get_pix_fmt_name(form.format), job.width / stepX * stepX,
                        job.height / stepY * stepY, job.width / stepX * stepX, job.height / stepY * stepY));
    }
}

} // namespace

RenderOutcome renderVideo(VideoReader& reader, const RenderJob& job, OutputFile& file, const TellState& tell,
                          const StopQuestion& stop) {
    if (job.form.video == AV_CODEC_ID_GIF) {
        return renderGif(reader, job, file, tell, stop);
    }
    PassPlan plan = planOf(job);
    plan.form =
        convertedForm(reader.sample(), job,
                      encodingFormat(videoEncoder(job.form), static_cast<AVPixelFormat>(reader.sample().format)));
    checkSize(plan.form, job);
    FileMaker maker(reader, job, plan, file);
    goToStart(reader, job.clip);
    RenderOutcome outcome;
    RenderState state;
    state.ofSeconds = expectedSeconds(reader, job.clip);
    const double tick = av_q2d(passTimeBase(reader, plan));
    const PassResult result = runPass(
        reader, plan,
        [&](PaintedPicture painted) {
            ++state.pictures;
            state.seconds = painted.clipSeconds + static_cast<double>(painted.duration) * tick;
            maker.add(std::move(painted));
            tell(state);
        },
        [&maker](SoundPacket packet) { maker.add(std::move(packet)); }, stop);
    if (stop()) {
        return outcome;
    }
    checkNotEmpty(result, reader, job.clip);
    maker.finish();
    outcome.pictures = result.pictures;
    outcome.seconds = state.seconds;
    outcome.complaint = reader.complaint();
    addNotes(outcome, reader, result);
    if (std::string note = maker.soundNote(); !note.empty()) {
        outcome.notes.push_back(std::move(note));
    }
    return outcome;
}

} // namespace OrvantaNS::render
