#include "reading/VideoLookup.h"

#include <array>
#include <filesystem>
#include <system_error>

#include <fmt/format.h>

#include "reading/InputError.h"
#include "terminal/FileName.h"
#include "terminal/TextFormat.h"

namespace OrvantaNS::command {

namespace {

namespace fs = std::filesystem;

constexpr std::array<const char*, 4> kEndings{".mp4", ".mkv", ".webm", ".mov"};
constexpr std::array<const char*, 3> kCompressed{".gz", ".zst", ".zstd"};

bool isFile(const fs::path& path) {
    std::error_code error;
    return fs::exists(path, error) && !fs::is_directory(path, error);
}

/// "session.jsonl" for "session.jsonl.gz".
fs::path unpackedName(fs::path name) {
    for (const char* ending : kCompressed) {
        if (name.extension() == ending) {
            name.replace_extension();
        }
    }
    return name;
}

} // namespace

std::string findVideo(const std::string& given, const std::string& recordingPath, const Recording& recording) {
    if (!given.empty()) {
        if (!isFile(pathOf(given))) {
            throw InputError(fmt::format("{}: there is no such video", printable(given, given.size())));
        }
        return given;
    }
    const bool standardInput = recordingPath == "-";
    fs::path base = standardInput ? fs::path() : pathOf(recordingPath);
    if (recording.video) {
        const fs::path named = base.parent_path() / pathOf(*recording.video);
        if (!isFile(named)) {
            throw InputError(fmt::format("{}: its header names the video {}, which is not there; name the video after "
                                         "the recording",
                                         recordingPath, printableName(nameOf(named))));
        }
        return nameOf(named);
    }
    if (standardInput) {
        throw InputError("a recording from the standard input has no video beside it; name the video after it");
    }
    base = unpackedName(base);
    for (const char* ending : kEndings) {
        fs::path candidate = base;
        candidate.replace_extension(ending);
        if (candidate != pathOf(recordingPath) && isFile(candidate)) {
            return nameOf(candidate);
        }
    }
    throw InputError(
        fmt::format("{}: no video lies beside it ({} with .mp4, .mkv, .webm or .mov); name the video after "
                    "the recording",
                    recordingPath, nameOf(base.stem())));
}

std::string videoNameFor(const std::string& recordingPath, const Recording& recording) {
    try {
        return findVideo({}, recordingPath, recording);
    } catch (const InputError&) {
        if (recordingPath == "-" || recordingPath.empty()) {
            return "VIDEO.mp4";
        }
        return recording.video ? nameOf(pathOf(recordingPath).parent_path() / pathOf(*recording.video))
                               : nameOf(unpackedName(pathOf(recordingPath)).replace_extension(kEndings.front()));
    }
}

} // namespace OrvantaNS::command
