#include "core/ordered_map.h"

#include <gmock/gmock.h>

#include <memory>
#include <random>

namespace {

using ::testing::ElementsAre;
using ::testing::Pair;

std::vector<std::pair<std::string, int>> EntriesOf(const OrderedMap<std::string, int>& map) {
    return {map.begin(), map.end()};
}

TEST(OrderedMap, KeepsTheOrderInWhichKeysCame) {
    OrderedMap<std::string, int> map;
    map["z"] = 1;
    map["a"] = 2;
    map["m"] = 3;
    map["z"] = 4;
    EXPECT_THAT(EntriesOf(map), ElementsAre(Pair("z", 4), Pair("a", 2), Pair("m", 3)));
    EXPECT_TRUE(map.erase("z"));
    EXPECT_FALSE(map.erase("z"));
    map["z"] = 5;
    EXPECT_THAT(EntriesOf(map), ElementsAre(Pair("a", 2), Pair("m", 3), Pair("z", 5)));
}

TEST(OrderedMap, MakesNothingWhenItSearches) {
    OrderedMap<std::string, int> map;
    EXPECT_EQ(map.find("a"), nullptr);
    EXPECT_FALSE(map.contains("a"));
    EXPECT_TRUE(map.empty());
    EXPECT_EQ(map["a"], 0);
    EXPECT_EQ(map.size(), 1u);
}

TEST(OrderedMap, KeepsReferencesToOtherValuesValid) {
    OrderedMap<std::string, std::unique_ptr<int>> map;
    std::unique_ptr<int>& first = map["first"];
    first = std::make_unique<int>(7);
    for (int i = 0; i < 10000; ++i) map[std::to_string(i)];
    for (int i = 0; i < 10000; i += 2) map.erase(std::to_string(i));
    EXPECT_EQ(&first, map.find("first"));
    EXPECT_EQ(*first, 7);
}

TEST(OrderedMap, AnswersLikeAPlainListThroughAnyEdits) {
    OrderedMap<std::string, int> map;
    std::vector<std::pair<std::string, int>> list;
    std::mt19937 random(2);
    for (int i = 0; i < 5000; ++i) {
        const std::string key = "key " + std::to_string(random() % 40);
        const auto it = std::find_if(list.begin(), list.end(),
                                     [&](const auto& entry) { return entry.first == key; });
        if (random() % 3 == 0) {
            EXPECT_EQ(map.erase(key), it != list.end());
            if (it != list.end()) list.erase(it);
        } else {
            map[key] = i;
            if (it == list.end())
                list.emplace_back(key, i);
            else
                it->second = i;
        }
    }
    ASSERT_EQ(map.size(), list.size());
    auto entry = list.begin();
    for (const auto& [key, value] : map) {
        EXPECT_EQ(key, entry->first);
        EXPECT_EQ(value, entry->second);
        EXPECT_EQ(*map.find(key), value);
        ++entry;
    }
    map.clear();
    EXPECT_TRUE(map.empty());
    EXPECT_EQ(map.find("key 1"), nullptr);
}

}  // namespace
