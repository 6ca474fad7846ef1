// Fuzz target: the command's reader of recordings. The input is the file.

#include <cstdint>
#include <string>

#include "ReaderChecks.h"
#include "reading/DumpReader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace OrvantaNS;
    const std::string text(reinterpret_cast<const char*>(data), size);
    // Captured requests have a target of their own.
    if (!command::isDumpHead(std::string_view(text).substr(0, text.find('\n')))) {
        fuzz::checkReading(text);
    }
    return 0;
}
