// The player against the plain scan over all keys, bit by bit.
#include "core/animation_player.h"

#include <gtest/gtest.h>

#include <bit>
#include <limits>
#include <memory>
#include <random>

namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kMark = -12345.5f;

class AnimationPlayerTest : public ::testing::Test {
  protected:
    KeyframeTrack& add(std::vector<Keyframe> keys) {
        tracks_.push_back(std::make_unique<KeyframeTrack>());
        tracks_.back()->setKeys(std::move(keys));
        targets_.push_back(std::make_unique<float>(kMark));
        tracks_.back()->target = targets_.back().get();
        return *tracks_.back();
    }
    void compile() {
        std::vector<KeyframeTrack*> list;
        for (const auto& track : tracks_) list.push_back(track.get());
        player_.compile(list);
    }
    // Applies both ways and compares the bits of every target; NaNs by being NaNs, since the sign
    // of one that arises is the compiler's choice.
    void check(float time) {
        for (const auto& target : targets_) *target = kMark;
        player_.apply(time);
        for (std::size_t i = 0; i < tracks_.size(); ++i) {
            const float wanted = tracks_[i]->valueAt(time).value_or(kMark);
            const float got = *targets_[i];
            if (std::isnan(wanted) && std::isnan(got)) continue;
            ASSERT_EQ(std::bit_cast<std::uint32_t>(got), std::bit_cast<std::uint32_t>(wanted))
                << "track " << i << " at " << time << ": " << got << ", not " << wanted;
        }
    }
    float anyFloat(float low, float high) {
        return std::uniform_real_distribution<float>(low, high)(random_);
    }
    int any(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }

    std::vector<Keyframe> randomKeys(int count) {
        std::vector<Keyframe> keys;
        float time = anyFloat(-2, 20);
        for (int i = 0; i < count; ++i) {
            keys.push_back({anyFloat(-10, 10), time, any(-1, 4)});
            if (any(0, 5) != 0) time += anyFloat(0, 1);  // else a second key of one time
        }
        return keys;
    }
    // Now and then puts something into the keys that no editor makes.
    void damage(std::vector<Keyframe>& keys) {
        if (keys.empty()) return;
        constexpr float kOdd[] = {kNan, kInfinity, -kInfinity, 0.0f, -0.0f, 3e38f, 1e-42f};
        Keyframe& key = keys[static_cast<std::size_t>(any(0, static_cast<int>(keys.size()) - 1))];
        (any(0, 3) == 0 ? key.value : key.time) = kOdd[any(0, 6)];
    }

    std::mt19937 random_{7};
    std::vector<std::unique_ptr<KeyframeTrack>> tracks_;
    std::vector<std::unique_ptr<float>> targets_;
    AnimationPlayer player_;
};

TEST_F(AnimationPlayerTest, EqualsThePlainScanWhilePlayingForwards) {
    for (int i = 0; i < 1000; ++i) add(randomKeys(any(0, 100)));
    compile();
    for (int frame = -10; frame < 900; ++frame) check(static_cast<float>(frame) / 15.0f);
}

TEST_F(AnimationPlayerTest, EqualsThePlainScanAfterRandomSeeks) {
    for (int i = 0; i < 1000; ++i) add(randomKeys(any(0, 200)));
    compile();
    for (int i = 0; i < 500; ++i) check(anyFloat(-10, 130));
}

TEST_F(AnimationPlayerTest, EqualsThePlainScanExactlyAtAndBesideEveryKey) {
    for (const int count : {1, 2, 3, 31, 32, 33, 64, 65, 97}) add(randomKeys(count));
    compile();
    for (const auto& track : tracks_) {
        for (const Keyframe& key : track->keys()) {
            check(key.time);
            check(std::nextafter(key.time, -kInfinity));
            check(std::nextafter(key.time, kInfinity));
        }
    }
}

TEST_F(AnimationPlayerTest, EqualsThePlainScanOnUnsortedAndStrangeKeys) {
    for (int i = 0; i < 1000; ++i) {
        std::vector<Keyframe> keys = randomKeys(any(1, 40));
        for (int d = any(0, 3); d > 0; --d) damage(keys);
        if (any(0, 3) == 0) std::shuffle(keys.begin(), keys.end(), random_);
        add(std::move(keys));
    }
    compile();
    for (const float time : {-kInfinity, kInfinity, kNan, 0.0f, -0.0f, 3e38f, -3e38f}) check(time);
    for (int i = 0; i < 300; ++i) check(anyFloat(-10, 60));
    check(kNan);
    check(5);
}

TEST_F(AnimationPlayerTest, EqualsThePlainScanWithEditsBetweenTheFrames) {
    for (int i = 0; i < 50; ++i) add(randomKeys(any(0, 20)));
    for (int frame = 0; frame < 500; ++frame) {
        KeyframeTrack& track = *tracks_[static_cast<std::size_t>(any(0, 49))];
        const auto key = static_cast<std::size_t>(any(0, 20));
        switch (any(0, 3)) {
            case 0:
                track.insertKey(anyFloat(0, 30), anyFloat(-5, 5));
                break;
            case 1:
                track.eraseKey(key);
                break;
            case 2:
                track.setKeyMode(key, any(0, 3));
                break;
            default:
                track.setKeys(randomKeys(any(0, 20)));
                break;
        }
        compile();
        check(static_cast<float>(frame) / 20.0f);
    }
}

TEST_F(AnimationPlayerTest, SkipsTracksWithoutATarget) {
    add({{1, 0, 0}, {2, 1, 0}}).target = nullptr;
    KeyframeTrack& unsorted = add({{1, 1, 0}, {2, 0, 0}});
    unsorted.target = nullptr;
    compile();
    player_.apply(0.5f);
    player_.apply(kNan);
    EXPECT_EQ(*targets_[0], kMark);
    EXPECT_EQ(*targets_[1], kMark);
}

TEST_F(AnimationPlayerTest, LetsTheLaterOfTwoTracksOfOneTargetWinSortedOrNot) {
    for (const float time : {0.5f, kNan}) {
        for (const bool sortedLast : {false, true}) {
            tracks_.clear();
            targets_.clear();
            KeyframeTrack& first = add(sortedLast ? std::vector<Keyframe>{{1, kNan, 0}}
                                                  : std::vector<Keyframe>{{2, 0, 0}});
            KeyframeTrack& second = add(sortedLast ? std::vector<Keyframe>{{2, 0, 0}}
                                                   : std::vector<Keyframe>{{1, kNan, 0}});
            second.target = first.target;
            compile();
            player_.apply(time);
            EXPECT_EQ(*first.target, sortedLast ? 2.0f : 1.0f) << "at " << time;
        }
    }
}

}  // namespace
