// A request of the C++ library handed over to the C interface, and the two sides' answers as values to compare.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Params.h"
#include "orvanta_c.h"

namespace OrvantaNS::testing {

struct HandleDeleter {
    void operator()(orvanta_request* handle) const { orvanta_request_free(handle); }
    void operator()(orvanta_result* handle) const { orvanta_result_free(handle); }
    void operator()(orvanta_path* handle) const { orvanta_path_free(handle); }
};
using RequestHandle = std::unique_ptr<orvanta_request, HandleDeleter>;
using ResultHandle = std::unique_ptr<orvanta_result, HandleDeleter>;
using PathHandle = std::unique_ptr<orvanta_path, HandleDeleter>;

inline orvanta_error emptyError() {
    orvanta_error error{};
    error.struct_size = sizeof error;
    error.code = -1;
    return error;
}

inline orvanta_options optionsOf(const Params& params, std::int32_t engine) {
    orvanta_options options;
    orvanta_options_init(&options, sizeof options);
    options.engine = engine;
    options.target_width = params.targetWidth();
    options.target_height = params.targetHeight();
    options.time_scale = params.timeScale();
    options.fade_duration = params.fadeDuration();
    options.clip_start = params.clipStart();
    options.clip_stop = params.clipStop();
    options.windows_flag = params.isWindows() ? 1 : 0;
    return options;
}

inline std::vector<orvanta_timed_rect> samplesOf(const std::vector<OV_TIME_RECT>& stream) {
    std::vector<orvanta_timed_rect> samples;
    for (const OV_TIME_RECT& entry : stream) {
        samples.push_back({entry.time, {entry.rect.left, entry.rect.top, entry.rect.right, entry.rect.bottom}});
    }
    return samples;
}

/// The request with all its streams; the code of the first call that refuses one is left in `code`.
inline RequestHandle requestOf(const Params& params, std::int32_t engine, std::int32_t* code = nullptr) {
    const orvanta_options options = optionsOf(params, engine);
    orvanta_request* made = nullptr;
    std::int32_t first = orvanta_request_create(&options, &made, nullptr);
    RequestHandle request(made);
    const auto set = [&](auto* setter, const auto& samples) {
        const std::int32_t came = setter(request.get(), samples.data(), samples.size(), 0, nullptr);
        first = first == ORVANTA_OK ? came : first;
    };
    set(orvanta_request_set_regions, samplesOf(params.recordingRegions()));
    set(orvanta_request_set_windows, samplesOf(params.foreWindows()));
    set(orvanta_request_set_dirty_rects, samplesOf(params.dirtyRects()));
    set(orvanta_request_set_carets, samplesOf(params.caretRects()));
    std::vector<orvanta_cursor_sample> cursor;
    for (const OV_MOUSE_LOCATION& at : params.cursorLocations()) {
        cursor.push_back({at.time, at.x, at.y});
    }
    set(orvanta_request_set_cursor, cursor);
    std::vector<orvanta_action_sample> actions;
    for (const OV_MOUSE_ACTION& action : params.cursorActions()) {
        actions.push_back({action.time, action.action, 0});
    }
    set(orvanta_request_set_actions, actions);
    if (code != nullptr) {
        *code = first;
    }
    return request;
}

/// The rows of one table.
template <typename Row> std::vector<Row> rowsOf(const orvanta_table& table) {
    std::vector<Row> rows;
    for (std::size_t i = 0; i < table.count; ++i) {
        rows.push_back(*ORVANTA_ROW(Row, table, i));
    }
    return rows;
}

template <typename Row> std::vector<Row> rowsOf(const ResultHandle& result, std::int32_t id) {
    orvanta_table table{};
    orvanta_result_table(result.get(), id, &table, nullptr);
    return rowsOf<Row>(table);
}

inline std::vector<orvanta_move> movesOf(const PathHandle& path) {
    orvanta_table table{};
    orvanta_path_moves(path.get(), &table, nullptr);
    return rowsOf<orvanta_move>(table);
}

} // namespace OrvantaNS::testing
