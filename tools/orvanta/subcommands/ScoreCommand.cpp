#include "subcommands/ScoreCommand.h"

#include <filesystem>

#include <fmt/format.h>

#include "camera/score/Baselines.h"
#include "reading/CsvTable.h"
#include "reading/InputError.h"
#include "reading/ScoreInput.h"
#include "subcommands/OptionGroups.h"
#include "terminal/FileName.h"
#include "writing/Output.h"
#include "writing/ScoreReport.h"

namespace OrvantaNS::command {

namespace {

namespace fs = std::filesystem;

class ScoreCommand : public Subcommand {
public:
    ScoreCommand()
        : Subcommand("score", "Judge a camera path: what of the recording it shows, how readably and how calmly",
                     "  orvanta score session.jsonl --size 640x400 --engine director\n"
                     "  orvanta score session.jsonl path.csv --size 640x400 --moments session.moments.csv\n"
                     "  orvanta score session.jsonl --size 9:16 --baseline click --format json") {}

protected:
    void addOptions(CLI::App& app) override {
        recording_.addTo(app);
        app.add_option("PATH", path_,
                       "Camera path to judge, CSV or JSON as keyframes prints them; without one that of the engine");
        app.add_option("--moments", moments_,
                       "Named moments (default: the file of the recording's name with .moments.csv beside it)")
            ->type_name("FILE");
        app.add_option("--baseline", baseline_, "Judge a simple policy instead: click or dwell")
            ->type_name("NAME")
            ->check(CLI::IsMember({"click", "dwell"}));
        request_.addTo(app);
        app.add_option("--format", format_, "table or json (default table)")
            ->type_name("FORMAT")
            ->check(CLI::IsMember({"table", "json"}));
        output_.addTo(app);
    }

    bool speaksJson() const override { return format_ == "json"; }
    ExitStatus run() override {
        const RequestOptions request = request_.value();
        if (!path_.empty() && !baseline_.empty()) {
            throw OptionError("score judges a PATH or a --baseline, not both");
        }
        if (path_ == "-" && recording_.path == "-") {
            throw OptionError("RECORDING and PATH cannot both be the standard input");
        }
        output_.check(recording_);
        refuseOverwriting(output_.path, path_, "path");
        refuseOverwriting(output_.path, moments_, "list of moments");
        Recording recording = recording_.read();
        completeRequest(recording, request);
        const Params& params = recording.params;
        const camera::JudgedSession session = camera::judgedSession(params);
        ScoreReport report{recording, {}, {}, momentsOf(recording), {}};
        const double outputWidth = params.targetWidth();
        const double outputHeight = params.targetHeight();
        const camera::JudgedPath path(keyframes(recording, request, session, report.path), session.whole, outputWidth,
                                      outputHeight, recording.toSeconds(params.fadeDuration()));
        report.figures = camera::judgePath(session, path, outputWidth, outputHeight);
        report.scores = camera::judgeMoments(path, report.moments, session.whole, outputWidth, outputHeight);
        writeOutput(output_.path, format_ == "json" ? scoreJson(report) : scoreText(report));
        return kDone;
    }

private:
    std::vector<camera::Moment> momentsOf(const Recording& recording) const {
        std::string file = moments_;
        if (file.empty()) {
            file = nameOf(pathOf(recording_.path).replace_extension(".moments.csv"));
            if (recording_.path == "-" || !fs::is_regular_file(pathOf(file))) {
                return {};
            }
        }
        return parseMoments(readWhole(file, file), file, recording.params.recordingRegions().front().rect);
    }

    std::vector<camera::JudgedKeyframe> keyframes(const Recording& recording, const RequestOptions& request,
                                                  const camera::JudgedSession& session, std::string& name) const {
        const Params& params = recording.params;
        if (!path_.empty()) {
            name = path_;
            return parsePath(readWhole(path_, path_), path_);
        }
        if (!baseline_.empty()) {
            name = baseline_ + " zoom";
            return baseline_ == "click" ? camera::clickZoom(session, params.targetWidth(), params.targetHeight())
                                        : camera::dwellZoom(session, params.targetWidth(), params.targetHeight());
        }
        name = fmt::format("the {} engine", engineName(request.engine));
        std::vector<camera::JudgedKeyframe> list;
        for (const ReasonedKeyframe& keyframe : answerKeyframes(recording, request.engine).keyframes) {
            list.push_back({recording.toSeconds(keyframe.frame.time), camera::toReal(keyframe.frame.rect)});
        }
        return list;
    }

    RecordingArgument recording_;
    std::string path_;
    std::string moments_;
    std::string baseline_;
    RequestArguments request_;
    std::string format_;
    OutputArgument output_;
};

} // namespace

std::unique_ptr<Subcommand> makeScoreCommand() { return std::make_unique<ScoreCommand>(); }

} // namespace OrvantaNS::command
