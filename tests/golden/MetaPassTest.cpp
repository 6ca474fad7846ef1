// The passes that give recordings their meaning, with the index of the working list and without, on real sessions.
#include <gtest/gtest.h>

#include <string>

#include "MetaPassWalk.h"
#include "asking/Engine.h"
#include "reading/Recording.h"

namespace OrvantaNS::command {
namespace {

TEST(MetaPassTest, PassesOfRealSessions_EqualThePlainPass) {
    for (const std::string path : {ORVANTA_EXAMPLES_FOLDER "/recordings/browser.jsonl",
                                   ORVANTA_EXAMPLES_FOLDER "/recordings/files_terminal.jsonl",
                                   ORVANTA_GOLDEN_FOLDER "/recordings/editor.jsonl"}) {
        SCOPED_TRACE(path);
        Recording recording = readRecordingFile(path);
        RequestOptions options;
        options.size = parseSize("640x400");
        completeRequest(recording, options);
        OV_DATA_STORE store;
        ASSERT_NO_FATAL_FAILURE(testing::expectPassesOfAWalkEqualPlainOnes(recording.params, store));
        EXPECT_GT(store.valueObjects.size(), 50u);
    }
}

} // namespace
} // namespace OrvantaNS::command
