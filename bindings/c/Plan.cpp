// The questions: a plan, the frame of a moment, the frame of a window.
#include <cstdint>
#include <memory>
#include <vector>

#include "OrvantaDirector.h"
#include "OrvantaException.h"
#include "OrvantaVotingAlgorithm.h"
#include "OrvantaWorker.h"
#include "bindings/c/Failure.h"
#include "bindings/c/Handles.h"
#include "bindings/c/Records.h"
#include "bindings/c/RequestFaults.h"
#include "bindings/c/StageTables.h"

namespace {

using namespace OrvantaNS;
using namespace OrvantaNS::c;

// The host's callbacks as the engines' reporter.
class HostReporter : public ProgressReporter {
public:
    explicit HostReporter(const orvanta_run& run) : run_(run) {}

    void reportProgress(double percent) override {
        if (run_.progress != nullptr) {
            run_.progress(percent, run_.user_data);
        }
    }
    bool isCancelled() override { return run_.cancelled != nullptr && run_.cancelled(run_.user_data) != 0; }

    void throwIfCancelled() {
        if (isCancelled()) {
            throw OrvantaException("", OVERR_USER_CANCELLED);
        }
    }

private:
    const orvanta_run& run_;
};

void throwIfRefused(const Params& params) {
    if (const auto refusal = valueEngineRefusal(params)) {
        throw *refusal;
    }
}

void planByValue(const Params& params, const orvanta_run& run, orvanta_result& result) {
    throwIfRefused(params);
    HostReporter reporter(run);
    const bool listens = run.progress != nullptr || run.cancelled != nullptr;
    OrvantaWorker::StageObserver observer;
    if (run.keep_stages != 0) {
        observer = [&](OV_PIPELINE_STAGE stage, const OV_DATA_STORE& store) {
            if (stage == OV_PIPELINE_ZONES) {
                keepZones(result, store);
            } else if (stage == OV_PIPELINE_OBJECTS) {
                keepObjects(result, store);
            } else if (stage == OV_PIPELINE_SLICES) {
                keepSlices(result.slices, result.sliceSpaces, store);
            } else if (stage == OV_PIPELINE_SHOTS) {
                keepSlices(result.shots, result.shotSpaces, store);
            }
        };
    }
    OV_DATA_STORE store;
    OrvantaWorker().runPipeline(params, listens ? &reporter : nullptr, store, observer);
    keepKeyframes(result, store, params.timeScale());
}

void planByVoting(const Params& params, const orvanta_run& run, orvanta_result& result) {
    // The engine itself would report each tick that anybody voted at, millions a second of recording on a fine clock,
    // and is done long before they are told.
    HostReporter reporter(run);
    reporter.throwIfCancelled();
    reporter.reportProgress(0.0);
    try {
        keepKeyframes(result, *OrvantaVotingAlgorithm().calcOrvantaKeyframes(params, nullptr), params.timeScale());
    } catch (const OrvantaException& refusal) {
        throw votingEngineRefusal(refusal.errorCode(), params);
    }
    reporter.throwIfCancelled();
    reporter.reportProgress(100.0);
}

// The director prints nothing, but its exceptions have a code only.
[[noreturn]] void throwDirectorsRefusal(const OrvantaException& refusal, const Params& params) {
    const auto known = valueEngineRefusal(params);
    if (known && known->code == refusal.errorCode()) {
        throw *known;
    }
    throw refusal;
}

void planByDirector(const orvanta_request& request, const orvanta_run& run, orvanta_result& result) {
    const Params& params = request.params;
    HostReporter reporter(run);
    HostReporter* const listener = run.progress != nullptr || run.cancelled != nullptr ? &reporter : nullptr;
    const OrvantaDirector director(request.director);
    try {
        if (run.keep_stages != 0) {
            result.directorShots = director.plan(params, listener).shots;
            std::vector<OV_TIME_RECT> keyframes;
            for (const DirectorShot& shot : result.directorShots) {
                keyframes.push_back(shot.keyframe);
                result.reasons.push_back(shot.text);
            }
            keepKeyframes(result, keyframes, params.timeScale());
        } else {
            keepKeyframes(result, *director.calcOrvantaKeyframes(params, listener), params.timeScale());
        }
    } catch (const OrvantaException& refusal) {
        throwDirectorsRefusal(refusal, params);
    }
}

} // namespace

