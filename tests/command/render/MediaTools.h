// The `ffmpeg` and `ffprobe` programs, for tests: they make the videos, and look at what was made of them.
#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <sys/wait.h>

namespace OrvantaNS::testing {

/// What a shell command line printed. Throws `std::runtime_error` when it failed.
inline std::string shell(const std::string& line) {
    struct Close {
        void operator()(std::FILE* pipe) const { pclose(pipe); }
    };
    std::unique_ptr<std::FILE, Close> pipe(popen(line.c_str(), "r"));
    if (pipe == nullptr) {
        throw std::runtime_error("cannot run: " + line);
    }
    std::string out;
    std::array<char, 65536> buffer{};
    for (std::size_t count = 0; (count = std::fread(buffer.data(), 1, buffer.size(), pipe.get())) > 0;) {
        out.append(buffer.data(), count);
    }
    const int status = pclose(pipe.release());
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        throw std::runtime_error("failed: " + line);
    }
    return out;
}

inline std::string ffmpeg(const std::string& arguments) { return shell("ffmpeg -v error -nostdin -y " + arguments); }

/// A field of the first stream of a kind ("v" or "a"), as ffprobe prints it.
inline std::string probe(const std::string& path, const std::string& stream, const std::string& field) {
    std::string text =
        shell("ffprobe -v error -select_streams " + stream + " -show_entries " + field + " -of csv=p=0 '" + path + "'");
    text.erase(0, text.find_first_not_of('"')); // A field with a comma in it.
    return text.substr(0, text.find_first_of(",\r\n"));
}

/// The time stamps of a stream's pictures or packets of sound, seconds, in rising order.
inline std::vector<double> stamps(const std::string& path, const std::string& stream = "v") {
    std::istringstream lines(shell("ffprobe -v error -select_streams " + stream +
                                   " -show_entries frame=pts_time -of csv=p=0 '" + path + "'"));
    std::vector<double> times;
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty()) {
            times.push_back(std::stod(line));
        }
    }
    return times;
}

/// All pictures of a video, plane after plane, in the given pixel format.
inline std::vector<std::uint8_t> rawVideo(const std::string& path, const std::string& format,
                                          const std::string& options = {}) {
    const std::string bytes =
        ffmpeg(options + " -i '" + path + "' -fps_mode passthrough -pix_fmt " + format + " -f rawvideo -");
    return {bytes.begin(), bytes.end()};
}

} // namespace OrvantaNS::testing
