#include "subcommands/KeyframesCommand.h"

#include <filesystem>

#include <fmt/format.h>

#include "asking/Planning.h"
#include "reading/PathFile.h"
#include "reading/VideoLookup.h"
#include "subcommands/PathOptions.h"
#include "terminal/FileName.h"
#include "terminal/Messages.h"
#include "writing/Output.h"

namespace OrvantaNS::command {

namespace {

namespace fs = std::filesystem;

class KeyframesCommand : public Subcommand {
public:
    KeyframesCommand()
        : Subcommand("keyframes", "Print where the camera stands over the whole clip",
                     "  orvanta keyframes session.jsonl --size 640x400 -o keyframes.csv\n"
                     "  orvanta keyframes session.jsonl --size 9:16 --whole 30:34 -o path.json\n"
                     "  orvanta keyframes --path path.json --sample 30 -o frames.csv\n"
                     "  orvanta keyframes session.jsonl --size 1280x720 -o session.mlt\n"
                     "  orvanta keyframes *.jsonl --size 0.5 --out-dir keyframes --jobs 2") {}

protected:
    void addOptions(CLI::App& app) override {
        recordings_.addTo(app);
        app.get_option("RECORDING")->required(false);
        request_.addTo(app);
        easing_.addTo(app);
        wishes_.addTo(app);
        CLI::Option* const path =
            app.add_option("--path", path_, "Take this camera path in JSON instead of asking an engine")
                ->type_name("FILE");
        for (const char* const other : {"RECORDING", "--size", "--fade", "--clip", "--engine", "--out-dir"}) {
            path->excludes(app.get_option(other));
        }
        output_.addTo(app);
        app.parse_complete_callback([this] {
            if (recordings_.paths.empty() && path_.empty()) {
                throw CLI::RequiredError("RECORDING (or --path)");
            }
        });
    }

    bool speaksJson() const override { return output_.value().name == "json"; }

    ExitStatus run() override {
        output_.options(); // A wrong option is told before the work, not after it.
        checkOutput(output_.output.path);
        if (recordings_.isBatch()) {
            return runFolder();
        }
        CameraPlan plan = path_.empty() ? planned(recordings_.only()) : readBack();
        wishes_.layOver(plan);
        output_.write(plan);
        return kDone;
    }

private:
    ExitStatus runFolder() {
        if (!output_.output.path.empty()) {
            throw OptionError("-o and --out-dir: one or the other");
        }
        PathOutputArguments output = output_;
        if (output.format.empty()) {
            output.format = "csv"; // A folder's files are for programs.
        }
        const PathFormat& format = output.value();
        const std::string ending(format.endings.empty() ? ".txt" : format.endings.front());
        const std::vector<BatchItem> items = recordings_.batch.items(recordings_.paths, ending);
        return runBatch(items, recordings_.batch.jobs, [&](const BatchItem& item) {
            output.output.path = item.output;
            CameraPlan plan = planned({item.recording, recordings_.strict});
            wishes_.layOver(plan);
            output.video = output_.video;
            output.write(plan);
            const std::size_t count = plan.keyframes.size();
            return fmt::format("{} keyframe{}", count, count == 1 ? "" : "s");
        });
    }

    CameraPlan planned(const RecordingArgument& argument) {
        const RequestOptions request = request_.value();
        const auto easing = easing_.value();
        output_.output.check(argument);
        Recording recording = argument.read();
        completeRequest(recording, request);
        const KeyframeAnswer answer = answerKeyframes(recording, request.engine);
        if (!answer.remark.empty()) {
            if (argument.strict) {
                throw NoAnswer(answer.remark);
            }
            tellNote(answer.remark);
        }
        output_.video = videoNameFor(argument.path, recording);
        return planOf(recording, request.engine, answer.keyframes, easing.value_or(CameraEasing()));
    }

    CameraPlan readBack() {
        const auto easing = easing_.value();
        CameraPlan plan = readPathFile(path_);
        plan.setup.easing = easing.value_or(plan.setup.easing);
        // A path tells the recording's name; the two lie side by side, as far as anybody knows.
        const fs::path recording = pathOf(path_).parent_path() / pathOf(plan.recording).filename();
        output_.video = videoNameFor(plan.recording.empty() || path_ == "-" ? "-" : nameOf(recording), {});
        return plan;
    }

    RecordingsArgument recordings_;
    RequestArguments request_;
    EasingArgument easing_;
    WishesArguments wishes_;
    std::string path_;
    PathOutputArguments output_;
};

} // namespace

std::unique_ptr<Subcommand> makeKeyframesCommand() { return std::make_unique<KeyframesCommand>(); }

} // namespace OrvantaNS::command
