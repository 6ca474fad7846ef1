#include "subcommands/FrameCommand.h"

#include <optional>

#include <fmt/format.h>

#include "subcommands/OptionGroups.h"

namespace OrvantaNS::command {

namespace {

class FrameCommand : public Subcommand {
public:
    FrameCommand()
        : Subcommand("frame", "Print where the camera stands at one moment, or for one window",
                     "  orvanta frame session.jsonl --size 640x400 --at 1:05.5\n"
                     "  orvanta frame session.jsonl --size 640x400 --window") {}

protected:
    void addOptions(CLI::App& app) override {
        recording_.addTo(app);
        app.add_option("--at", at_, "Moment, in seconds or m:ss.mmm")->type_name("TIME");
        app.add_flag("--window", window_, "Frame the recording's first window, whatever the moment");
        request_.addTo(app);
        output_.addTo(app);
    }

    bool speaksJson() const override { return output_.value().name == "json"; }
    ExitStatus run() override {
        const std::optional<double> moment = momentAsked();
        const RequestOptions request = request_.value();
        output_.output.check(recording_);
        Recording recording = recording_.read();
        completeRequest(recording, request, moment ? Question::Timeline : Question::Window);
        const OV_TIME_RECT frame = moment
                                       ? askFrameAt(recording.params, request.engine, resolveMoment(*moment, recording))
                                       : askFrameAtWindow(recording.params, request.engine);
        // These two questions are answered without shots, so there is no reason to give.
        output_.write({recording, request.engine, {{frame, OV_MERGE_NONE, std::nullopt, {}}}, false});
        return kDone;
    }

private:
    /// Seconds; nothing for the first window, which has no moment.
    std::optional<double> momentAsked() const {
        if (at_.empty() == !window_) {
            throw OptionError("frame needs either --at TIME or --window");
        }
        if (window_) {
            return std::nullopt;
        }
        const auto seconds = parseTime(at_);
        if (!seconds) {
            throw OptionError(fmt::format("--at {}: expected seconds, 500ms, m:ss.mmm or h:mm:ss", at_));
        }
        return seconds;
    }

    RecordingArgument recording_;
    std::string at_;
    bool window_ = false;
    RequestArguments request_;
    KeyframeOutputArguments output_;
};

} // namespace

std::unique_ptr<Subcommand> makeFrameCommand() { return std::make_unique<FrameCommand>(); }

} // namespace OrvantaNS::command
