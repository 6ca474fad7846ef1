// Requests: their options and their streams.
#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "bindings/c/Failure.h"
#include "bindings/c/Handles.h"
#include "bindings/c/Records.h"

namespace {

using namespace OrvantaNS;
using namespace OrvantaNS::c;

// Ticks per second unless the host says otherwise: the clock that most recorders have.
constexpr double kDefaultTimeScale = 1000000.0;
constexpr std::int64_t kDefaultFade = 1000000;

static_assert(sizeof(long long) == sizeof(std::int64_t));

DirectorControls directorControls(const orvanta_options& options) {
    if (!(options.calm > 0.0) || std::isinf(options.calm)) {
        throw badNumber(ORVANTA_PARAMETER_CALM, options.calm, 0.0, "calm must be above 0; 1 is usual");
    }
    if (!(options.readable > 0.0 && options.readable <= 1.0)) {
        throw badNumber(ORVANTA_PARAMETER_READABLE, options.readable, 1.0, "readable must be above 0 and at most 1");
    }
    if (options.presses != ORVANTA_PRESSES_ALWAYS && options.presses != ORVANTA_PRESSES_CHEAP) {
        throw badNumber(ORVANTA_PARAMETER_PRESSES, options.presses, ORVANTA_PRESSES_CHEAP,
                        "presses is neither always nor cheap");
    }
    return {options.calm, options.readable,
            options.presses == ORVANTA_PRESSES_CHEAP ? DirectorPresses::Cheap : DirectorPresses::Always,
            options.overhang != 0};
}

// Sizes, time scale and clip are for the engines to judge.
void applyOptions(orvanta_request& request, const orvanta_options* given) {
    needPointer(given, "options");
    const orvanta_options options = readRecord(*given);
    if (options.engine < ORVANTA_ENGINE_VALUE || options.engine > ORVANTA_ENGINE_DIRECTOR) {
        Failure failure = badArgument(ORVANTA_PARAMETER_ENGINE, "there is no engine of this number");
        failure.value = options.engine;
        throw failure;
    }
    const DirectorControls director = directorControls(options);
    request.engine = options.engine;
    request.director = director;
    request.params.setTargetWidth(options.target_width)
        .setTargetHeight(options.target_height)
        .setTimeScale(options.time_scale)
        .setFadeDuration(options.fade_duration)
        .setClipInterval(options.clip_start, options.clip_stop)
        .setWindowsFlag(options.windows_flag != 0);
}

OV_TIME_RECT toRecord(const orvanta_timed_rect& sample) { return {sample.time, toRectangle(sample.rect)}; }
OV_MOUSE_LOCATION toRecord(const orvanta_cursor_sample& sample) { return {sample.time, sample.x, sample.y}; }
OV_MOUSE_ACTION toRecord(const orvanta_action_sample& sample) { return {sample.time, sample.action}; }

// Replaces a stream, or leaves it as it is and throws.
template <typename Sample, typename Record>
void replaceStream(std::vector<Record>& stream, const void* samples, std::size_t count, std::size_t stride,
                   std::int32_t parameter) {
    const StridedSamples<Sample> given(samples, count, stride, parameter);
    std::vector<Record> records;
    records.reserve(given.size());
    for (std::size_t i = 0; i < given.size(); ++i) {
        const Record record = toRecord(given[i]);
        if (!records.empty() && record.time < records.back().time) {
            throw Failure{ORVANTA_NOT_SORTED,
                          parameter,
                          static_cast<double>(record.time),
                          static_cast<double>(records.back().time),
                          static_cast<std::int64_t>(i),
                          "sample " + std::to_string(i) +
                              " of a stream is earlier than the one before it: sort by time"};
        }
        records.push_back(record);
    }
    stream = std::move(records);
}

template <typename Sample, typename Choose>
std::int32_t setStream(orvanta_request* request, const Choose& choose, const void* samples, std::size_t count,
                       std::size_t stride, std::int32_t parameter, orvanta_error* error) {
    return guarded(error, [&] {
        needPointer(request, "request");
        replaceStream<Sample>(choose(request->params), samples, count, stride, parameter);
    });
}

} // namespace

std::int32_t orvanta_options_init(orvanta_options* options, std::size_t size) {
    if (options == nullptr || size < sizeof(orvanta_options)) {
        return ORVANTA_BAD_ARGUMENT;
    }
    // A host of a later version knows fields that this library does not: they stay at zero.
    std::memset(static_cast<void*>(options), 0, size);
    options->struct_size = static_cast<std::uint32_t>(size);
    options->engine = ORVANTA_ENGINE_VALUE;
    options->time_scale = kDefaultTimeScale;
    options->fade_duration = kDefaultFade;
    const DirectorControls director;
    options->calm = director.calm;
    options->readable = director.readable;
    return ORVANTA_OK;
}

std::int32_t orvanta_request_create(const orvanta_options* options, orvanta_request** request, orvanta_error* error) {
    return guarded(error, [&] {
        needPointer(request, "request");
        *request = nullptr;
        auto made = std::make_unique<orvanta_request>();
        applyOptions(*made, options);
        *request = made.release();
    });
}

std::int32_t orvanta_request_set_options(orvanta_request* request, const orvanta_options* options,
                                         orvanta_error* error) {
    return guarded(error, [&] {
        needPointer(request, "request");
        applyOptions(*request, options);
    });
}

void orvanta_request_free(orvanta_request* request) { delete request; }

std::int32_t orvanta_request_set_regions(orvanta_request* request, const void* samples, std::size_t count,
                                         std::size_t stride, orvanta_error* error) {
    return setStream<orvanta_timed_rect>(
        request, [](Params & params) -> auto& { return params.recordingRegions(); }, samples, count, stride,
        ORVANTA_PARAMETER_REGIONS, error);
}

std::int32_t orvanta_request_set_windows(orvanta_request* request, const void* samples, std::size_t count,
                                         std::size_t stride, orvanta_error* error) {
    return setStream<orvanta_timed_rect>(
        request, [](Params & params) -> auto& { return params.foreWindows(); }, samples, count, stride,
        ORVANTA_PARAMETER_WINDOWS, error);
}

std::int32_t orvanta_request_set_dirty_rects(orvanta_request* request, const void* samples, std::size_t count,
                                             std::size_t stride, orvanta_error* error) {
    return setStream<orvanta_timed_rect>(
        request, [](Params & params) -> auto& { return params.dirtyRects(); }, samples, count, stride,
        ORVANTA_PARAMETER_DIRTY_RECTS, error);
}

std::int32_t orvanta_request_set_carets(orvanta_request* request, const void* samples, std::size_t count,
                                        std::size_t stride, orvanta_error* error) {
    return setStream<orvanta_timed_rect>(
        request, [](Params & params) -> auto& { return params.caretRects(); }, samples, count, stride,
        ORVANTA_PARAMETER_CARETS, error);
}

std::int32_t orvanta_request_set_cursor(orvanta_request* request, const void* samples, std::size_t count,
                                        std::size_t stride, orvanta_error* error) {
    return setStream<orvanta_cursor_sample>(
        request, [](Params & params) -> auto& { return params.cursorLocations(); }, samples, count, stride,
        ORVANTA_PARAMETER_CURSOR, error);
}

std::int32_t orvanta_request_set_actions(orvanta_request* request, const void* samples, std::size_t count,
                                         std::size_t stride, orvanta_error* error) {
    return setStream<orvanta_action_sample>(
        request, [](Params & params) -> auto& { return params.cursorActions(); }, samples, count, stride,
        ORVANTA_PARAMETER_ACTIONS, error);
}
