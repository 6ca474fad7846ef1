#include "terminal/FileName.h"

namespace OrvantaNS::command {

#if defined(_WIN32)

std::filesystem::path pathOf(const std::string& name) { return std::u8string(name.begin(), name.end()); }

std::string nameOf(const std::filesystem::path& path) {
    const std::u8string name = path.u8string();
    return std::string(name.begin(), name.end());
}

#else

std::filesystem::path pathOf(const std::string& name) { return name; }

std::string nameOf(const std::filesystem::path& path) { return path.string(); }

#endif

} // namespace OrvantaNS::command
