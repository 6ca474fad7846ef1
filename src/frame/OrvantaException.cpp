#include "OrvantaException.h"

namespace OrvantaNS {

OrvantaException::OrvantaException(const std::string& text, const OVERR_CODES& reason) : message(text), code(reason) {}

OrvantaException::~OrvantaException() = default;

const char* OrvantaException::what() const noexcept { return message.c_str(); }

OVERR_CODES OrvantaException::errorCode() const { return code; }

} // namespace OrvantaNS
