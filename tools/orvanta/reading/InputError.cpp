#include "reading/InputError.h"

#include <utility>

#include <fmt/format.h>

#include "terminal/TextFormat.h"

namespace OrvantaNS::command {

namespace {

std::string messageOf(const InputPlace& place, const std::string& reason) {
    std::string message = printableName(place.file);
    if (place.line > 0) {
        message += fmt::format(":{}", place.line);
    }
    if (place.column > 0) {
        message += fmt::format(":{}", place.column);
    }
    return message + ": " + reason;
}

} // namespace

InputError::InputError(InputPlace place, const std::string& reason)
    : std::runtime_error(messageOf(place, reason)), place_(std::move(place)) {}

} // namespace OrvantaNS::command
