#include "writing/Output.h"

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/Process.h"

namespace OrvantaNS::command {
namespace {

using testing::readFile;
using testing::TemporaryDirectory;
using Names = std::vector<std::string>;

TEST(OutputTest, WriteOutput_NewFile_HoldsTheTextAndNothingElseIsLeft) {
    const TemporaryDirectory directory;
    writeOutput(directory.path("a"), "text\n");
    EXPECT_EQ(readFile(directory.path("a")), "text\n");
    EXPECT_EQ(directory.files(), Names{"a"});
}

TEST(OutputTest, WriteOutput_ExistingFile_IsReplacedAndKeepsItsPermissions) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("a", "a longer text that was there before");
    const auto permissions =
        std::filesystem::perms::owner_read | std::filesystem::perms::owner_write | std::filesystem::perms::others_read;
    std::filesystem::permissions(path, permissions);
    writeOutput(path, "text\n");
    EXPECT_EQ(readFile(path), "text\n");
    EXPECT_EQ(std::filesystem::status(path).permissions(), permissions);
    EXPECT_EQ(directory.files(), Names{"a"});
}

TEST(OutputTest, WriteOutput_Link_StaysALink) {
    const TemporaryDirectory directory;
    const std::string target = directory.write("target", "old");
    std::filesystem::create_symlink(target, directory.path("link"));
    writeOutput(directory.path("link"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(directory.path("link")));
    EXPECT_EQ(readFile(target), "new");
    EXPECT_EQ(directory.files(), (Names{"link", "target"}));
}

TEST(OutputTest, WriteOutput_Device_IsWrittenAndStays) {
    writeOutput("/dev/null", "text");
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    EXPECT_THROW(writeOutput("/dev/full", "text"), OutputError);
}

TEST(OutputTest, WriteOutput_NoSuchDirectory_SaysSo) {
    const TemporaryDirectory directory;
    try {
        writeOutput(directory.path("none/a"), "text");
        FAIL() << "there is no such directory";
    } catch (const OutputError& error) {
        EXPECT_EQ(error.what(), directory.path("none/a") + ": cannot be written: No such file or directory");
    }
    EXPECT_EQ(directory.files(), Names{});
}

TEST(OutputTest, WriteOutput_Directory_IsRefused) {
    const TemporaryDirectory directory;
    std::filesystem::create_directory(directory.path("d"));
    EXPECT_THROW(writeOutput(directory.path("d"), "text"), OutputError);
    EXPECT_TRUE(std::filesystem::is_directory(directory.path("d")));
}

TEST(OutputTest, RefuseOverwriting_TheRecordingUnderAnyName) {
    const TemporaryDirectory directory;
    const std::string recording = directory.write("r", "x");
    std::filesystem::create_symlink(recording, directory.path("link"));
    EXPECT_THROW(refuseOverwriting(recording, recording), OutputError);
    EXPECT_THROW(refuseOverwriting(directory.path("link"), recording), OutputError);
    EXPECT_NO_THROW(refuseOverwriting(directory.path("new"), recording));
    EXPECT_NO_THROW(refuseOverwriting("", recording));
    EXPECT_NO_THROW(refuseOverwriting(recording, "-"));
    EXPECT_NO_THROW(refuseOverwriting("/dev/null", "/dev/null"));
}

} // namespace
} // namespace OrvantaNS::command
