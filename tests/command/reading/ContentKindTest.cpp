#include "reading/ContentKind.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/Reading.h"

namespace OrvantaNS::command {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::kHeader;
using testing::readingError;

TEST(ContentKindTest, OtherFiles_AreCalledWhatTheyAre) {
    const struct {
        std::string start;
        std::string_view remark;
    } cases[] = {
        {std::string("\0\0\0\x20"
                     "ftypisom",
                     12),
         "this is a video (MP4 or MOV)"},
        {"\x1a\x45\xdf\xa3\x9f", "this is a video (Matroska or WebM)"},
        {"RIFF1234AVI LIST", "this is a video (AVI)"},
        {"\x89PNG\r", "this is a picture (PNG)"},
        {"\xff\xd8\xff\xe0", "this is a picture (JPEG)"},
        {"\xfd"
         "7zXZ",
         "unpack it first: xz -dc"},
        {"BZh91AY", "unpack it first: bzip2 -dc"},
        {"PK\x03\x04", "unpack it first: unzip -p"},
        {"\xff\xfe{", "this is UTF-16 text"},
        {"%PDF-1.7", "this is a PDF document"},
        {"<html>", "this is XML or HTML"},
        {"{", "this is JSON spread over several lines; the format has one value a line"},
        {"[", "this is an array; the format has one value a line"},
        {R"([{"format":"orvanta-recording"},[0,"action",6]])", "this is an array; the format has one value a line"},
        {R"([0,"region",0,0,1280,800])", "this is an event; the header line is missing"},
        {"tick,seconds,left,top,width,height,zoom,reason", "this is a list of keyframes"},
    };
    for (const auto& [start, remark] : cases) {
        EXPECT_THAT(contentRemark(start), HasSubstr(remark)) << start;
        EXPECT_THAT(readingError(start + "\nmore\n"), HasSubstr(remark)) << start;
    }
}

TEST(ContentKindTest, WhatIsUnknown_GetsNoRemark) {
    EXPECT_THAT(contentRemark(""), IsEmpty());
    EXPECT_THAT(contentRemark("hello"), IsEmpty());
    EXPECT_THAT(contentRemark("{\"format\": 1"), IsEmpty());
}

} // namespace
} // namespace OrvantaNS::command
