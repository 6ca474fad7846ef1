#include "reading/CsvTable.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include <csv.h>
#include <fmt/format.h>

#include "reading/InputError.h"
#include "reading/InputFile.h"
#include "terminal/TextFormat.h"

namespace OrvantaNS::command {

namespace {

// A table of a million moments has fewer bytes; what has more is no table that somebody wrote.
constexpr std::size_t kMostBytes = std::size_t{64} << 20;

/// What the parser's callbacks fill.
struct TableParse {
    std::vector<CsvRow> rows;
    std::vector<std::string> fields;
    long long line = 1;
};

void endField(void* bytes, std::size_t size, void* context) {
    auto& parse = *static_cast<TableParse*>(context);
    std::string field = bytes == nullptr ? std::string() : std::string(static_cast<const char*>(bytes), size);
    parse.fields.push_back(std::move(field));
}

void endRow(int, void* context) {
    auto& parse = *static_cast<TableParse*>(context);
    parse.rows.push_back({parse.line, std::exchange(parse.fields, {})});
}

} // namespace

CsvTable::CsvTable(std::string_view text, std::string name) : name_(std::move(name)) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(kByteOrderMark)) {
        text.remove_prefix(kByteOrderMark.size());
    }
    csv_parser parser;
    if (csv_init(&parser, CSV_STRICT | CSV_STRICT_FINI) != 0) {
        throw InputError(fmt::format("{}: cannot be read as CSV", name_));
    }
    TableParse parse;
    // Line by line, so that every record knows the line on which it ends, whatever the line ends are.
    bool isRead = true;
    while (isRead && !text.empty()) {
        const std::string_view line = text.substr(0, std::min(text.find('\n'), text.size() - 1) + 1);
        isRead = csv_parse(&parser, line.data(), line.size(), endField, endRow, &parse) == line.size();
        text.remove_prefix(line.size());
        parse.line += isRead && !text.empty() ? 1 : 0;
    }
    isRead = isRead && csv_fini(&parser, endField, endRow, &parse) == 0;
    csv_free(&parser);
    if (!isRead) {
        throw InputError(
            fmt::format("{}:{}: no CSV: a quote stands where none may, or is never closed", name_, parse.line));
    }
    if (parse.rows.empty()) {
        throw InputError(fmt::format("{}: is empty; expected a line of column names", name_));
    }
    names_ = std::move(parse.rows.front().fields);
    parse.rows.erase(parse.rows.begin());
    rows_ = std::move(parse.rows);
    for (const CsvRow& row : rows_) {
        if (row.fields.size() != names_.size()) {
            fail(row, fmt::format("has {} fields; the first line names {}", row.fields.size(), names_.size()));
        }
    }
}

std::optional<std::size_t> CsvTable::find(std::string_view column) const {
    const auto found = std::find(names_.begin(), names_.end(), column);
    return found == names_.end() ? std::nullopt : std::optional(static_cast<std::size_t>(found - names_.begin()));
}

std::size_t CsvTable::column(std::string_view column) const {
    const auto found = find(column);
    if (!found) {
        throw InputError(fmt::format("{}:1: has no column \"{}\"", name_, column));
    }
    return *found;
}

double CsvTable::number(const CsvRow& row, std::size_t column) const {
    const std::string& field = row.fields[column];
    double value = 0.0;
    const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), value);
    if (error != std::errc() || end != field.data() + field.size() || !std::isfinite(value)) {
        fail(row, fmt::format("{}: expected a number, not \"{}\"", names_[column], printable(field)));
    }
    return value;
}

void CsvTable::fail(const CsvRow& row, const std::string& reason) const {
    throw InputError(fmt::format("{}:{}: {}", name_, row.line, reason));
}

std::string readWhole(const std::string& path, const std::string& name) {
    const ByteSource source = openInput(path, name);
    std::string text;
    for (;;) {
        constexpr std::size_t kBlock = std::size_t{1} << 16;
        const std::size_t before = text.size();
        text.resize(before + kBlock);
        const std::size_t count = source(text.data() + before, kBlock);
        text.resize(before + count);
        if (count == 0) {
            return text;
        }
        if (text.size() > kMostBytes) {
            throw InputError(fmt::format("{}: is larger than {} megabytes", name, kMostBytes >> 20));
        }
    }
}

} // namespace OrvantaNS::command
