#include "reading/ScoreInput.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "reading/CsvTable.h"
#include "reading/InputError.h"
#include "terminal/TextFormat.h"

namespace OrvantaNS::command {

namespace {

using camera::JudgedKeyframe;
using camera::Moment;
using camera::MomentView;

JudgedKeyframe keyframeOf(double seconds, double left, double top, double width, double height) {
    return {seconds, {left, top, left + width, top + height}};
}

std::vector<JudgedKeyframe> pathOfCsv(std::string_view text, const std::string& name) {
    const CsvTable table(text, name);
    const std::size_t seconds = table.column("seconds");
    const std::size_t left = table.column("left");
    const std::size_t top = table.column("top");
    const std::size_t width = table.column("width");
    const std::size_t height = table.column("height");
    std::vector<JudgedKeyframe> keyframes;
    for (const CsvRow& row : table.rows()) {
        const double at = table.number(row, seconds);
        const double x = table.number(row, left);
        const double y = table.number(row, top);
        const double wide = table.number(row, width);
        const double high = table.number(row, height);
        keyframes.push_back(keyframeOf(at, x, y, wide, high));
        if (camera::isEmpty(keyframes.back().frame)) {
            table.fail(row, "the frame covers nothing");
        }
    }
    return keyframes;
}

std::vector<JudgedKeyframe> pathOfJson(std::string_view text, const std::string& name) {
    const nlohmann::json document = nlohmann::json::parse(text, nullptr, false);
    if (document.is_discarded()) {
        throw InputError(fmt::format("{}: no valid JSON", name));
    }
    const auto list = document.find("keyframes");
    if (list == document.end() || !list->is_array()) {
        throw InputError(fmt::format("{}: has no list \"keyframes\"", name));
    }
    std::vector<JudgedKeyframe> keyframes;
    for (const nlohmann::json& entry : *list) {
        const auto number = [&](const char* field) {
            const auto value = entry.is_object() ? entry.find(field) : entry.end();
            if (!entry.is_object() || value == entry.end() || !value->is_number()) {
                throw InputError(
                    fmt::format("{}: keyframe {} has no number \"{}\"", name, keyframes.size() + 1, field));
            }
            return value->get<double>();
        };
        // One by one: the order in which arguments are worked out is the compiler's.
        const double seconds = number("seconds");
        const double left = number("left");
        const double top = number("top");
        const double width = number("width");
        const double height = number("height");
        keyframes.push_back(keyframeOf(seconds, left, top, width, height));
        if (camera::isEmpty(keyframes.back().frame)) {
            throw InputError(fmt::format("{}: the frame of keyframe {} covers nothing", name, keyframes.size()));
        }
    }
    return keyframes;
}

} // namespace

std::vector<Moment> parseMoments(std::string_view text, const std::string& name, const Rectangle& region) {
    const CsvTable table(text, name);
    const std::size_t from = table.column("from");
    const std::size_t to = table.column("to");
    const std::size_t edges[4] = {table.column("left"), table.column("top"), table.column("right"),
                                  table.column("bottom")};
    const std::size_t view = table.column("view");
    const auto what = table.find("what");
    std::vector<Moment> moments;
    for (const CsvRow& row : table.rows()) {
        Moment moment;
        moment.from = table.number(row, from);
        moment.to = table.number(row, to);
        moment.rect = {table.number(row, edges[0]) - region.left, table.number(row, edges[1]) - region.top,
                       table.number(row, edges[2]) - region.left, table.number(row, edges[3]) - region.top};
        const std::string& kind = row.fields[view];
        if (kind != "close" && kind != "window" && kind != "wide") {
            table.fail(row, fmt::format("view: expected close, window or wide, not \"{}\"", printable(kind)));
        }
        moment.view = kind == "close" ? MomentView::Close : kind == "window" ? MomentView::Window : MomentView::Wide;
        if (what) {
            moment.what = row.fields[*what];
        }
        // Longer than a day is no moment, and every look at it takes time.
        if (!(moment.to > moment.from) || moment.to - moment.from > 86400.0) {
            table.fail(row, "the moment ends before it begins, or lasts longer than a day");
        }
        if (camera::isEmpty(moment.rect)) {
            table.fail(row, "the rectangle covers nothing");
        }
        moments.push_back(std::move(moment));
    }
    return moments;
}

std::vector<JudgedKeyframe> parsePath(std::string_view text, const std::string& name) {
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    const bool isJson = first != std::string_view::npos && text[first] == '{';
    std::vector<JudgedKeyframe> keyframes = isJson ? pathOfJson(text, name) : pathOfCsv(text, name);
    std::stable_sort(keyframes.begin(), keyframes.end(),
                     [](const JudgedKeyframe& a, const JudgedKeyframe& b) { return a.seconds < b.seconds; });
    return keyframes;
}

} // namespace OrvantaNS::command
