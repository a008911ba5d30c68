#include "scene_json.h"

#include <gmock/gmock.h>

#include <bit>
#include <cstring>
#include <limits>
#include <string>

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

SceneDescription Parsed(const std::string& text) {
    SceneDescription scene;
    std::string fault;
    EXPECT_TRUE(ParseSceneJson(text, scene, fault)) << fault;
    return scene;
}

std::string FaultOf(const std::string& text) {
    SceneDescription scene;
    std::string fault;
    EXPECT_FALSE(ParseSceneJson(text, scene, fault)) << text;
    return fault;
}

std::string Layer(const std::string& fields) {
    return "{\"length\": 1, \"layers\": [{" + fields + "}]}";
}

TEST(SceneJson, ReadsCameraAndLayers) {
    const SceneDescription scene = Parsed(R"({ "length": 3.5,  // seconds
        "camera": [{"time": 0, "x": 1, "y": 2, "z": 0.5}, {"time": 2, "ease": "inOut"}],
        "layers": [
          {"name": "Neon sign.png", "mode": "screen", "depth": 2.5,
           "rect": [1, 2.5, 3, 4], "opacity": 0.25},
          {"name": "b.png", "keys": [{"time": 0, "rect": [0, 0, 1, 1]},
           {"time": 1, "rect": [5, 6, 7, 8], "opacity": 0, "ease": "hold"}]}]})");
    EXPECT_EQ(scene.lengthSeconds, 3.5);
    ASSERT_THAT(scene.camera, SizeIs(2));
    EXPECT_EQ(scene.camera[0].x, 1);
    EXPECT_EQ(scene.camera[0].y, 2);
    EXPECT_EQ(scene.camera[0].z, 0.5);
    EXPECT_EQ(scene.camera[0].ease, SceneEase::kLinear);
    EXPECT_EQ(scene.camera[1].time, 2);
    EXPECT_EQ(scene.camera[1].ease, SceneEase::kInOut);
    ASSERT_THAT(scene.layers, SizeIs(2));
    const SceneLayer& first = scene.layers[0];
    EXPECT_EQ(first.name, "Neon sign.png");
    EXPECT_EQ(first.mode, 7);
    EXPECT_EQ(first.depth, 2.5);
    ASSERT_THAT(first.keys, SizeIs(1));
    EXPECT_EQ(first.keys[0].rect, (std::array<double, 4>{1, 2.5, 3, 4}));
    EXPECT_EQ(first.keys[0].opacity, 0.25);
    const SceneLayer& second = scene.layers[1];
    EXPECT_EQ(second.mode, 2);
    EXPECT_EQ(second.depth, 1);
    ASSERT_THAT(second.keys, SizeIs(2));
    EXPECT_EQ(second.keys[0].opacity, 1);
    EXPECT_EQ(second.keys[1].opacity, 0);
    EXPECT_EQ(second.keys[1].ease, SceneEase::kHold);
}

TEST(SceneJson, ModesHaveNamesAndNumbers) {
    const auto modeOf = [](const std::string& mode) {
        return Parsed(Layer("\"name\": \"a\", \"rect\": [0,0,1,1], \"mode\": " + mode))
            .layers[0]
            .mode;
    };
    EXPECT_EQ(modeOf("\"over\""), 2);
    EXPECT_EQ(modeOf("\"screen\""), 7);
    EXPECT_EQ(modeOf("\"dodge\""), 27);
    EXPECT_EQ(modeOf("-2147483648"), std::numeric_limits<std::int32_t>::min());
}

TEST(SceneJson, EveryEaseHasItsName) {
    const SceneDescription scene = Parsed(R"({"length": 1, "layers": [], "camera": [
        {"time": 0, "ease": "linear"}, {"time": 1, "ease": "in"}, {"time": 2, "ease": "out"},
        {"time": 3, "ease": "inOut"}, {"time": 4, "ease": "hold"}]})");
    const SceneEase wanted[] = {SceneEase::kLinear, SceneEase::kIn, SceneEase::kOut,
                                SceneEase::kInOut, SceneEase::kHold};
    ASSERT_THAT(scene.camera, SizeIs(5));
    for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(scene.camera[i].ease, wanted[i]);
}