std::int32_t orvanta_plan(const orvanta_request* request, const orvanta_run* run, orvanta_result** result,
                          orvanta_error* error) {
    return guarded(error, [&] {
        needPointer(result, "result");
        *result = nullptr;
        needPointer(request, "request");
        const orvanta_run how = run == nullptr ? orvanta_run{} : readRecord(*run);
        auto made = std::make_unique<orvanta_result>();
        if (request->engine == ORVANTA_ENGINE_VOTING) {
            planByVoting(request->params, how, *made);
        } else {
            try {
                if (request->engine == ORVANTA_ENGINE_DIRECTOR) {
                    planByDirector(*request, how, *made);
                } else {
                    planByValue(request->params, how, *made);
                }
            } catch (const OrvantaException& failure) {
                if (failure.errorCode() == OVERR_NO_KEYFRAMES) {
                    *result = made.release();
                }
                throw;
            }
        }
        *result = made.release();
    });
}

std::int32_t orvanta_frame_at(const orvanta_request* request, std::int64_t time, orvanta_rect* frame,
                              orvanta_error* error) {
    return guarded(error, [&] {
        needPointer(request, "request");
        needPointer(frame, "frame");
        const Params& params = request->params;
        if (request->engine == ORVANTA_ENGINE_VOTING) {
            try {
                *frame = toRect(OrvantaVotingAlgorithm().calcOrvantaKeyframeAtTime(params, time)->front().rect);
            } catch (const OrvantaException& refusal) {
                throw votingEngineRefusal(refusal.errorCode(), params);
            }
        } else if (request->engine == ORVANTA_ENGINE_DIRECTOR) {
            try {
                const OrvantaDirector director(request->director);
                *frame = toRect(director.calcOrvantaKeyframeAtTime(params, time)->front().rect);
            } catch (const OrvantaException& refusal) {
                throwDirectorsRefusal(refusal, params);
            }
        } else {
            throwIfRefused(params);
            *frame = toRect(OrvantaWorker().calcOrvantaKeyframeAtTime(params, time)->front().rect);
        }
    });
}

std::int32_t orvanta_frame_at_window(const orvanta_request* request, orvanta_rect* frame, orvanta_error* error) {
    return guarded(error, [&] {
        needPointer(request, "request");
        needPointer(frame, "frame");
        if (request->engine == ORVANTA_ENGINE_VOTING) {
            Failure failure{ORVANTA_NO_ANSWER,
                            ORVANTA_PARAMETER_ENGINE,
                            0.0,
                            0.0,
                            -1,
                            "the voting engine has no answer to the question for a window: ask the value engine"};
            failure.value = request->engine;
            throw failure;
        }
        try {
            *frame = toRect(OrvantaWorker().calcKeyframeAtWindow(request->params)->front().rect);
        } catch (const OrvantaException& refusal) {
            throw windowRefusal(refusal.errorCode(), request->params);
        }
    });
}

void orvanta_result_free(orvanta_result* result) { delete result; }

const char* orvanta_result_reason(const orvanta_result* result, std::size_t keyframe) {
    if (result == nullptr || keyframe >= result->keyframes.size()) {
        return "";
    }
    return keyframe < result->reasons.size() ? result->reasons[keyframe].c_str()
                                             : orvanta_mode_name(result->keyframes[keyframe].reason);
}

std::int32_t orvanta_result_table(const orvanta_result* result, std::int32_t id, orvanta_table* table,
                                  orvanta_error* error) {
    return guarded(error, [&] {
        needPointer(result, "result");
        needPointer(table, "table");
        switch (id) {
        case ORVANTA_TABLE_KEYFRAMES:
            *table = tableOf(result->keyframes);
            return;
        case ORVANTA_TABLE_ZONES:
            *table = tableOf(result->zones);
            return;
        case ORVANTA_TABLE_OBJECTS:
            *table = tableOf(result->objects);
            return;
        case ORVANTA_TABLE_SLICES:
            *table = tableOf(result->slices);
            return;
        case ORVANTA_TABLE_SLICE_SPACES:
            *table = tableOf(result->sliceSpaces);
            return;
        case ORVANTA_TABLE_SHOTS:
            *table = tableOf(result->shots);
            return;
        case ORVANTA_TABLE_SHOT_SPACES:
            *table = tableOf(result->shotSpaces);
            return;
        default:
            throw badArgument(ORVANTA_PARAMETER_TABLE, "there is no table of this number");
        }
    });
}
