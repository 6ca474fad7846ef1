// Names of files, as people give them, and the paths that the file system takes.
#pragma once

#include <filesystem>
#include <string>

namespace OrvantaNS::command {

/// The path of a file by its name from the command line or a recording: UTF-8 on Windows, where a path made of the name itself
/// would take it to be in another encoding, and elsewhere the name as it is.
std::filesystem::path pathOf(const std::string& name);

/// The other way round.
std::string nameOf(const std::filesystem::path& path);

} // namespace OrvantaNS::command
