#include "writing/ToolVersion.h"

namespace OrvantaNS::command {

// The build gives the project's version to this file alone, so that a new version compiles little.
std::string_view toolVersion() { return ORVANTA_VERSION; }

} // namespace OrvantaNS::command
