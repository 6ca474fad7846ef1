#include "reading/Decompression.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zlib.h>
#include <zstd.h>

#include "reading/InputError.h"
#include "support/Reading.h"

namespace OrvantaNS::command {
namespace {

using ::testing::HasSubstr;
using testing::kHeader;
using testing::readingError;
using testing::readText;

std::string gzip(const std::string& text) {
    z_stream stream{};
    EXPECT_EQ(deflateInit2(&stream, 6, Z_DEFLATED, MAX_WBITS + 16, 8, Z_DEFAULT_STRATEGY), Z_OK);
    std::string packed(deflateBound(&stream, text.size()), '\0');
    std::string input = text;
    stream.next_in = reinterpret_cast<Bytef*>(input.data());
    stream.avail_in = static_cast<uInt>(input.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    return packed;
}

std::string zstd(const std::string& text) {
    std::string packed(ZSTD_compressBound(text.size()), '\0');
    packed.resize(ZSTD_compress(packed.data(), packed.size(), text.data(), text.size(), 3));
    return packed;
}

/// A text that does not compress to nothing, longer than any buffer on the way.
std::string longText() {
    std::string text;
    unsigned state = 1;
    while (text.size() < 300000) {
        state = state * 1103515245U + 12345U;
        text += std::to_string(state) + "\n";
    }
    return text;
}

/// The bytes, at most `piece` of them at a time. `packed` outlives the source.
ByteSource inPieces(std::string_view packed, std::size_t piece) {
    return [packed, piece](char* to, std::size_t size) mutable {
        const std::size_t count = packed.copy(to, std::min(size, piece));
        packed.remove_prefix(count);
        return count;
    };
}

struct Unpacked {
    std::string text;
    SourceNotes notes;
};

Unpacked unpack(const std::string& packed, std::size_t piece) {
    const auto notes = std::make_shared<SourceNotes>();
    const ByteSource source = unpacked(inPieces(packed, piece), "f", notes);
    Unpacked result;
    std::vector<char> buffer(1000);
    while (const std::size_t count = source(buffer.data(), buffer.size())) {
        result.text.append(buffer.data(), count);
    }
    result.notes = *notes;
    return result;
}

TEST(DecompressionTest, PackedText_ComesBack_HoweverItArrives) {
    const std::string text = longText();
    for (const std::size_t piece : {std::size_t{1}, std::size_t{100}, std::size_t{1} << 20}) {
        EXPECT_EQ(unpack(text, piece).text, text);
        EXPECT_EQ(unpack(text, piece).notes.compression, "");
        const Unpacked fromGzip = unpack(gzip(text), piece);
        EXPECT_TRUE(fromGzip.text == text);
        EXPECT_EQ(fromGzip.notes.compression, "gzip");
        EXPECT_FALSE(fromGzip.notes.isCut);
        const Unpacked fromZstd = unpack(zstd(text), piece);
        EXPECT_TRUE(fromZstd.text == text);
        EXPECT_EQ(fromZstd.notes.compression, "zstd");
        EXPECT_FALSE(fromZstd.notes.isCut);
    }
    EXPECT_EQ(unpack("", 10).text, "");
    EXPECT_EQ(unpack(gzip(""), 10).text, "");
    EXPECT_EQ(unpack(zstd(""), 10).text, "");
}

TEST(DecompressionTest, SeveralPieces_CountAsOne) {
    EXPECT_EQ(unpack(gzip("one\n") + gzip("two\n"), 3).text, "one\ntwo\n");
    EXPECT_EQ(unpack(zstd("one\n") + zstd("two\n"), 3).text, "one\ntwo\n");
    // Padding behind the last piece, as tapes and block devices leave it.
    EXPECT_EQ(unpack(gzip("one\n") + std::string(20, '\0'), 3).text, "one\n");
}

TEST(DecompressionTest, CutData_GivesWhatCameBefore_AndSaysSo) {
    const std::string text = longText();
    for (const std::string& packed : {gzip(text), zstd(text)}) {
        for (const std::size_t size : {packed.size() - 1, packed.size() / 2, packed.size() / 4 * 3}) {
            const Unpacked result = unpack(packed.substr(0, size), 1000);
            EXPECT_TRUE(result.notes.isCut) << size;
            EXPECT_TRUE(text.starts_with(result.text));
        }
        EXPECT_GT(unpack(packed.substr(0, packed.size() / 4 * 3), 1000).text.size(), text.size() / 4);
    }
}

TEST(DecompressionTest, BrokenData_IsRefused) {
    std::string packed = gzip(longText());
    packed[packed.size() / 2] = static_cast<char>(~packed[packed.size() / 2]);
    packed[packed.size() / 2 + 1] = static_cast<char>(~packed[packed.size() / 2 + 1]);
    try {
        unpack(packed, 1000);
        FAIL() << "the data is broken";
    } catch (const InputError& error) {
        EXPECT_STREQ(error.what(), "f: this is gzip, but its content is broken");
    }
    EXPECT_THROW(unpack("\x28\xb5\x2f\xfd"
                        "nothing of the kind",
                        1000),
                 InputError);
}

/// One frame of as many blocks as there are lines, each of which can be unpacked before the next one is there.
std::string zstdInBlocks(const std::vector<std::string>& lines) {
    ZSTD_CCtx* context = ZSTD_createCCtx();
    std::string packed(1000, '\0');
    ZSTD_outBuffer out{packed.data(), packed.size(), 0};
    for (const std::string& line : lines) {
        ZSTD_inBuffer in{line.data(), line.size(), 0};
        EXPECT_EQ(ZSTD_compressStream2(context, &out, &in, ZSTD_e_flush), 0U);
    }
    ZSTD_inBuffer none{nullptr, 0, 0};
    EXPECT_EQ(ZSTD_compressStream2(context, &out, &none, ZSTD_e_end), 0U);
    ZSTD_freeCCtx(context);
    packed.resize(out.pos);
    return packed;
}

/// What is given out, and the message behind it where the data is broken.
std::string outcome(const std::string& packed, std::size_t piece) {
    const ByteSource source = unpacked(inPieces(packed, piece), "f", std::make_shared<SourceNotes>());
    std::string result;
    std::vector<char> buffer(1000);
    try {
        while (const std::size_t count = source(buffer.data(), buffer.size())) {
            result.append(buffer.data(), count);
        }
    } catch (const InputError& error) {
        result += error.what();
    }
    return result;
}

TEST(DecompressionTest, BrokenData_GivesTheSame_HoweverItArrives) {
    const std::vector<std::string> lines{"the first line\n", "a second one, which is longer\n", "and a third\n"};
    std::size_t broken = 0;
    for (const std::string& packed : {zstdInBlocks(lines), gzip(lines[0]) + gzip(lines[1]) + gzip(lines[2])}) {
        for (std::size_t i = 0; i < packed.size(); ++i) {
            for (const unsigned change : {0x01U, 0x10U, 0xffU}) {
                std::string changed = packed;
                changed[i] = static_cast<char>(static_cast<unsigned char>(changed[i]) ^ change);
                const std::string whole = outcome(changed, changed.size());
                for (const std::size_t piece : {std::size_t{1}, std::size_t{7}, std::size_t{30}}) {
                    EXPECT_EQ(outcome(changed, piece), whole) << "byte " << i << ", change " << change;
                }
                broken += whole.find("broken") == std::string::npos ? 0 : 1;
            }
        }
    }
    EXPECT_GT(broken, 100U);
}

TEST(DecompressionTest, Recordings_ArePackedInEitherWay_AndRefusedStrictly) {
    const std::string text = kHeader + "[5,\"action\",0]\n[6,\"action\",1]\n";
    EXPECT_EQ(readText(gzip(text)).events, 2);
    EXPECT_EQ(readText(gzip(text)).compression, "gzip");
    EXPECT_TRUE(readText(gzip(text)).warnings().empty());
    EXPECT_EQ(readText(zstd(text)).events, 2);
    EXPECT_EQ(readText(gzip("640 400 100\n0\n1\n6 250\n0\n0\n0\n0\n")).form, RecordingForm::Dump);
    EXPECT_EQ(readingError(gzip(text), Reading::Strict),
              "f:1: the file is packed with gzip; strict reading wants plain text");
    EXPECT_EQ(readingError(zstd(text), Reading::Strict),
              "f:1: the file is packed with zstd; strict reading wants plain text");
}

TEST(DecompressionTest, CutRecordings_AreReadAsFarAsTheyGo) {
    std::string text = kHeader;
    for (int i = 0; i < 5000; ++i) {
        text += "[" + std::to_string(i * 10) + ",\"cursor\"," + std::to_string(i * 7919 % 1280) + ",5]\n";
    }
    const std::string packed = gzip(text);
    const Recording recording = readText(packed.substr(0, packed.size() / 2));
    EXPECT_TRUE(recording.archiveIsCut);
    EXPECT_GT(recording.events, 1000);
    EXPECT_THAT(recording.warnings().front(), HasSubstr("f: the gzip data is cut off; read as far as it goes, to 0:"));
    EXPECT_EQ(readingError(packed.substr(0, 12)), "f:1: the gzip data is cut off before its first line");
}

} // namespace
} // namespace OrvantaNS::command
