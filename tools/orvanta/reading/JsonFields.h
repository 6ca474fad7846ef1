// Small JSON files, read field by field: each fault is told with the file and the place in it.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "Rectangle.h"
#include "reading/LineReader.h"

namespace OrvantaNS::command {

/// Largest JSON file that is read whole, bytes: a path of a hundred thousand keyframes has some 20 million.
constexpr std::size_t kMaxJsonBytes = std::size_t{64} << 20;

/// The document in a file, or on the standard input when `path` is "-"; nothing but white space gives a null. Throws
/// `InputError`, with line and column of a slip in the grammar, and `Interrupted`.
nlohmann::json readJsonFile(const std::string& path);
/// The same from a source; `name` stands for it in messages.
nlohmann::json readJson(const ByteSource& source, const std::string& name);

/// An object within a document. It refers to the document, which must outlive it.
class JsonFields {
public:
    /// Throws `InputError` when `value` is no object. `file` and `place` (such as "keyframes[3]", empty for the whole) are
    /// for messages.
    JsonFields(const nlohmann::json& value, std::string file, std::string place = {});

    /// True when the field is there and not null.
    bool has(std::string_view name) const;

    // Each throws `InputError` when the field is missing, of another type or out of range.
    long long integer(std::string_view name, long long lowest, long long highest) const;
    long long integer(std::string_view name) const;
    std::int32_t pixels(std::string_view name) const;
    /// The rectangle that `left`, `top`, `width` and `height` tell; its far corner has to be a number of 32 bits too.
    Rectangle rectangle() const;
    double number(std::string_view name) const;
    std::string text(std::string_view name) const;
    bool isText(std::string_view name) const;
    JsonFields object(std::string_view name) const;
    /// The objects of a list; none when the field is missing.
    std::vector<JsonFields> objects(std::string_view name) const;

    /// Throws `InputError` when there is a field of another name.
    void refuseOthers(std::initializer_list<std::string_view> known) const;

    /// Throws an `InputError` about a field, or about the object when `name` is empty.
    [[noreturn]] void fail(std::string_view name, const std::string& reason) const;

private:
    const nlohmann::json& field(std::string_view name) const;
    std::string placeOf(std::string_view name) const;

    const nlohmann::json* value_;
    std::string file_;
    std::string place_;
};

} // namespace OrvantaNS::command
