#include "writing/Output.h"

#include <csignal>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

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

std::string outputError(const std::string& path) {
    try {
        writeOutput(path, "new");
    } catch (const OutputError& error) {
        return error.what();
    }
    return {};
}

TEST(OutputTest, WriteOutput_ReadOnlyFile_StaysAsItIs) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("a", "old");
    std::filesystem::permissions(path, std::filesystem::perms::owner_read);
    EXPECT_EQ(outputError(path), path + ": is read-only, and stays as it is");
    EXPECT_EQ(readFile(path), "old");
    EXPECT_EQ(directory.files(), Names{"a"});
}

TEST(OutputTest, WriteOutput_DanglingLink_IsRefused) {
    const TemporaryDirectory directory;
    std::filesystem::create_symlink("nowhere", directory.path("link"));
    EXPECT_EQ(outputError(directory.path("link")),
              directory.path("link") + ": is a link to nowhere, which does not exist; name the file itself");
    EXPECT_TRUE(std::filesystem::is_symlink(directory.path("link")));
    EXPECT_EQ(directory.files(), Names{"link"});
}

TEST(OutputTest, WriteOutput_DescriptorNames_WriteBehindWhatIsThere) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("a", "");
    const int descriptor = open(path.c_str(), O_WRONLY);
    ASSERT_GE(descriptor, 0);
    ASSERT_EQ(write(descriptor, "before ", 7), 7);
    const std::string number = std::to_string(descriptor);
    writeOutput("/dev/fd/" + number, "one ");
    std::filesystem::create_symlink("/proc/self/fd/" + number, directory.path("link"));
    writeOutput(directory.path("link"), "two");
    close(descriptor);
    EXPECT_EQ(readFile(path), "before one two");
    EXPECT_EQ(directory.files(), (Names{"a", "link"}));
    EXPECT_THROW(writeOutput("/dev/fd/987", "text"), OutputError);
}

TEST(OutputTest, WriteOutput_Fifo_IsWrittenAndStays) {
    const TemporaryDirectory directory;
    const std::string path = directory.path("fifo");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    std::string taken;
    std::thread reader([&] { taken = readFile(path); });
    writeOutput(path, "text");
    reader.join();
    EXPECT_EQ(taken, "text");
    EXPECT_TRUE(std::filesystem::is_fifo(path));
}

TEST(OutputTest, WriteOutput_NewFile_HasTheUsersPermissions) {
    const TemporaryDirectory directory;
    const mode_t before = umask(0027);
    writeOutput(directory.path("a"), "text");
    umask(before);
    EXPECT_EQ(std::filesystem::status(directory.path("a")).permissions(), std::filesystem::perms{0640});
}

TEST(OutputTest, WriteOutput_FullDisk_LeavesWhatWasThere) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("a", "old");
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{1000, before.rlim_max};
    std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    EXPECT_THROW(writeOutput(path, std::string(100000, 'x')), OutputError);
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(readFile(path), "old");
    EXPECT_EQ(directory.files(), Names{"a"});
}

TEST(OutputTest, CheckOutput_FindsOutBeforeTheWork_AndWritesNothing) {
    const TemporaryDirectory directory;
    EXPECT_NO_THROW(checkOutput(""));
    EXPECT_NO_THROW(checkOutput("-"));
    EXPECT_NO_THROW(checkOutput("/dev/null"));
    EXPECT_NO_THROW(checkOutput(directory.path("new")));
    EXPECT_THROW(checkOutput(directory.path("none/a")), OutputError);
    EXPECT_THROW(checkOutput(directory.path(".")), OutputError);
    EXPECT_EQ(directory.files(), Names{});
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
