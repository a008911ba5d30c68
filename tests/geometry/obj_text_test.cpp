#include "geometry/obj_text.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

namespace {

using namespace std::string_literals;

std::uint32_t BitsOf(float value) {
    return std::bit_cast<std::uint32_t>(value);
}

// Reads one number with scanf, 0 where that fails, and the word behind it.
template <typename Number>
std::pair<Number, std::string> Scanned(const std::string& text, const char* format) {
    Number number{};
    int eaten = 0;
    std::FILE* file = fmemopen(const_cast<char*>(text.data()), text.size(), "r");
    if (std::fscanf(file, format, &number) != 1) number = Number{};
    eaten = static_cast<int>(std::ftell(file));
    std::fclose(file);
    return {number, text.substr(static_cast<std::size_t>(eaten))};
}

// What a reader has left behind a number: white space does not count.
std::string RestOf(ObjText& reader) {
    std::string rest;
    for (std::string_view word; reader.readWord(word);) rest += std::string(word) + " ";
    return rest;
}

std::string WordsOf(const std::string& text) {
    ObjText reader(text);
    return RestOf(reader);
}

void ExpectFloatAsScanf(const std::string& text) {
    const auto [expected, rest] = Scanned<float>(text, "%f");
    ObjText reader(text);
    EXPECT_EQ(BitsOf(reader.readFloat()), BitsOf(expected)) << text;
    EXPECT_EQ(RestOf(reader), WordsOf(rest)) << text;
}

void ExpectCorrectRounding(const std::string& text) {
    ObjText reader(text);
    ASSERT_EQ(BitsOf(reader.readFloat()), BitsOf(std::strtof(text.c_str(), nullptr))) << text;
}

TEST(ObjText, ReadsNumbersAsScanfDoes) {
    for (const char* text : {"1",
                             "-1",
                             "+1",
                             "0",
                             "-0",
                             "1.5",
                             ".5",
                             "-.5",
                             "5.",
                             "1e3",
                             "1E-3",
                             "1e+2",
                             "1.e2",
                             "1.5e2.5",
                             "1.2.3",
                             "--1",
                             "+-1",
                             "1-2",
                             "1+2",
                             "12abc",
                             "  7",
                             "\r\n\t 7",
                             "1,5",
                             "123456789012345678901234567890",
                             "0.0000000000000000000000000000000000000000000001",
                             "1e40",
                             "-1e40",
                             "1e-50",
                             "3.4028235e38",
                             "3.4028236e38",
                             "1.17549435e-38",
                             "1e-45",
                             "1e99999",
                             "1e-99999",
                             "0e99999",
                             "00012",
                             "1'000",
                             "\v\f7",
                             "16777217",
                             "0.1f"}) {
        ExpectFloatAsScanf(text);
    }
}

// These forms hold on every C library.
TEST(ObjText, GivesZeroForWhatIsNoNumberAndLeavesItsFirstCharacter) {
    for (const char* text : {"abc", "/1", "#", "\"1\"", "e5", "(1)", "\x80"}) {
        ObjText reader(text);
        EXPECT_EQ(reader.readFloat(), 0.0f);
        EXPECT_EQ(RestOf(reader), std::string(text) + " ");
    }
    ObjText nothing("");
    EXPECT_EQ(nothing.readFloat(), 0.0f);
    EXPECT_EQ(nothing.readInteger(), 0);
}

TEST(ObjText, EatsASignOrPointThatNoNumberFollows) {
    for (const char* text : {"-x", "+x", ".x", "-.x"}) {
        ObjText reader(text);
        EXPECT_EQ(reader.readFloat(), 0.0f);
        EXPECT_EQ(RestOf(reader), "x ") << text;
    }
}

TEST(ObjText, ReadsHexNumbersAndNames) {
    for (const char* text : {"0x10", "0x1.8p3", "-0XAp-2", "0x1p4000", "0x.8", "inf", "-INF",
                             "Infinity", "infinityx", "0xap1e2", "-infx"}) {
        ExpectFloatAsScanf(text);
    }
    ObjText nan("nan 2");
    EXPECT_TRUE(std::isnan(nan.readFloat()));
    EXPECT_EQ(nan.readFloat(), 2.0f);
}

TEST(ObjText, RoundsRandomDecimalsCorrectly) {
    std::mt19937 random(1);
    const auto below = [&](int count) { return static_cast<int>(random() % unsigned(count)); };
    for (int i = 0; i < 200000; ++i) {
        std::string text = below(2) != 0 ? "-" : "";
        const int before = below(12), after = below(12);
        for (int k = 0; k < before; ++k) text += static_cast<char>('0' + below(10));
        if (below(4) != 0) text += '.';
        for (int k = 0; k < after; ++k) text += static_cast<char>('0' + below(10));
        if (before + after == 0) text += '0';
        if (below(3) == 0) text += "e" + std::to_string(below(60) - 30);
        ExpectCorrectRounding(text);
    }
}

// The middle between two floats, a little less and a little more: where rounding twice goes wrong.
TEST(ObjText, RoundsTheMiddleBetweenTwoFloatsCorrectly) {
    std::mt19937 random(2);
    for (int i = 0; i < 50000; ++i) {
        const float low =
            std::bit_cast<float>(static_cast<std::uint32_t>(0x33000000u + random() % 0x1A000000u));
        const float high = std::nextafterf(low, HUGE_VALF);
        const double middle = (static_cast<double>(low) + static_cast<double>(high)) / 2;
        char text[128];
        for (int digits = 6; digits <= 24; ++digits) {
            std::snprintf(text, sizeof text, "%.*g", digits, middle);
            ExpectCorrectRounding(text);
        }
        std::snprintf(text, sizeof text, "%.60f", middle);
        ExpectCorrectRounding(text);
        ExpectCorrectRounding(std::string(text) + "1");
    }
}

TEST(ObjText, ReadsIntegersAsScanfDoes) {
    for (const char* text : {"1", "-1", "+7", "0", "007", "12/34", "/3", "-", "+", "--1", "-x", "x",
                             "  42 ", "1.5", "0x10", "2147483647", "-2147483647"}) {
        const auto [expected, rest] = Scanned<int>(text, "%d");
        ObjText reader(text);
        EXPECT_EQ(reader.readInteger(), expected) << text;
        EXPECT_EQ(RestOf(reader), WordsOf(rest)) << text;
    }
}

TEST(ObjText, HoldsIntegersThatAreTooLarge) {
    ObjText reader("2147483648 4294967297 18446744073709551617 -99999999999999999999999999 5");
    for (int i = 0; i < 3; ++i) EXPECT_EQ(reader.readInteger(), 2147483647);
    EXPECT_EQ(reader.readInteger(), -2147483647);
    EXPECT_EQ(reader.readInteger(), 5);
}

TEST(ObjText, SkipsCarriageReturnsBeforeACharacter) {
    ObjText reader("\r\r\nab\r");
    reader.readCharacter();
    std::string_view word;
    EXPECT_TRUE(reader.readWord(word));
    EXPECT_EQ(word, "ab");
    reader.readCharacter();
    reader.readCharacter();
    EXPECT_FALSE(reader.readWord(word));
}

TEST(ObjText, SkipsToBehindALineFeed) {
    ObjText reader("a b\r c\nd\n\ne");
    reader.skipLine();
    EXPECT_EQ(RestOf(reader), "d e ");
    reader.skipLine();
    EXPECT_EQ(RestOf(reader), "");
}

TEST(ObjText, KeepsANulInsideAWord) {
    const std::string text = "a\0b c"s;
    ObjText reader(text);
    std::string_view word;
    EXPECT_TRUE(reader.readWord(word));
    EXPECT_EQ(word, "a\0b"s);
}

}  // namespace
