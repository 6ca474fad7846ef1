// CSV files with a line of names.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace OrvantaNS::command {

/// One record: its fields in the order of the names, and the line on which it ends.
struct CsvRow {
    long long line = 0;
    std::vector<std::string> fields;
};

/// A whole table. Quoted fields may hold commas, quotes and line ends.
class CsvTable {
public:
    /// `name` stands for the file in messages. Throws `InputError` for text that is no CSV, and for a record with more or
    /// fewer fields than names.
    CsvTable(std::string_view text, std::string name);

    const std::vector<CsvRow>& rows() const { return rows_; }
    /// Where a column stands; nothing when the table lacks it.
    std::optional<std::size_t> find(std::string_view column) const;
    /// The same, and throws `InputError` without it.
    std::size_t column(std::string_view column) const;
    /// The number in a field. Throws `InputError` when it is none, or not finite.
    double number(const CsvRow& row, std::size_t column) const;
    [[noreturn]] void fail(const CsvRow& row, const std::string& reason) const;

private:
    std::string name_;
    std::vector<std::string> names_;
    std::vector<CsvRow> rows_;
};

/// The whole content of a file, or of the standard input for "-", up to 64 megabytes. Throws `InputError`.
std::string readWhole(const std::string& path, const std::string& name);

} // namespace OrvantaNS::command
