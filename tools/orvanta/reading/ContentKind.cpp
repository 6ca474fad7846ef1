#include "reading/ContentKind.h"

#include <array>
#include <cstddef>

#include <fmt/format.h>

namespace OrvantaNS::command {

namespace {

/// Bytes by which a kind of file is known.
struct Signature {
    std::size_t offset;
    std::string_view bytes;
    std::string_view kind;
};

constexpr std::array<Signature, 13> kVideosAndPictures{{
    {4, "ftyp", "a video (MP4 or MOV)"},
    {4, "moov", "a video (MOV)"},
    {0, "\x1a\x45\xdf\xa3", "a video (Matroska or WebM)"},
    {8, "AVI ", "a video (AVI)"},
    {0, "FLV", "a video (FLV)"},
    {0, "GIF8", "a picture (GIF)"},
    {0, "\x89PNG", "a picture (PNG)"},
    {0, "\xff\xd8\xff", "a picture (JPEG)"},
    {8, "WEBP", "a picture (WebP)"},
    {8, "WAVE", "a sound file (WAV)"},
    {0, "OggS", "an Ogg file"},
    {0, "fLaC", "a sound file (FLAC)"},
    {0, "ID3", "a sound file (MP3)"},
}};

constexpr std::array<Signature, 6> kArchives{{
    {0,
     "\xfd"
     "7zXZ",
     "xz -dc"},
    {0, "BZh", "bzip2 -dc"},
    {0, "\x04\x22\x4d\x18", "lz4 -dc"},
    {0, "7z\xbc\xaf", "7z e -so"},
    {0, "PK\x03\x04", "unzip -p"},
    {0, "Rar!", "unrar p -inul"},
}};

template <std::size_t count>
std::string_view kindOf(std::string_view start, const std::array<Signature, count>& signatures) {
    for (const Signature& signature : signatures) {
        if (start.size() >= signature.offset && start.substr(signature.offset).starts_with(signature.bytes)) {
            return signature.kind;
        }
    }
    return {};
}

} // namespace

std::string contentRemark(std::string_view start) {
    if (const auto kind = kindOf(start, kVideosAndPictures); !kind.empty()) {
        return fmt::format("this is {}; RECORDING is the file of JSON lines that was made with it", kind);
    }
    if (const auto unpacker = kindOf(start, kArchives); !unpacker.empty()) {
        return fmt::format("this is an archive; unpack it first: {} FILE | orvanta ... -", unpacker);
    }
    if (start.starts_with("\xff\xfe") || start.starts_with("\xfe\xff")) {
        return "this is UTF-16 text; the format is UTF-8";
    }
    if (start.starts_with("%PDF")) {
        return "this is a PDF document";
    }
    if (start.starts_with("\x7f"
                          "ELF")) {
        return "this is a program";
    }
    if (start.starts_with("orvanta-") || start.starts_with("tick,")) {
        return "this is a list of keyframes, which the command wrote; RECORDING is what they were made from";
    }
    const std::size_t first = start.find_first_not_of(" \t\r");
    if (first == std::string_view::npos) {
        return {};
    }
    const std::size_t last = start.find_last_not_of(" \t\r");
    const std::string_view text = start.substr(first, last - first + 1);
    if (text.front() == '<') {
        return "this is XML or HTML";
    }
    if (text == "{") {
        return "this is JSON spread over several lines; the format has one value a line";
    }
    if (text.front() == '[') {
        return text.ends_with(']') && text.find('[', 1) == std::string_view::npos && text.size() > 2
                   ? "this is an event; the header line is missing, which comes first"
                   : "this is an array; the format has one value a line, the header first";
    }
    return {};
}

} // namespace OrvantaNS::command
