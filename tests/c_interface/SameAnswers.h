// The C interface gives what the C++ libraries give, to the last bit.
#pragma once

#include <bit>
#include <cstdint>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "CRequest.h"
#include "OrvantaException.h"
#include "OrvantaVotingAlgorithm.h"
#include "OrvantaWorker.h"
#include "frame/DataStore.h"

namespace OrvantaNS::testing {

inline std::string text(const orvanta_rect& r) {
    std::ostringstream out;
    out << ' ' << r.left << ' ' << r.top << ' ' << r.right << ' ' << r.bottom;
    return out.str();
}
inline std::string text(const Rectangle& r) { return text(orvanta_rect{r.left, r.top, r.right, r.bottom}); }
/// A double as its bits: nothing is lost, and 0 and -0 differ.
inline std::string bits(double value) { return ' ' + std::to_string(std::bit_cast<std::uint64_t>(value)); }

/// All of a computation as text: the tables of the C interface.
inline std::string answerInC(const Params& params, std::int32_t engine) {
    const RequestHandle request = requestOf(params, engine);
    orvanta_run run{};
    run.struct_size = sizeof run;
    run.keep_stages = 1;
    orvanta_result* made = nullptr;
    const std::int32_t code = orvanta_plan(request.get(), &run, &made, nullptr);
    const ResultHandle result(made);
    std::string all;
    if (result != nullptr) {
        for (const auto& row : rowsOf<orvanta_zone>(result, ORVANTA_TABLE_ZONES)) {
            all += "zone" + bits(row.start) + bits(row.stop) + text(row.rect) + '\n';
        }
        for (const auto& row : rowsOf<orvanta_object>(result, ORVANTA_TABLE_OBJECTS)) {
            all += "object " + std::to_string(row.type) + bits(row.start) + bits(row.stop) + bits(row.value) +
                   text(row.rect) + '\n';
        }
        const auto slices = [&](std::int32_t table, std::int32_t spaceTable) {
            const auto spaces = rowsOf<orvanta_space>(result, spaceTable);
            for (const auto& row : rowsOf<orvanta_slice>(result, table)) {
                all += "slice " + std::to_string(row.revision) + ' ' + std::to_string(row.mode) + bits(row.start) +
                       bits(row.stop) + bits(row.span) + text(row.window_rect) + text(row.hot_rect) + ' ' +
                       std::to_string(row.flags);
                for (std::size_t i = row.first_space; i < row.first_space + row.space_count; ++i) {
                    all += " [" + text(spaces.at(i).rect) + bits(spaces.at(i).density) + ']';
                }
                all += '\n';
            }
        };
        slices(ORVANTA_TABLE_SLICES, ORVANTA_TABLE_SLICE_SPACES);
        slices(ORVANTA_TABLE_SHOTS, ORVANTA_TABLE_SHOT_SPACES);
        for (const auto& row : rowsOf<orvanta_keyframe>(result, ORVANTA_TABLE_KEYFRAMES)) {
            all += "keyframe " + std::to_string(row.time) + text(row.rect) + ' ' + std::to_string(row.shot) + ' ' +
                   std::to_string(row.shot_mode) + '\n';
        }
    }
    return all + "code " + std::to_string(code) + '\n';
}

/// The same text from the records of the C++ library.
inline std::string answerInCpp(const Params& params, std::int32_t engine) {
    std::string all;
    std::int32_t code = ORVANTA_OK;
    const auto slices = [&](const OV_DATA_STORE& store) {
        for (const OV_FOCUS_SLICE& slice : store.slices) {
            const SLICE_BREAKDOWN& b = slice.breakdown;
            const int flags = (slice.blank ? 1 : 0) + (slice.keyframe ? 2 : 0) + (slice.blocked ? 4 : 0) +
                              (b.identified ? 8 : 0) + (b.tight ? 16 : 0) + (b.inWindow ? 32 : 0) +
                              (b.window ? 64 : 0) + (b.noWindow ? 128 : 0);
            all += "slice " + std::to_string(slice.mergeId) + ' ' + std::to_string(slice.mergeType) +
                   bits(slice.start) + bits(slice.stop) + bits(slice.map.span) + text(b.windowRect) +
                   text(b.tier4Rect) + ' ' + std::to_string(flags);
            for (const auto& [rect, density] : slice.map.spaces) {
                all += " [" + text(rect) + bits(density) + ']';
            }
            all += '\n';
        }
    };
    try {
        if (engine == ORVANTA_ENGINE_VOTING) {
            const auto frames = OrvantaVotingAlgorithm().calcOrvantaKeyframes(params, nullptr);
            for (const OV_TIME_RECT& frame : *frames) {
                all += "keyframe " + std::to_string(frame.time) + text(frame.rect) + " -1 0\n";
            }
        } else {
            OV_DATA_STORE store;
            OrvantaWorker().runPipeline(params, nullptr, store, [&](OV_PIPELINE_STAGE stage, const OV_DATA_STORE& now) {
                if (stage == OV_PIPELINE_ZONES) {
                    for (const OV_LIVE_ZONE& zone : now.liveZones) {
                        all += "zone" + bits(zone.start) + bits(zone.stop) + text(zone.rect) + '\n';
                    }
                } else if (stage == OV_PIPELINE_OBJECTS) {
                    for (const OV_VALUE_OBJECT& object : now.valueObjects) {
                        all += "object " + std::to_string(object.type) + bits(object.start) + bits(object.stop) +
                               bits(object.value) + text(object.rect) + '\n';
                    }
                } else if (stage == OV_PIPELINE_SLICES || stage == OV_PIPELINE_SHOTS) {
                    slices(now);
                }
            });
            for (std::size_t i = 0; i < store.keyframes.size(); ++i) {
                const std::uint32_t shot = store.keyframeSlices[i];
                all += "keyframe " + std::to_string(store.keyframes[i].time) + text(store.keyframes[i].rect) + ' ' +
                       std::to_string(shot) + ' ' + std::to_string(store.slices[shot].mergeType) + '\n';
            }
        }
    } catch (const OrvantaException& failure) {
        code = failure.errorCode();
    }
    return all + "code " + std::to_string(code) + '\n';
}

/// The frame of a moment or window in C: the code, and the frame where there is one.
template <typename Ask> std::string frameInC(const Ask& ask) {
    orvanta_rect frame{-1, -1, -1, -1};
    const std::int32_t code = ask(&frame);
    return std::to_string(code) + (code == ORVANTA_OK ? text(frame) : std::string());
}

template <typename Ask> std::string frameInCpp(const Ask& ask) {
    try {
        return "0" + text(ask()->front().rect);
    } catch (const OrvantaException& failure) {
        return std::to_string(failure.errorCode());
    }
}

/// Compares the answers to all questions that both sides have.
inline void expectSameAnswers(const Params& params) {
    for (const std::int32_t engine : {ORVANTA_ENGINE_VALUE, ORVANTA_ENGINE_VOTING}) {
        EXPECT_EQ(answerInC(params, engine), answerInCpp(params, engine));
    }
    const RequestHandle value = requestOf(params, ORVANTA_ENGINE_VALUE);
    const RequestHandle voting = requestOf(params, ORVANTA_ENGINE_VOTING);
    for (int eighth = 0; eighth <= 8; eighth += 2) {
        const long long time = params.clipStart() + (params.clipStop() - params.clipStart()) / 8 * eighth;
        EXPECT_EQ(frameInC([&](orvanta_rect* frame) { return orvanta_frame_at(value.get(), time, frame, nullptr); }),
                  frameInCpp([&] { return OrvantaWorker().calcOrvantaKeyframeAtTime(params, time); }));
        EXPECT_EQ(frameInC([&](orvanta_rect* frame) { return orvanta_frame_at(voting.get(), time, frame, nullptr); }),
                  frameInCpp([&] { return OrvantaVotingAlgorithm().calcOrvantaKeyframeAtTime(params, time); }));
    }
    EXPECT_EQ(frameInC([&](orvanta_rect* frame) { return orvanta_frame_at_window(value.get(), frame, nullptr); }),
              frameInCpp([&] { return OrvantaWorker().calcKeyframeAtWindow(params); }));
}

} // namespace OrvantaNS::testing
