#include "core/byte_stream.h"

#include <gtest/gtest.h>

namespace {

ByteReader ReaderOf(std::string_view text) {
    return ByteReader({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

// Not inlined: the compiler warns of impossible sizes where it sees the whole life of the writer.
[[gnu::noinline]] void WriteOneOfEach(ByteWriter& out) {
    out.writeText("text");
    out.writeU32(0x12345678);
    out.writeI32(-2);
    out.writeFloat(0.1f);
    out.writeByte(7);
    out.writeText(std::string_view("cut\0here", 8));
}

TEST(ByteReader, ReadsLittleEndianWords) {
    ByteReader in =
        ReaderOf(std::string_view("\x02\x50\x87\x86\xFF\xFF\xFF\xFF\x00\x00\xC0\x3F\x09", 13));
    EXPECT_EQ(in.readU32(), 0x86875002u);
    EXPECT_EQ(in.readI32(), -1);
    EXPECT_EQ(in.readFloat(), 1.5f);
    EXPECT_EQ(in.readByte(), 9);
    EXPECT_TRUE(in.atEnd());
    EXPECT_FALSE(in.ranShort());
}

TEST(ByteReader, GivesZerosPastTheEndAndRemembers) {
    ByteReader in = ReaderOf(std::string_view("\x01\x02", 2));
    EXPECT_EQ(in.readU32(), 0x0201u);
    EXPECT_TRUE(in.ranShort());
    EXPECT_TRUE(in.atEnd());
    EXPECT_EQ(in.readU32(), 0u);
    EXPECT_EQ(in.readFloat(), 0.0f);
    EXPECT_EQ(in.readText(10), "");
    EXPECT_EQ(in.remaining(), 0u);
    ByteReader empty({});
    EXPECT_EQ(empty.readByte(), 0);
    EXPECT_EQ(empty.readText(10), "");
}

TEST(ByteReader, ReadsTextsUpToTheirZero) {
    ByteReader in = ReaderOf(std::string_view("ab\0\0c\0", 6));
    EXPECT_EQ(in.readText(10), "ab");
    EXPECT_EQ(in.readText(10), "");
    EXPECT_EQ(in.readText(10), "c");
    EXPECT_TRUE(in.atEnd());
    EXPECT_FALSE(in.ranShort());
}

TEST(ByteReader, CutsALongTextAndPassesOverTheRest) {
    ByteReader in = ReaderOf(std::string_view("abcdef\0x\0", 9));
    EXPECT_EQ(in.readText(3), "abc");
    EXPECT_TRUE(in.cutText());
    EXPECT_EQ(in.readText(3), "x");
    EXPECT_FALSE(in.ranShort());
}

TEST(ByteReader, TakesTheRestForATextWithoutAnEnd) {
    ByteReader in = ReaderOf("abc");
    EXPECT_EQ(in.readText(10), "abc");
    EXPECT_TRUE(in.ranShort());
    EXPECT_TRUE(in.atEnd());
}

TEST(ByteWriter, WritesWhatTheReaderReads) {
    ByteWriter out;
    WriteOneOfEach(out);
    ByteReader in(out.bytes());
    EXPECT_EQ(in.readText(10), "text");
    EXPECT_EQ(in.readU32(), 0x12345678u);
    EXPECT_EQ(in.readI32(), -2);
    EXPECT_EQ(in.readFloat(), 0.1f);
    EXPECT_EQ(in.readByte(), 7);
    EXPECT_EQ(in.readText(10), "cut");
    EXPECT_TRUE(in.atEnd());
}

}  // namespace
