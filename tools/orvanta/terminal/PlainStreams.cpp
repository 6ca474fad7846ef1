#include "terminal/PlainStreams.h"

#if defined(_WIN32)
#include <cstdio>

#include <fcntl.h>
#include <io.h>
#include <windows.h>
#endif

namespace OrvantaNS::command {

#if defined(_WIN32)

PlainStreams::PlainStreams() {
    for (std::FILE* const file : {stdin, stdout, stderr}) {
        _setmode(_fileno(file), _O_BINARY);
    }
    // Both streams of a console share its settings; either may be the one that is not redirected.
    for (const DWORD stream : {STD_ERROR_HANDLE, STD_OUTPUT_HANDLE}) {
        const HANDLE console = GetStdHandle(stream);
        DWORD mode = 0;
        if (mode_ == 0 && GetConsoleMode(console, &mode) != 0) {
            const UINT codePage = GetConsoleOutputCP();
            codePage_ = SetConsoleOutputCP(CP_UTF8) != 0 ? codePage : 0;
            mode_ = SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0 ? mode : 0;
        }
    }
}

PlainStreams::~PlainStreams() {
    if (codePage_ != 0) {
        SetConsoleOutputCP(codePage_);
    }
    DWORD now = 0;
    for (const DWORD stream : {STD_ERROR_HANDLE, STD_OUTPUT_HANDLE}) {
        if (mode_ != 0 && GetConsoleMode(GetStdHandle(stream), &now) != 0) {
            SetConsoleMode(GetStdHandle(stream), mode_);
        }
    }
}

#else

PlainStreams::PlainStreams() = default;

#endif

} // namespace OrvantaNS::command
