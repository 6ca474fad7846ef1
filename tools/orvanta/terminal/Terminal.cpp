#include "terminal/Terminal.h"

#include <cstdlib>
#include <string_view>

#if defined(_WIN32)
#include <io.h>
#include <windows.h>
#else
#include <sys/ioctl.h>
#include <unistd.h>
#endif

namespace OrvantaNS::command {

namespace {

constexpr int kUsualColumns = 80;

#if defined(_WIN32)
HANDLE handleOf(std::FILE* file) { return reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file))); }
#endif

bool isTerminal(std::FILE* file) {
#if defined(_WIN32)
    // The C library takes the device NUL for a terminal, too.
    DWORD mode = 0;
    return GetConsoleMode(handleOf(file), &mode) != 0;
#else
    return isatty(fileno(file)) != 0;
#endif
}

} // namespace

bool outputIsTerminal() { return isTerminal(stdout); }

std::FILE* progressTerminal() {
    const char* const kind = std::getenv("TERM");
    return isTerminal(stderr) && (kind == nullptr || std::string_view(kind) != "dumb") ? stderr : nullptr;
}

int terminalColumns(std::FILE* file) {
#if defined(_WIN32)
    CONSOLE_SCREEN_BUFFER_INFO screen{};
    if (GetConsoleScreenBufferInfo(handleOf(file), &screen) != 0) {
        return screen.srWindow.Right - screen.srWindow.Left + 1;
    }
#elif defined(TIOCGWINSZ)
    winsize size{};
    if (ioctl(fileno(file), TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
        return size.ws_col;
    }
#else
    static_cast<void>(file);
#endif
    return kUsualColumns;
}

} // namespace OrvantaNS::command
