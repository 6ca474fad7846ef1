// Fuzz target: the command's reader of captured requests. The input is the file; one that does not begin like a
// captured request gets a first line that does.

#include <cstdint>
#include <string>

#include "ReaderChecks.h"
#include "reading/DumpReader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace OrvantaNS;
    std::string text(reinterpret_cast<const char*>(data), size);
    if (!command::isDumpHead(std::string_view(text).substr(0, text.find('\n')))) {
        text = "640 400 1000\n" + text;
    }
    fuzz::checkReading(text, command::RecordingForm::Dump);
    return 0;
}
