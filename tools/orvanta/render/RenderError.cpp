#include "render/RenderError.h"

#include <array>
#include <cstdarg>
#include <mutex>

#include <fmt/format.h>

extern "C" {
#include <libavutil/error.h>
#include <libavutil/log.h>
}

namespace OrvantaNS::render {

namespace {

std::mutex messageMutex;
std::string lastMessage; // Of level error or worse, without its line's end; guarded by the mutex.

void keepMessage(void* context, int level, const char* format, std::va_list values) {
    if (level > AV_LOG_ERROR) {
        return;
    }
    std::array<char, 512> line{};
    int prefix = 1;
    av_log_format_line2(context, level, format, values, line.data(), static_cast<int>(line.size()), &prefix);
    std::string text(line.data());
    while (!text.empty() && (text.back() == '\n' || text.back() == ' ')) {
        text.pop_back();
    }
    // "[mov,mp4 @ 0x55d0c8] moov atom not found": where in memory it happened helps nobody.
    if (const std::size_t end = text.find("] "); text.starts_with('[') && end != std::string::npos) {
        text.erase(0, end + 2);
    }
    const std::lock_guard lock(messageMutex);
    lastMessage = text;
}

} // namespace

std::string avErrorText(int code) {
    std::array<char, AV_ERROR_MAX_STRING_SIZE> text{};
    av_strerror(code, text.data(), text.size());
    const std::lock_guard lock(messageMutex);
    return lastMessage.empty() ? text.data() : fmt::format("{} ({})", text.data(), lastMessage);
}

void keepAvMessages() {
    {
        const std::lock_guard lock(messageMutex);
        lastMessage.clear();
    }
    av_log_set_callback(keepMessage);
}

int checkAv(int code, const std::string& what) {
    if (code < 0) {
        throw RenderError(fmt::format("{}: {}", what, avErrorText(code)));
    }
    return code;
}

} // namespace OrvantaNS::render
