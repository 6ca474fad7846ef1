// An option that cannot be used.
#pragma once

#include <stdexcept>

namespace OrvantaNS::command {

/// An option whose value cannot be used; the message is complete but for the program's name.
class OptionError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace OrvantaNS::command
