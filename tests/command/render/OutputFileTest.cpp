#include "render/OutputFile.h"

#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "render/RenderError.h"
#include "support/Process.h"

namespace OrvantaNS::render {
namespace {

namespace fs = std::filesystem;
using OrvantaNS::testing::readFile;
using OrvantaNS::testing::TemporaryDirectory;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class OutputFileTest : public ::testing::Test {
protected:
    static void put(OutputFile& file, const std::string& text) {
        avio_write(file.io(), reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size()));
    }

    TemporaryDirectory directory_;
};

TEST_F(OutputFileTest, Published_IsThereWhole) {
    {
        OutputFile file(directory_.path("out"));
        put(file, "Hello, world");
        EXPECT_EQ(avio_seek(file.io(), 7, SEEK_SET), 7);
        put(file, "W");
        EXPECT_FALSE(fs::exists(directory_.path("out")));
        file.publish();
    }
    EXPECT_EQ(readFile(directory_.path("out")), "Hello, World");
    EXPECT_THAT(directory_.files(), ElementsAre("out"));
}

TEST_F(OutputFileTest, NotPublished_LeavesNothingOrWhatWasThere) {
    {
        OutputFile file(directory_.path("out"));
        put(file, "text");
    }
    EXPECT_THAT(directory_.files(), IsEmpty());
    directory_.write("out", "old");
    {
        OutputFile file(directory_.path("out"));
        put(file, "text");
    }
    EXPECT_EQ(readFile(directory_.path("out")), "old");
}

TEST_F(OutputFileTest, Replaced_KeepsModeAndLink) {
    const std::string real = directory_.write("real", "a longer old text");
    fs::permissions(real, fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink("real", directory_.path("link"));
    OutputFile file(directory_.path("link"));
    put(file, "new");
    file.publish();
    EXPECT_EQ(readFile(real), "new");
    EXPECT_TRUE(fs::is_symlink(directory_.path("link")));
    EXPECT_EQ(fs::status(real).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_THAT(directory_.files(), ElementsAre("link", "real"));
}

TEST_F(OutputFileTest, WhatMustNotBeReplaced_IsRefused) {
    const std::string fixed = directory_.write("fixed", "old");
    fs::permissions(fixed, fs::perms::owner_read);
    EXPECT_THROW(OutputFile{fixed}, RenderError);
    fs::create_symlink("nothing", directory_.path("dangling"));
    EXPECT_THROW(OutputFile{directory_.path("dangling")}, RenderError);
    fs::create_directory(directory_.path("folder"));
    EXPECT_THROW(OutputFile{directory_.path("folder")}, RenderError);
    EXPECT_THROW(OutputFile{directory_.path("no/folder/out")}, RenderError);
    EXPECT_EQ(readFile(fixed), "old");
}

TEST_F(OutputFileTest, Device_IsWrittenInPlace) {
    OutputFile file("/dev/null");
    put(file, "text");
    file.publish();
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(OutputFileTest, FullDevice_FailsToPublish) {
    if (!fs::exists("/dev/full")) {
        GTEST_SKIP() << "no /dev/full here";
    }
    OutputFile file("/dev/full");
    put(file, "text");
    EXPECT_THROW(file.publish(), RenderError);
}

} // namespace
} // namespace OrvantaNS::render
