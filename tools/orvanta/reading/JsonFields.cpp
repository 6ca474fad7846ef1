#include "reading/JsonFields.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>

#include <fmt/format.h>

#include "reading/InputError.h"
#include "reading/InputFile.h"
#include "terminal/TextFormat.h"

namespace OrvantaNS::command {

namespace {

using nlohmann::json;

constexpr std::size_t kLongestExcerpt = 60;

std::string readAll(const ByteSource& source, const std::string& name) {
    constexpr std::size_t kBlock = 65536;
    std::string text;
    std::array<char, kBlock> block{};
    while (const std::size_t count = source(block.data(), block.size())) {
        if (text.size() + count > kMaxJsonBytes) {
            throw InputError(
                fmt::format("{}: longer than {} megabytes, so hardly what it is taken for", name, kMaxJsonBytes >> 20));
        }
        text.append(block.data(), count);
    }
    return text;
}

bool isBlank(std::string_view text) { return text.find_first_not_of(" \t\r\n") == std::string_view::npos; }

std::string whereIn(std::string_view text, std::size_t byte) {
    // The parser counts the byte at fault from 1, and the end of the text as one more.
    const std::string_view before = text.substr(0, std::min(byte == 0 ? 0 : byte - 1, text.size()));
    const auto line = 1 + std::count(before.begin(), before.end(), '\n');
    const std::size_t lineStart = before.rfind('\n') == std::string_view::npos ? 0 : before.rfind('\n') + 1;
    return fmt::format("{}:{}", line, before.size() - lineStart + 1);
}

/// "an object", "text" and so on.
std::string_view kindOf(const json& value) {
    switch (value.type()) {
    case json::value_t::object:
        return "an object";
    case json::value_t::array:
        return "a list";
    case json::value_t::string:
        return "text";
    case json::value_t::boolean:
        return "true or false";
    case json::value_t::null:
        return "null";
    default:
        return "a number";
    }
}

} // namespace

json readJson(const ByteSource& source, const std::string& name) {
    std::string text = readAll(source, name);
    if (text.starts_with("\xEF\xBB\xBF")) {
        text.erase(0, 3); // A byte order mark, as some editors write it.
    }
    if (isBlank(text)) {
        return {};
    }
    try {
        return json::parse(text);
    } catch (const json::parse_error& error) {
        throw InputError(fmt::format("{}:{}: this is not JSON", name, whereIn(text, error.byte)));
    } catch (const json::out_of_range&) {
        throw InputError(fmt::format("{}: holds a number that is too large", name));
    }
}

json readJsonFile(const std::string& path) {
    const std::string name = path == "-" ? "standard input" : printable(path, std::string::npos);
    return readJson(openInput(path, name), name);
}

JsonFields::JsonFields(const json& value, std::string file, std::string place)
    : value_(&value), file_(std::move(file)), place_(std::move(place)) {
    if (!value.is_object()) {
        fail({}, fmt::format("expected an object, found {}", kindOf(value)));
    }
}

bool JsonFields::has(std::string_view name) const {
    const auto found = value_->find(name);
    return found != value_->end() && !found->is_null();
}

long long JsonFields::integer(std::string_view name, long long lowest, long long highest) const {
    const json& value = field(name);
    // A whole number that a program wrote as 12.0 or 1e6 is one too.
    constexpr double kBeyond = 9223372036854775808.0; // 2^63
    long long number = 0;
    if (value.is_number_unsigned()) {
        const auto big = value.get<std::uint64_t>();
        if (big > static_cast<std::uint64_t>(highest < 0 ? 0 : highest)) {
            fail(name, fmt::format("{} is not between {} and {}", big, lowest, highest));
        }
        number = static_cast<long long>(big);
    } else if (value.is_number_integer()) {
        number = value.get<std::int64_t>();
    } else if (value.is_number_float() && std::floor(value.get<double>()) == value.get<double>() &&
               std::fabs(value.get<double>()) < kBeyond) {
        number = static_cast<long long>(value.get<double>());
    } else {
        fail(name, fmt::format("expected a whole number, found {}",
                               value.is_number() ? printable(value.dump(), kLongestExcerpt) : kindOf(value)));
    }
    if (number < lowest || number > highest) {
        fail(name, fmt::format("{} is not between {} and {}", number, lowest, highest));
    }
    return number;
}

long long JsonFields::integer(std::string_view name) const {
    return integer(name, std::numeric_limits<long long>::lowest(), std::numeric_limits<long long>::max());
}

std::int32_t JsonFields::pixels(std::string_view name) const {
    return static_cast<std::int32_t>(
        integer(name, std::numeric_limits<std::int32_t>::lowest(), std::numeric_limits<std::int32_t>::max()));
}

Rectangle JsonFields::rectangle() const {
    constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
    const std::int64_t left = pixels("left");
    const std::int64_t top = pixels("top");
    const std::int64_t right = left + integer("width", 1, kMost);
    const std::int64_t bottom = top + integer("height", 1, kMost);
    if (right > kMost || bottom > kMost) {
        fail({}, "the rectangle reaches beyond what can be counted");
    }
    return {static_cast<std::int32_t>(left), static_cast<std::int32_t>(right), static_cast<std::int32_t>(top),
            static_cast<std::int32_t>(bottom)};
}

double JsonFields::number(std::string_view name) const {
    const json& value = field(name);
    if (!value.is_number()) {
        fail(name, fmt::format("expected a number, found {}", kindOf(value)));
    }
    return value.get<double>();
}

std::string JsonFields::text(std::string_view name) const {
    if (!isText(name)) {
        fail(name, fmt::format("expected text, found {}", kindOf(field(name))));
    }
    return field(name).get<std::string>();
}

bool JsonFields::isText(std::string_view name) const { return field(name).is_string(); }

JsonFields JsonFields::object(std::string_view name) const { return {field(name), file_, placeOf(name)}; }

std::vector<JsonFields> JsonFields::objects(std::string_view name) const {
    std::vector<JsonFields> list;
    if (!has(name)) {
        return list;
    }
    const json& value = field(name);
    if (!value.is_array()) {
        fail(name, fmt::format("expected a list, found {}", kindOf(value)));
    }
    list.reserve(value.size());
    for (std::size_t i = 0; i < value.size(); ++i) {
        list.emplace_back(value[i], file_, fmt::format("{}[{}]", placeOf(name), i));
    }
    return list;
}

void JsonFields::refuseOthers(std::initializer_list<std::string_view> known) const {
    for (const auto& [name, value] : value_->items()) {
        if (std::find(known.begin(), known.end(), name) == known.end()) {
            fail({}, fmt::format("has no field \"{}\"; there are {}", printable(name), fmt::join(known, ", ")));
        }
    }
}

void JsonFields::fail(std::string_view name, const std::string& reason) const {
    const std::string place = placeOf(name);
    throw InputError(fmt::format("{}: {}{}{}", file_, place, place.empty() ? "" : ": ", reason));
}

const json& JsonFields::field(std::string_view name) const {
    const auto found = value_->find(name);
    if (found == value_->end()) {
        fail({}, fmt::format("the field \"{}\" is missing", name));
    }
    return *found;
}

std::string JsonFields::placeOf(std::string_view name) const {
    return place_.empty() || name.empty() ? place_ + std::string(name) : fmt::format("{}.{}", place_, name);
}

} // namespace OrvantaNS::command
