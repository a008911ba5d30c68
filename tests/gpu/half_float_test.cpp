#include "gpu/half_float.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

double ValueOf(std::uint16_t bits) {
    const int exponent = bits >> 10 & 31, fraction = bits & 1023;
    const double size =
        exponent == 0 ? std::ldexp(fraction, -24) : std::ldexp(1024 + fraction, exponent - 25);
    return (bits & 0x8000) != 0 ? -size : size;
}

}  // namespace

TEST(HalfFloatTest, KeepsEveryHalfFloat) {
    for (unsigned bits = 0; bits < 0x7C00; ++bits) {
        const auto half = static_cast<std::uint16_t>(bits);
        EXPECT_EQ(HalfBits(static_cast<float>(ValueOf(half))), half);
        EXPECT_EQ(HalfBits(static_cast<float>(-ValueOf(half))), half | 0x8000);
    }
}

// Between two neighbours: the nearer, and of two alike the even one.
TEST(HalfFloatTest, TakesTheNearest) {
    for (unsigned bits = 0; bits + 1 < 0x7C00; ++bits) {
        const auto low = static_cast<std::uint16_t>(bits);
        const auto high = static_cast<std::uint16_t>(bits + 1);
        const double a = ValueOf(low), b = ValueOf(high);
        EXPECT_EQ(HalfBits(static_cast<float>(a + (b - a) * 0.499)), low);
        EXPECT_EQ(HalfBits(static_cast<float>(a + (b - a) * 0.501)), high);
        EXPECT_EQ(HalfBits(static_cast<float>((a + b) / 2)), bits % 2 == 0 ? low : high);
    }
}

TEST(HalfFloatTest, HasNoFiniteNumberAboveItsLargest) {
    EXPECT_EQ(HalfBits(65519.9f), 0x7BFF);
    EXPECT_EQ(HalfBits(65520.0f), 0x7C00);
    EXPECT_EQ(HalfBits(-1e30f), 0xFC00);
    EXPECT_EQ(HalfBits(std::numeric_limits<float>::infinity()), 0x7C00);
    EXPECT_GT(HalfBits(std::numeric_limits<float>::quiet_NaN()) & 0x7FFF, 0x7C00);
    EXPECT_EQ(HalfBits(1e-30f), 0);
}
