// Real recordings: the same answers in C as in C++.
#include <string>

#include <gtest/gtest.h>

#include "SameAnswers.h"
#include "asking/Engine.h"

namespace OrvantaNS::testing {
namespace {

class CRecordingsTest : public ::testing::TestWithParam<const char*> {};

TEST_P(CRecordingsTest, EveryQuestion_AnswersAsInCpp) {
    for (const std::string_view size : {"640x400", "9:16"}) {
        auto recording = command::readRecordingFile(std::string(ORVANTA_SOURCES) + "/" + GetParam());
        command::RequestOptions options;
        options.size = command::parseSize(size);
        command::completeRequest(recording, options);
        expectSameAnswers(recording.params);
    }
}

INSTANTIATE_TEST_SUITE_P(Golden, CRecordingsTest,
                         ::testing::Values("tests/golden/recordings/editor.jsonl", "examples/recordings/browser.jsonl",
                                           "examples/recordings/files_terminal.jsonl"));

} // namespace
} // namespace OrvantaNS::testing