TEST(SceneJson, FaultsNameTheirPlace) {
    EXPECT_THAT(FaultOf("{"), HasSubstr("parse error"));
    EXPECT_EQ(FaultOf("[]"), "must be an object");
    EXPECT_EQ(FaultOf("{\"length\": 1}"), "\"layers\" must be a list of layers");
    EXPECT_EQ(FaultOf("{\"length\": -1, \"layers\": []}"), "\"length\" must be 0 to 3600 seconds");
    EXPECT_EQ(FaultOf("{\"length\": \"1\", \"layers\": []}"), "\"length\" must be a number");
    EXPECT_EQ(FaultOf("{\"layer\": []}"), "\"layer\" is not known here");
    EXPECT_EQ(FaultOf("{\"layers\": [], \"camera\": [{\"z\": 1e300}]}"),
              "camera[0]: \"z\" is too large");
    EXPECT_EQ(FaultOf("{\"layers\": [], \"camera\": [{\"time\": 1}, {\"time\": 1}]}"),
              "camera[1]: its time must be later than that of the key before");
    EXPECT_EQ(FaultOf(Layer("\"rect\": [0,0,1,1]")),
              "layers[0]: \"name\" must be the name of a picture");
    EXPECT_EQ(FaultOf(Layer("\"name\": \"a\"")),
              "layers[0]: needs one of \"rect\", \"keys\" and \"sampled\"");
    EXPECT_EQ(FaultOf(Layer("\"name\": \"a\", \"rect\": [0,0,1,1], \"keys\": []")),
              "layers[0]: needs one of \"rect\", \"keys\" and \"sampled\"");
    EXPECT_EQ(FaultOf(Layer("\"name\": \"a\", \"rect\": [0,0,1]")),
              "layers[0]: \"rect\" must be [left, top, right, bottom]");
    EXPECT_EQ(FaultOf(Layer("\"name\": \"a\", \"keys\": []")),
              "layers[0].keys: must be a list of at least one key");
    EXPECT_EQ(FaultOf(Layer("\"name\": \"a\", \"opacity\": 1, \"keys\": []")),
              "layers[0]: \"opacity\" belongs into the keys");
    EXPECT_EQ(FaultOf(Layer("\"name\": \"a\", \"keys\": [{\"rect\": [0,0,1,1], \"ease\": 1}]")),
              "layers[0].keys[0]: \"ease\" must be \"linear\", \"in\", \"out\", \"inOut\" or "
              "\"hold\"");
    EXPECT_EQ(FaultOf(Layer("\"name\": \"a\", \"mode\": 2.5, \"rect\": [0,0,1,1]")),
              "layers[0]: \"mode\" must be \"over\", \"screen\", \"dodge\" or a whole number");
    EXPECT_EQ(FaultOf(Layer("\"name\": \"a\", \"mode\": 2147483648, \"rect\": [0,0,1,1]")),
              "layers[0]: \"mode\" must be \"over\", \"screen\", \"dodge\" or a whole number");
    EXPECT_EQ(
        FaultOf(Layer("\"name\": \"a\", \"mode\": 18446744073709551615, \"rect\": [0,0,1,1]")),
        "layers[0]: \"mode\" must be \"over\", \"screen\", \"dodge\" or a whole number");
    EXPECT_EQ(FaultOf(Layer("\"name\": \"a\", \"depth\": -1, \"rect\": [0,0,1,1]")),
              "layers[0]: \"depth\" must not be below 0");
    EXPECT_EQ(FaultOf(Layer("\"name\": \"a\", \"sampled\": [[0, 1]]")),
              "layers[0].sampled[0]: must be [frame, time, left, top, right, bottom, opacity]");
    EXPECT_EQ(FaultOf(Layer("\"name\": \"" + std::string(512, 'x') + "\", \"rect\": [0,0,1,1]")),
              "layers[0]: the name is longer than 511 bytes");
}

// Printing, reading and writing again gives the same bytes for any floats at all.
TEST(SceneJson, APrintedSceneComesBackByteForByte) {
    std::vector<ParallaxRecord> records = {{"Sky.png", 2, {}},
                                           {"quote\" and \\ slash", 31, {}},
                                           {"Lumi\xe8re.png", 7, {}},  // no UTF-8
                                           {"", -1, {}},
                                           {std::string(511, 'n'), 27, {}}};
    std::uint32_t state = 1;
    const auto bits = [&] { return state = state * 1664525u + 1013904223u; };
    for (int i = 0; i < 5000; ++i) {
        ParallaxKey key;
        key.frame = bits();
        for (float* field : {&key.time, &key.left, &key.top, &key.right, &key.bottom}) {
            *field = std::bit_cast<float>(bits());
        }
        key.opacity = static_cast<float>(i) / 60.0f;
        records[static_cast<std::size_t>(i) % 2].keys.push_back(key);
    }
    records[4].keys.push_back(
        {-0.0f, std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::infinity(),
         std::bit_cast<float>(0x7fc12345u), std::numeric_limits<float>::denorm_min(),
         std::numeric_limits<float>::max(), 0xffffffffu});
    const SceneDescription scene = Parsed(SceneJson(records));
    EXPECT_EQ(ParallaxSceneBytes(SampleScene(scene)), ParallaxSceneBytes(records));
}

TEST(SceneJson, FloatsArePrintedShort) {
    const std::vector<ParallaxRecord> records = {{"a", 27, {{0.1f, 2, 3, 4, 1, 0.05f, 3}}}};
    EXPECT_THAT(SceneJson(records), HasSubstr("\"mode\": \"dodge\""));
    EXPECT_THAT(SceneJson(records), HasSubstr("[3,0.05,0.1,2.0,3.0,4.0,1.0]"));
}

TEST(SceneJson, AnEmptySceneComesBack) {
    EXPECT_THAT(Parsed(SceneJson({})).layers, IsEmpty());
}

}  // namespace
