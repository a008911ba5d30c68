#include "image/parallax_scene.h"

#include <gmock/gmock.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <string>

#include "core/byte_stream.h"

namespace {

using testing::IsEmpty;
using testing::SizeIs;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

// The bytes of a record, written field by field.
struct Bytes {
    ByteWriter writer;

    Bytes& head(const std::string& name, std::int32_t mode, std::int32_t count) {
        std::string field = name;
        field.resize(512, '\0');
        writer.write(field.data(), field.size());
        writer.writeI32(mode);
        writer.writeI32(count);
        return *this;
    }
    Bytes& key(std::uint32_t frame, float time, float left, float top, float right, float bottom,
               float opacity) {
        writer.writeU32(frame);
        for (const float value : {time, left, top, right, bottom, opacity}) {
            writer.writeFloat(value);
        }
        return *this;
    }
    std::vector<ParallaxRecord> read(std::size_t cut = 0) {
        const auto all = writer.bytes();
        return ReadParallaxScene(all.first(all.size() - cut), fault);
    }
    std::string fault = "unset";
};

ParallaxKey Key(float time, float left = 0, float opacity = 1) {
    return {left, 10, left + 100, 60, opacity, time, 0};
}

// A key for each 60th of a second; the place of key i is `step` * i.
std::vector<ParallaxKey> Track(int count, float step) {
    std::vector<ParallaxKey> keys;
    for (int i = 0; i < count; ++i) {
        keys.push_back(Key(static_cast<float>(i) / 60.0f, step * static_cast<float>(i)));
    }
    return keys;
}

double ClipX(double x) {
    return x * 2 / 1920 - 1;
}

// Left edge in pixels.
double LeftAt(std::span<const ParallaxKey> keys, float seconds) {
    const auto place = ParallaxPlaceAt(keys, seconds, 1);
    return place ? (static_cast<double>(place->x0) + 1) * 960 : -1e9;
}

// Clip space holds 2 / 1920 a pixel; 24 bits at values near 1.
constexpr double kPixelTolerance = 3e-4;

TEST(ParallaxScene, ReadsTheFieldsInTheOrderOfTheFile) {
    Bytes bytes;
    bytes.head("Sky.png", 2, 2).key(7, 0.5f, 1, 2, 3, 4, 0.25f).key(8, 0.75f, 5, 6, 7, 8, 1);
    bytes.head("Neon.png", 27, 1).key(0, 0, -1, -2, -3, -4, 0.5f);
    const auto records = bytes.read();
    ASSERT_THAT(records, SizeIs(2));
    EXPECT_EQ(bytes.fault, "");
    EXPECT_EQ(records[0].name, "Sky.png");
    EXPECT_EQ(records[0].mode, 2);
    ASSERT_THAT(records[0].keys, SizeIs(2));
    const ParallaxKey& key = records[0].keys[0];
    EXPECT_EQ(key.frame, 7u);
    EXPECT_EQ(key.time, 0.5f);
    EXPECT_EQ(key.left, 1);
    EXPECT_EQ(key.top, 2);
    EXPECT_EQ(key.right, 3);
    EXPECT_EQ(key.bottom, 4);
    EXPECT_EQ(key.opacity, 0.25f);
    EXPECT_EQ(records[0].keys[1].time, 0.75f);
    EXPECT_EQ(records[1].name, "Neon.png");
    EXPECT_EQ(records[1].mode, 27);
    EXPECT_EQ(records[1].keys[0].bottom, -4);
}

TEST(ParallaxScene, KeysLieInTheOrderOfTheirUse) {
    EXPECT_EQ(sizeof(ParallaxKey), 28u);
    EXPECT_EQ(offsetof(ParallaxKey, opacity), 16u);
    EXPECT_EQ(offsetof(ParallaxKey, time), 20u);
    EXPECT_EQ(offsetof(ParallaxKey, frame), 24u);
}

TEST(ParallaxScene, NothingIsAnEmptyScene) {
    std::string fault = "unset";
    EXPECT_THAT(ReadParallaxScene({}, fault), IsEmpty());
    EXPECT_EQ(fault, "");
}

TEST(ParallaxScene, ARecordWithoutKeysIsWhole) {
    Bytes bytes;
    bytes.head("a", 2, 0).head("b", 2, 1).key(0, 0, 1, 2, 3, 4, 1);
    const auto records = bytes.read();
    ASSERT_THAT(records, SizeIs(2));
    EXPECT_EQ(bytes.fault, "");
    EXPECT_THAT(records[0].keys, IsEmpty());
    EXPECT_EQ(records[1].name, "b");
}

TEST(ParallaxScene, ACountBelowZeroIsARecordWithoutKeysAndIsTold) {
    Bytes bytes;
    bytes.head("a", 2, -1).head("b", 2, 1).key(0, 0, 1, 2, 3, 4, 1);
    const auto records = bytes.read();
    ASSERT_THAT(records, SizeIs(2));
    EXPECT_THAT(records[0].keys, IsEmpty());
    EXPECT_THAT(records[1].keys, SizeIs(1));
    EXPECT_EQ(bytes.fault, "layer 1 has a count of keys below 0");
}

TEST(ParallaxScene, AHugeCountGivesTheKeysThatAreThere) {
    Bytes bytes;
    bytes.head("a", 2, 2000000000).key(0, 0, 1, 2, 3, 4, 1).key(1, 1, 5, 6, 7, 8, 1);
    const auto records = bytes.read(3);
    ASSERT_THAT(records, SizeIs(1));
    EXPECT_THAT(records[0].keys, SizeIs(1));
    EXPECT_LE(records[0].keys.capacity(), 2u);
    EXPECT_EQ(bytes.fault, "layer 1 has fewer keys than it says");
}

TEST(ParallaxScene, AFileCutInARecordKeepsWhatStandsBeforeIt) {
    Bytes whole;
    whole.head("a", 2, 1).key(0, 0, 1, 2, 3, 4, 1);
    whole.head("b", 2, 2).key(0, 0, 1, 2, 3, 4, 1).key(1, 1, 1, 2, 3, 4, 1);
    EXPECT_THAT(whole.read(), SizeIs(2));
    EXPECT_EQ(whole.fault, "");
    EXPECT_THAT(whole.read(28), SizeIs(2));  // one whole key left
    EXPECT_EQ(whole.fault, "layer 2 has fewer keys than it says");
    EXPECT_THAT(whole.read(29), SizeIs(1));  // none
    EXPECT_EQ(whole.fault, "layer 2 has fewer keys than it says");
    EXPECT_THAT(whole.read(57), SizeIs(1));  // in the count
    EXPECT_EQ(whole.fault, "layer 2 is cut short");
    EXPECT_THAT(whole.read(2 * 28 + 519), SizeIs(1));  // one byte of the name
    EXPECT_EQ(whole.fault, "layer 2 is cut short");
}

TEST(ParallaxScene, ANameWithoutAnEndIsTheWholeField) {
    Bytes bytes;
    bytes.head(std::string(512, 'x'), 2, 1).key(0, 0, 1, 2, 3, 4, 1);
    const auto records = bytes.read();
    ASSERT_THAT(records, SizeIs(1));
    EXPECT_EQ(records[0].name, std::string(512, 'x'));
    EXPECT_EQ(bytes.fault, "layer 1 has a name without an end");
}

TEST(ParallaxScene, WritesTheBytesThatItRead) {
    Bytes bytes;
    bytes.head("Sky.png", 2, 2).key(7, 0.1f, 1, 2, 3, 4, kNaN).key(8, -0.0f, 5, 6, 7, 8, 1);
    bytes.head("none", -5, 0);
    const auto again = ParallaxSceneBytes(bytes.read());
    const auto before = bytes.writer.bytes();
    ASSERT_EQ(again.size(), before.size());
    EXPECT_EQ(std::memcmp(again.data(), before.data(), again.size()), 0);
}

TEST(ParallaxScene, LongNamesAreCutToTheField) {
    const std::vector<ParallaxRecord> records = {{std::string(600, 'y'), 2, {Key(0)}}};
    std::string fault;
    const auto again = ReadParallaxScene(ParallaxSceneBytes(records), fault);
    ASSERT_THAT(again, SizeIs(1));
    EXPECT_EQ(again[0].name, std::string(511, 'y'));
    EXPECT_EQ(fault, "");
}

TEST(ParallaxPlace, OneKeyStandsStill) {
    const std::vector<ParallaxKey> keys = {Key(5, 96, 0.5f)};
    for (const float t : {-3.0f, 0.0f, 2.0f, 5.0f, 100.0f}) {
        const auto place = ParallaxPlaceAt(keys, t, 1);
        ASSERT_TRUE(place.has_value());
        EXPECT_NEAR(place->x0, ClipX(96), 1e-6);  // single precision
        EXPECT_NEAR(place->x1, ClipX(196), 1e-6);
        EXPECT_NEAR(place->y0, 10.0 * 2 / 1080 - 1, 1e-6);
        EXPECT_NEAR(place->y1, 60.0 * 2 / 1080 - 1, 1e-6);
        EXPECT_EQ(place->opacity, 0.5f);
    }
}

TEST(ParallaxPlace, ALayerWithoutKeysHasNone) {
    EXPECT_FALSE(ParallaxPlaceAt({}, 0, 1).has_value());
}

TEST(ParallaxPlace, FirstAndLastKeyHold) {
    const auto keys = Track(10, 8);
    EXPECT_NEAR(LeftAt(keys, -2), 0, kPixelTolerance);
    EXPECT_NEAR(LeftAt(keys, 0.016f), 0, kPixelTolerance);
    EXPECT_NEAR(LeftAt(keys, 9.0f / 60), 72, kPixelTolerance);
    EXPECT_NEAR(LeftAt(keys, 100), 72, kPixelTolerance);
    EXPECT_NEAR(LeftAt(keys, 1e30f), 72, kPixelTolerance);
    EXPECT_NEAR(LeftAt(keys, -1e30f), 0, kPixelTolerance);
}

// Between keys i and i + 1 the fraction runs over [i - 1, i + 1], so that the mix from i to i + 1
// begins half way.
TEST(ParallaxPlace, TheFractionRunsOverBothIntervalsAroundAKey) {
    const auto keys = Track(20, 8);
    for (int step = 0; step < 180; ++step) {
        const double frame = 1.05 + 0.1 * step;
        if (frame >= 18) break;
        const auto i = std::floor(frame);
        const double f = (frame - (i - 1)) / 2;
        // The times of keys are single precision: 1e-8 of a second, 5e-6 of a pixel here.
        EXPECT_NEAR(LeftAt(keys, static_cast<float>(frame / 60)), 8 * (i + f), 1e-3) << frame;
    }
}

TEST(ParallaxPlace, OpacityIsMixedAndMultiplied) {
    auto keys = Track(3, 0);
    keys[1].opacity = 0.2f;
    keys[2].opacity = 0.6f;
    // At 1.5 frames: f = 1.5 / 2.
    const auto place = ParallaxPlaceAt(keys, 1.5f / 60, 0.5f);
    ASSERT_TRUE(place.has_value());
    EXPECT_NEAR(place->opacity, (0.25 * 0.2 + 0.75 * 0.6) * 0.5, 1e-6);  // single precision
}

TEST(ParallaxPlace, OpacityThatIsNotAboveZeroIsNoPlace) {
    for (const float opacity : {0.0f, -0.5f, kNaN}) {
        const std::vector<ParallaxKey> keys = {Key(0, 0, opacity)};
        EXPECT_FALSE(ParallaxPlaceAt(keys, 0, 1).has_value()) << opacity;
    }
    const std::vector<ParallaxKey> keys = {Key(0, 0, 0.0001f)};
    EXPECT_TRUE(ParallaxPlaceAt(keys, 0, 1).has_value());
    EXPECT_FALSE(ParallaxPlaceAt(keys, 0, 0).has_value());
}

TEST(ParallaxPlace, TheWalkFindsTimesThatAreNotAtTheirIndex) {
    // 10 keys a second.
    std::vector<ParallaxKey> slow;
    for (int i = 0; i < 10; ++i) {
        slow.push_back(Key(static_cast<float>(i) / 10, 8 * static_cast<float>(i)));
    }
    // Begins at the last key and does not walk at all.
    EXPECT_NEAR(LeftAt(slow, 0.55f), 72, kPixelTolerance);
    // Begins at key 6 and walks down to key 2, whose two intervals hold the time.
    EXPECT_NEAR(LeftAt(slow, 0.11f), 8 * (2 + (0.11 - 0.1) / 0.2), 1e-3);
    // 240 keys a second: begins at 11 and walks up to 47.
    std::vector<ParallaxKey> fast;
    for (int i = 0; i < 100; ++i) {
        fast.push_back(Key(static_cast<float>(i) / 240, 8 * static_cast<float>(i)));
    }
    EXPECT_NEAR(LeftAt(fast, 47.5f / 240), 8 * (47 + 0.75), 1e-2);
}

TEST(ParallaxPlace, AWalkOffTheTrackLeavesTheKeyThatItBeganAt) {
    std::vector<ParallaxKey> keys = Track(10, 8);
    for (ParallaxKey& key : keys) key.time += 100;
    EXPECT_NEAR(LeftAt(keys, 5.2f / 60), 40, kPixelTolerance);  // down to key 0
    for (ParallaxKey& key : keys) key.time -= 200;
    EXPECT_NEAR(LeftAt(keys, 5.2f / 60), 40, kPixelTolerance);  // up to key 9
}

TEST(ParallaxPlace, TimesOutOfOrderEndTheWalk) {
    // From key 2 the walk goes up, as the time is above that of key 3, from key 3 down, as it is
    // below that of key 2, and so on.
    std::vector<ParallaxKey> keys = Track(8, 8);
    keys[1].time = 0;
    keys[2].time = 9;
    keys[3].time = 0;
    keys[4].time = 10;
    EXPECT_NEAR(LeftAt(keys, 2.0f / 60 + 0.001f), 16, kPixelTolerance);
}

TEST(ParallaxPlace, EqualTimesHideTheLayerForThatMoment) {
    std::vector<ParallaxKey> keys = Track(5, 8);
    keys[1].time = keys[2].time = keys[3].time = 0.04f;  // 0 / 0 at key 2
    EXPECT_FALSE(ParallaxPlaceAt(keys, 0.04f, 1).has_value());
}

TEST(ParallaxPlace, NumbersThatAreNoneEndTheWalk) {
    std::vector<ParallaxKey> keys = Track(8, 8);
    EXPECT_NEAR(LeftAt(keys, kNaN), 0, kPixelTolerance);
    for (ParallaxKey& key : keys) key.time = kNaN;
    EXPECT_NEAR(LeftAt(keys, 3.5f / 60), 24, kPixelTolerance);
    EXPECT_NEAR(LeftAt(keys, kNaN), 0, kPixelTolerance);
    const float infinite = std::numeric_limits<float>::infinity();
    EXPECT_NEAR(LeftAt(keys, infinite), 56, kPixelTolerance);
    EXPECT_NEAR(LeftAt(keys, -infinite), 0, kPixelTolerance);
}

}  // namespace
