// What is wrong with an input, and where.
#pragma once

#include <stdexcept>
#include <string>

namespace OrvantaNS::command {

/// An input that cannot be used. The message is complete but for the program's name: "FILE:LINE: reason", or
/// "FILE: reason" where no line is at fault.
class InputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace OrvantaNS::command
