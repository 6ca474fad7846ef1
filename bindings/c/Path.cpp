// The camera's path, for many moments in one call.
#include <cmath>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "bindings/c/Failure.h"
#include "bindings/c/Handles.h"
#include "bindings/c/Records.h"
#include "frame/Geometry.h"

namespace {

using namespace OrvantaNS;
using namespace OrvantaNS::c;

orvanta_easing toRecord(const CameraEasing& easing) { return {easing.x1(), easing.y1(), easing.x2(), easing.y2()}; }

CameraEasing toEasing(const orvanta_easing* easing) {
    if (easing == nullptr) {
        return {};
    }
    try {
        return {easing->x1, easing->y1, easing->x2, easing->y2};
    } catch (const std::invalid_argument& failure) {
        throw badArgument(ORVANTA_PARAMETER_EASING, failure.what());
    }
}

// Finds what the path would refuse, and says which field it is.
void checkSetup(const CameraSetup& setup) {
    if (setup.targetWidth <= 0 || setup.targetHeight <= 0) {
        const bool narrow = setup.targetWidth <= 0;
        throw badNumber(narrow ? ORVANTA_PARAMETER_TARGET_WIDTH : ORVANTA_PARAMETER_TARGET_HEIGHT,
                        narrow ? setup.targetWidth : setup.targetHeight, 1.0,
                        "the output frame has no size: set target_width and target_height");
    }
    if (!(setup.timeScale > 0.0) || !std::isfinite(setup.timeScale)) {
        throw badNumber(ORVANTA_PARAMETER_TIME_SCALE, setup.timeScale, 0.0, "a path needs a time scale above 0");
    }
    if (setup.fadeDuration < 0) {
        throw badNumber(ORVANTA_PARAMETER_FADE_DURATION, static_cast<double>(setup.fadeDuration), 0.0,
                        "a move cannot take less than no time");
    }
    if (isEmpty(setup.region)) {
        throw badArgument(ORVANTA_PARAMETER_REGIONS, "a path needs a first recording region that covers a pixel");
    }
}

orvanta_frame toRecord(const CameraFrame& frame) {
    return {frame.left, frame.top, frame.width, frame.height, frame.overhangs ? 1 : 0, 0};
}

std::vector<orvanta_move> movesOf(const CameraPath& path) {
    const double scale = path.setup().timeScale;
    std::vector<orvanta_move> rows;
    rows.reserve(path.moves().size());
    for (const CameraMove& move : path.moves()) {
        rows.push_back({move.start, move.stop, static_cast<double>(move.start) / scale,
                        static_cast<double>(move.stop) / scale, toRecord(move.from), toRecord(move.to),
                        static_cast<std::int64_t>(move.keyframe), move.cutShort ? 1 : 0, 0});
    }
    return rows;
}

} // namespace

std::int32_t orvanta_easing_named(const char* name, orvanta_easing* easing, orvanta_error* error) {
    return guarded(error, [&] {
        needPointer(name, "name");
        needPointer(easing, "easing");
        const auto found = CameraEasing::named(name);
        if (!found) {
            throw badArgument(ORVANTA_PARAMETER_EASING,
                              "there is no easing of this name: linear, ease-in-out, ease-out and smooth are known");
        }
        *easing = toRecord(*found);
    });
}

std::int32_t orvanta_path_create(const orvanta_request* request, const void* keyframes, std::size_t count,
                                 std::size_t stride, const orvanta_easing* easing, orvanta_path** path,
                                 orvanta_error* error) {
    return guarded(error, [&] {
        needPointer(path, "path");
        *path = nullptr;
        needPointer(request, "request");
        const CameraSetup setup = CameraSetup::of(request->params, toEasing(easing));
        checkSetup(setup);
        const StridedSamples<orvanta_timed_rect> rows(keyframes, count, stride, ORVANTA_PARAMETER_KEYFRAMES);
        std::vector<OV_TIME_RECT> frames;
        frames.reserve(rows.size());
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const orvanta_timed_rect row = rows[i];
            frames.push_back({row.time, toRectangle(row.rect)});
        }
        try {
            auto made = std::make_unique<orvanta_path>(orvanta_path{CameraPath(frames, setup), {}});
            made->moves = movesOf(made->path);
            *path = made.release();
        } catch (const std::invalid_argument& failure) {
            throw badArgument(ORVANTA_PARAMETER_KEYFRAMES, failure.what());
        }
    });
}

std::int32_t orvanta_path_frames_at_ticks(const orvanta_path* path, const std::int64_t* ticks, std::size_t count,
                                          orvanta_frame* frames, orvanta_error* error) {
    return guarded(error, [&] {
        needPointer(path, "path");
        if (count > 0) {
            needPointer(ticks, "ticks");
            needPointer(frames, "frames");
        }
        for (std::size_t i = 0; i < count; ++i) {
            frames[i] = toRecord(path->path.frameAt(ticks[i]));
        }
    });
}

std::int32_t orvanta_path_frames_at_seconds(const orvanta_path* path, const double* seconds, std::size_t count,
                                            orvanta_frame* frames, orvanta_error* error) {
    return guarded(error, [&] {
        needPointer(path, "path");
        if (count > 0) {
            needPointer(seconds, "seconds");
            needPointer(frames, "frames");
        }
        for (std::size_t i = 0; i < count; ++i) {
            if (std::isnan(seconds[i])) {
                Failure failure =
                    badArgument(ORVANTA_PARAMETER_TIMES, "moment " + std::to_string(i) + " is not a number");
                failure.index = static_cast<std::int64_t>(i);
                throw failure;
            }
        }
        for (std::size_t i = 0; i < count; ++i) {
            frames[i] = toRecord(path->path.frameAtSeconds(seconds[i]));
        }
    });
}

std::int32_t orvanta_path_moves(const orvanta_path* path, orvanta_table* table, orvanta_error* error) {
    return guarded(error, [&] {
        needPointer(path, "path");
        needPointer(table, "table");
        *table = tableOf(path->moves);
    });
}

void orvanta_path_free(orvanta_path* path) { delete path; }
