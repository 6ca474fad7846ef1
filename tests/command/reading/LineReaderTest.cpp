#include "reading/LineReader.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "reading/InputError.h"

namespace OrvantaNS::command {
namespace {

std::vector<std::string> readAll(LineReader& reader) {
    std::vector<std::string> lines;
    while (reader.next()) {
        lines.emplace_back(reader.line());
    }
    return lines;
}

/// Gives one byte at a time, as a slow pipe may.
ByteSource trickle(std::string_view text) {
    return [inner = sourceOf(text)](char* to, std::size_t) { return inner(to, 1); };
}

TEST(LineReaderTest, Next_EndsAndTheirAbsence_GiveTheSameLines) {
    using Lines = std::vector<std::string>;
    const struct {
        std::string_view text;
        Lines lines;
    } cases[] = {
        {"", {}},           {"\n", {""}},         {"a", {"a"}},
        {"a\n", {"a"}},     {"a\nb", {"a", "b"}}, {"a\n\nb\n", {"a", "", "b"}},
        {"\n\n", {"", ""}},
    };
    for (const auto& [text, lines] : cases) {
        LineReader whole(sourceOf(text), "f");
        EXPECT_EQ(readAll(whole), lines) << text;
        LineReader slow(trickle(text), "f");
        EXPECT_EQ(readAll(slow), lines) << text;
    }
}

TEST(LineReaderTest, Number_CountsFromOne) {
    LineReader reader(sourceOf("a\nb\n"), "f");
    EXPECT_EQ(reader.number(), 0);
    ASSERT_TRUE(reader.next());
    EXPECT_EQ(reader.number(), 1);
    ASSERT_TRUE(reader.next());
    EXPECT_EQ(reader.number(), 2);
    EXPECT_FALSE(reader.next());
}

TEST(LineReaderTest, Next_LinesAcrossChunks_ComeWhole) {
    // 40,000 bytes a line: no chunk of 65,536 holds two.
    std::string text;
    std::vector<std::string> lines;
    for (char c = 'a'; c <= 'j'; ++c) {
        lines.emplace_back(40000, c);
        text += lines.back() + "\n";
    }
    LineReader reader(sourceOf(text), "f");
    EXPECT_EQ(readAll(reader), lines);
}

TEST(LineReaderTest, Next_LongestLine_IsReadAndOneByteMoreIsNot) {
    for (const bool ended : {false, true}) {
        const std::string longest(kMaxLineBytes, 'x');
        const std::string end = ended ? "\n" : "";
        const std::string kept = longest + end;
        LineReader reader(sourceOf(kept), "f");
        ASSERT_TRUE(reader.next());
        EXPECT_EQ(reader.line().size(), kMaxLineBytes);

        const std::string tooLong = "first\n" + longest + "x" + end;
        LineReader longer(sourceOf(tooLong), "f");
        ASSERT_TRUE(longer.next());
        try {
            longer.next();
            FAIL() << "the line is too long";
        } catch (const InputError& error) {
            EXPECT_STREQ(error.what(), "f:2: the line is longer than 1048576 bytes");
        }
    }
}

TEST(LineReaderTest, Fail_BeforeTheFirstLine_NamesLineOne) {
    const LineReader reader(sourceOf(""), "f");
    try {
        reader.fail("reason");
    } catch (const InputError& error) {
        EXPECT_STREQ(error.what(), "f:1: reason");
    }
}

} // namespace
} // namespace OrvantaNS::command
