#include "terminal/Terminal.h"

#include <cstdlib>
#include <string_view>

#if defined(_WIN32)
#include <io.h>
#else
#include <sys/ioctl.h>
#include <unistd.h>
#endif

namespace OrvantaNS::command {

namespace {

bool isTerminal(std::FILE* file) {
#if defined(_WIN32)
    return _isatty(_fileno(file)) != 0;
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

int terminalColumns(std::FILE* file, int otherwise) {
#if defined(TIOCGWINSZ)
    winsize size{};
    if (ioctl(fileno(file), TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
        return size.ws_col;
    }
#else
    static_cast<void>(file);
#endif
    return otherwise;
}

} // namespace OrvantaNS::command
