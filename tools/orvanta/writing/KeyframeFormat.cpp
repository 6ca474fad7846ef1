#include "writing/KeyframeFormat.h"

#include <algorithm>

namespace OrvantaNS::command {

std::span<const KeyframeFormat> keyframeFormats() {
    static const std::vector<KeyframeFormat> formats{
        {"table", {".txt"}, keyframeTable},
        {"csv", {".csv"}, keyframeCsv},
        {"json", {".json"}, keyframeJson},
    };
    return formats;
}

const KeyframeFormat* keyframeFormatNamed(std::string_view name) {
    const auto formats = keyframeFormats();
    const auto found = std::find_if(formats.begin(), formats.end(),
                                    [name](const KeyframeFormat& format) { return format.name == name; });
    return found == formats.end() ? nullptr : &*found;
}

const KeyframeFormat* keyframeFormatEnding(std::string_view ending) {
    const auto formats = keyframeFormats();
    const auto found = std::find_if(formats.begin(), formats.end(), [ending](const KeyframeFormat& format) {
        return std::find(format.endings.begin(), format.endings.end(), ending) != format.endings.end();
    });
    return found == formats.end() ? nullptr : &*found;
}

} // namespace OrvantaNS::command
