// Writes the requests that recordings make, in several shapes, as numbers for print_answers; or those of generated
// sessions.
//
//   write_requests RECORDING... >FILE
//   write_requests --generated COUNT >FILE
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string_view>

#include "GeneratedRequest.h"
#include "RequestNumbers.h"
#include "asking/Engine.h"

int main(int argc, char** argv) {
    using namespace OrvantaNS::command;
    try {
        if (argc == 3 && std::string_view(argv[1]) == "--generated") {
            const std::uint64_t count = std::strtoull(argv[2], nullptr, 10);
            for (std::uint64_t seed = 1; seed <= count; ++seed) {
                OrvantaNS::testing::writeRequest(std::cout, OrvantaNS::testing::generatedRequest(seed));
            }
            return std::cout.flush() ? 0 : 1;
        }
        for (int i = 1; i < argc; ++i) {
            for (const std::string_view size : {"640x400", "9:16", "1:1", "0.5"}) {
                for (const EngineChoice engine : {EngineChoice::Value, EngineChoice::Voting}) {
                    Recording recording = readRecordingFile(argv[i]);
                    RequestOptions options;
                    options.size = parseSize(size);
                    options.engine = engine;
                    completeRequest(recording, options);
                    OrvantaNS::testing::writeRequest(std::cout, recording.params);
                }
            }
        }
    } catch (const std::exception& failure) {
        std::cerr << "write_requests: " << failure.what() << '\n';
        return 1;
    }
    return std::cout.flush() ? 0 : 1;
}
