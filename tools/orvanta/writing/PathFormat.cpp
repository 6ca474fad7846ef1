#include "writing/PathFormat.h"

#include <algorithm>
#include <cctype>

#include <fmt/format.h>

#include "terminal/TextFormat.h"
#include "writing/FfmpegScript.h"
#include "writing/MltProject.h"

namespace OrvantaNS::command {

std::span<const PathFormat> pathFormats() {
    using Plan = const CameraPlan&;
    using Options = const PathOutputOptions&;
    static const std::vector<PathFormat> formats{
        {"table", {".txt"}, false, false, [](Plan plan, Options) { return pathTable(plan); }},
        {"csv",
         {".csv"},
         true,
         true,
         [](Plan plan, Options options) {
             return options.sample ? samplesCsv(plan, *options.sample, options.even) : pathCsv(plan, options.even);
         }},
        {"json",
         {".json"},
         true,
         false,
         [](Plan plan, Options options) {
             return options.sample ? samplesJson(plan, *options.sample) : pathJson(plan);
         }},
        {"ffmpeg",
         {".ffmpeg"},
         false,
         false,
         [](Plan plan, Options) { return ffmpegScript(plan); },
         [](Plan plan, Options, const std::string& file) {
             return "use it like this: " + ffmpegCommandLine(plan, file);
         }},
        {"mlt",
         {".mlt"},
         true,
         false,
         [](Plan plan, Options options) { return mltProject(plan, options.sample.value_or(kMltRate), options.video); },
         [](Plan, Options options, const std::string& file) {
             return fmt::format("the project shows {}; use it like this: {}", printableName(options.video),
                                mltCommandLine(file));
         }},
    };
    return formats;
}

const PathFormat* pathFormatNamed(std::string_view name) {
    const auto formats = pathFormats();
    const auto found =
        std::find_if(formats.begin(), formats.end(), [name](const PathFormat& format) { return format.name == name; });
    return found == formats.end() ? nullptr : &*found;
}

const PathFormat* pathFormatOfFile(std::string_view file) {
    std::string small(file);
    std::transform(small.begin(), small.end(), small.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    for (const PathFormat& format : pathFormats()) {
        for (const std::string_view ending : format.endings) {
            if (small.ends_with(ending)) {
                return &format;
            }
        }
    }
    return nullptr;
}

} // namespace OrvantaNS::command
