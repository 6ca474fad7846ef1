#include "commands.h"

#include <cstdio>

#include <fmt/format.h>

#include "info.h"
#include "inspect.h"
#include "output.h"
#include "progress_bar.h"

namespace OrvantaNS::command {

namespace {

Recording readWithWarning(const std::string& path) {
    Recording recording = readRecordingFile(path);
    if (const std::string warning = recording.warning(); !warning.empty()) {
        fmt::print(stderr, "orvanta: {}\n", warning);
    }
    return recording;
}

void writeReport(const KeyframeReport& report, const OutputOptions& output) {
    const bool terminal = output.path.empty() && outputIsTerminal();
    const Format format = output.format.value_or(terminal ? Format::Table : Format::Csv);
    writeOutput(output.path, keyframeText(report, format));
}

} // namespace

void runKeyframes(const std::string& recordingPath, const RequestOptions& request, const OutputOptions& output) {
    refuseOverwriting(output.path, recordingPath);
    Recording recording = readWithWarning(recordingPath);
    completeRequest(recording, request);
    writeReport({recording, request.engine, askKeyframes(recording.params, request.engine),
                 request.engine == EngineChoice::Value},
                output);
}

void runFrame(const std::string& recordingPath, const FrameQuestion& question, const RequestOptions& request,
              const OutputOptions& output) {
    refuseOverwriting(output.path, recordingPath);
    Recording recording = readWithWarning(recordingPath);
    completeRequest(recording, request);
    const OV_TIME_RECT frame =
        question.atSeconds ? askFrameAt(recording.params, request.engine, resolveMoment(*question.atSeconds, recording))
                           : askFrameAtWindow(recording.params, request.engine);
    // These two questions are answered without shots, so there is no reason to give.
    writeReport({recording, request.engine, {{frame, OV_MERGE_NONE, std::nullopt}}, false}, output);
}

void runInfo(const std::string& recordingPath) { writeOutput({}, infoText(readWithWarning(recordingPath))); }

void runInspect(const std::string& recordingPath, const RequestOptions& request, bool json, const std::string& path) {
    refuseOverwriting(path, recordingPath);
    Recording recording = readWithWarning(recordingPath);
    completeRequest(recording, request);
    Inspection inspection;
    const auto text = [&] {
        return json ? inspectionJson(inspection, recording) : inspectionText(inspection, recording);
    };
    try {
        OV_DATA_STORE store;
        runStages(recording.params, store, [&inspection](OV_PIPELINE_STAGE stage, const OV_DATA_STORE& reached) {
            keepStage(inspection, stage, reached);
        });
    } catch (const OrvantaException& failure) {
        if (path.empty()) {
            // The stages before a failure are what tells why it came.
            inspection.failure = failure.what();
            writeOutput(path, text());
        }
        throw;
    }
    writeOutput(path, text());
}

} // namespace OrvantaNS::command
