#include "core/random.h"

#include <gmock/gmock.h>

#include <cstdint>

namespace {

using ::testing::ElementsAre;

TEST(Random, GivesTheKnownNumbersOfTheWindowsRunTime) {
    Random::seed(1);
    std::vector<int> numbers;
    for (int i = 0; i < 5; ++i) numbers.push_back(Random::next());
    EXPECT_THAT(numbers, ElementsAre(41, 18467, 6334, 26500, 19169));
}

TEST(Random, GivesTheSameNumbersForASeed) {
    Random::seed(12345);
    const int first = Random::next();
    Random::next();
    Random::seed(12345);
    EXPECT_EQ(Random::next(), first);
}

TEST(Random, StaysWithinFifteenBits) {
    Random::seed(0xFFFFFFFF);
    for (int i = 0; i < 100000; ++i) {
        const int number = Random::next();
        ASSERT_GE(number, 0);
        ASSERT_LE(number, Random::kMax);
    }
}

}  // namespace
