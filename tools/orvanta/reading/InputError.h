// What is wrong with an input, and where.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

namespace OrvantaNS::command {

/// Where in an input something is wrong.
struct InputPlace {
    std::string file{};    ///< As the command line has it.
    long long line = 0;    ///< From 1; 0 when no line is at fault.
    long long column = 0;  ///< From 1, in characters; 0 when not known.
    std::string excerpt{}; ///< The text around the column, printable; empty when there is none to show.
    std::size_t caret = 0; ///< Where in the excerpt the column lies, in characters from 0.
};

/// An input that cannot be used. The message is one line and complete but for the program's name: "FILE:LINE:COLUMN:
/// reason", without what is not known of the place.
class InputError : public std::runtime_error {
public:
    /// A message that is complete already.
    explicit InputError(const std::string& message) : std::runtime_error(message) {}
    InputError(InputPlace place, const std::string& reason);

    const InputPlace& place() const { return place_; }

private:
    InputPlace place_;
};

} // namespace OrvantaNS::command
