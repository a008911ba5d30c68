#include <gmock/gmock.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "core/random.h"
#include "geometry/geometry_node_randomize_material.h"
#include "geometry/material_node.h"
#include "support/geometry_fixture.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// The table in double precision from the formula, with a generator of its own.
struct Reference {
    double phase = 0, randomize = 0, saturation = 1, share = 1;
    std::array<double, 3> color = {0, 0, 0};

    struct Entry {
        std::array<double, 3> color;
        bool on;
    };
    std::vector<Entry> table(std::uint32_t seed, int count) const {
        std::uint32_t state = seed;
        const auto next = [&] {
            state = state * 214013u + 2531011u;
            return static_cast<int>(state >> 16 & 0x7FFFu);
        };
        std::vector<Entry> entries;
        for (int i = 0; i < count; ++i) {
            std::array<double, 3> c = color;
            for (double& channel : c) {
                const int v = (next() + static_cast<int>(phase * 10000)) % 20000 - 10000;
                channel *= 1 - (10000 - std::abs(v)) * randomize / 10000;
            }
            next();
            const double luma = c[0] * 0.2125 + c[1] * 0.7154 + c[2] * 0.0721;
            for (double& channel : c) channel = (1 - saturation) * luma + saturation * channel;
            entries.push_back({c, share > (next() % 1000) / 1000.0});
        }
        return entries;
    }
};

class RandomizeMaterialTest : public GeometryTest {
  protected:
    void setColor(float r, float g, float b, float a) {
        float* const color = node.materialTemplate.illumColor;
        color[0] = r;
        color[1] = g;
        color[2] = b;
        color[3] = a;
    }
    const MaterialData& entry(std::size_t index) const { return *node.materials.at(index); }
    int glowing() const {
        int count = 0;
        for (const auto& material : node.materials) count += material->illumination != 0 ? 1 : 0;
        return count;
    }
    void expectTable(const Reference& reference, std::uint32_t seed) {
        node.randomSeed = static_cast<float>(seed);
        node.variation.phase = static_cast<float>(reference.phase);
        node.variation.randomize = static_cast<float>(reference.randomize);
        node.variation.saturation = static_cast<float>(reference.saturation);
        node.illuminatedShare = static_cast<float>(reference.share);
        setColor(static_cast<float>(reference.color[0]), static_cast<float>(reference.color[1]),
                 static_cast<float>(reference.color[2]), 0.5f);
        EXPECT_TRUE(run(node));
        const auto expected = reference.table(seed, static_cast<int>(node.materials.size()));
        for (std::size_t i = 0; i < expected.size(); ++i) {
            for (std::size_t k = 0; k < 3; ++k) {
                // A handful of single-precision roundings of numbers below 4.
                EXPECT_NEAR(static_cast<double>(entry(i).illumColor[k]), expected[i].color[k],
                            1.5e-6);
            }
            EXPECT_EQ(entry(i).illumination != 0, expected[i].on) << "entry " << i;
            EXPECT_EQ(entry(i).illumColor[3], 0.5f);
        }
    }

    GeometryNode_RandomizeMaterial& node = add<GeometryNode_RandomizeMaterial>("vary");
    GeometrySource& model = add<GeometrySource>("model");
};

TEST_F(RandomizeMaterialTest, DeclaresItsParameters) {
    EXPECT_THAT(
        ParameterTable(engine, node),
        ElementsAre("Count text '15'", "Illumination float 0 to 10, 2 decimals, 1, animatable",
                    "Reflection float 0 to 10, 2 decimals, 1, animatable",
                    "Fresnel float 0.1 to 15, 2 decimals, 1, animatable",
                    "Illum Color vec4 0 0 0 1", "Illu% float 0 to 1, 2 decimals, 1, animatable",
                    "Saturation float 0 to 3, 2 decimals, 1, animatable",
                    "Randomize float 0 to 1, 2 decimals, 0, animatable",
                    "Random Phase float 0 to 200, 2 decimals, 0, animatable",
                    "Random Seed float 0 to 10000, 2 decimals, 5000, animatable"));
    EXPECT_EQ(node.materialTemplate.illumination, 1.0f);
    EXPECT_EQ(node.materialTemplate.reflection, 1.0f);
    EXPECT_EQ(node.materialTemplate.refFresnel, 2.5f);
}

TEST_F(RandomizeMaterialTest, TakesAModelAndTwoPictures) {
    auto& image = add<ImageSource>("image");
    EXPECT_THAT(node.inputNames, ElementsAre("Model", "Illumination", "Diffuse"));
    EXPECT_TRUE(node.canConnect(0, &model));
    EXPECT_FALSE(node.canConnect(0, &image));
    for (int port : {1, 2}) {
        EXPECT_TRUE(node.canConnect(port, &image));
        EXPECT_FALSE(node.canConnect(port, &model));
    }
    EXPECT_FALSE(node.canConnect(3, &image));
    EXPECT_FALSE(node.canConnect(3, &model));
    EXPECT_FALSE(node.canConnect(-1, &model));
    for (int port = 0; port < 3; ++port) EXPECT_FALSE(node.canConnect(port, nullptr));
}

TEST_F(RandomizeMaterialTest, MakesTheKnownTableOfASeed) {
    node.count = "4";
    node.randomSeed = 1234.9f;  // truncated
    node.variation.phase = 12.5f;
    node.variation.randomize = 0.75f;
    node.variation.saturation = 1.5f;
    node.illuminatedShare = 0.5f;
    setColor(0.8f, 0.4f, 0.2f, 1);
    run(node);
    constexpr double kKnown[4][3] = {{0.2635499, 0.2450849, 0.1292924},
                                     {0.3637509, 0.4068909, -0.0947091},
                                     {0.5770501, 0.3357901, -0.0977474},
                                     {0.9425973, 0.0917673, 0.0087798}};
    constexpr float kGlow[4] = {1, 1, 0, 0};
    ASSERT_EQ(node.materials.size(), 4u);
    for (std::size_t i = 0; i < 4; ++i) {
        for (std::size_t k = 0; k < 3; ++k) {
            // Known to seven decimals; the rest is a few roundings of numbers below 2.
            EXPECT_NEAR(static_cast<double>(entry(i).illumColor[k]), kKnown[i][k], 5e-7);
        }
        EXPECT_EQ(entry(i).illumination, kGlow[i]);
    }
}

TEST_F(RandomizeMaterialTest, FollowsItsFormula) {
    node.count = "100";
    for (const std::uint32_t seed : {0u, 1u, 5000u, 10000u}) {
        for (const double phase : {0.0, 0.25, 17.75, 200.0}) {
            expectTable({phase, 0.5, 2.25, 0.375, {0.75, 0.25, 1}}, seed);
            expectTable({phase, 1, 0, 0.875, {0.1, 0.9, 0.3}}, seed);
        }
    }
}

TEST_F(RandomizeMaterialTest, TakesFiveNumbersForAnEntry) {
    node.count = "3";
    run(node);
    const int after = Random::next();
    Random::seed(5000);
    for (int i = 0; i < 15; ++i) Random::next();
    EXPECT_EQ(after, Random::next());
}

TEST_F(RandomizeMaterialTest, WithoutRandomnessAllHaveTheTemplatesColour) {
    setColor(0.25f, 0.5f, 0.75f, 0.125f);
    run(node);
    ASSERT_EQ(node.materials.size(), 15u);
    for (const auto& material : node.materials) {
        // The saturation of 1 adds nothing: exact.
        EXPECT_THAT(material->illumColor, ElementsAre(0.25f, 0.5f, 0.75f, 0.125f));
    }
}

TEST_F(RandomizeMaterialTest, TheShareThatGlowsGoesFromNoneToAll) {
    node.count = "2000";
    node.illuminatedShare = 1;
    run(node);
    EXPECT_EQ(glowing(), 2000);
    node.illuminatedShare = 0;
    run(node);
    EXPECT_EQ(glowing(), 0);
    node.illuminatedShare = 0.25f;
    run(node);
    // A quarter of 2000, by six times its standard deviation of 19.
    EXPECT_NEAR(glowing(), 500, 116);
}

TEST_F(RandomizeMaterialTest, ScalesTheTemplate) {
    node.illumination = 3;
    node.fresnel = 2;
    node.reflection = 0.25f;
    node.materialTemplate.diffuse = 9;
    node.materialTemplate.blend = MaterialData::kAdd;
    run(node);
    EXPECT_EQ(entry(0).illumination, 3.0f);
    EXPECT_EQ(entry(0).refFresnel, 5.0f);
    EXPECT_EQ(entry(0).reflection, 0.25f);
    EXPECT_EQ(entry(0).diffuse, 1.0f);
    EXPECT_EQ(entry(0).blend, MaterialData::kAdd);
}

TEST_F(RandomizeMaterialTest, TakesItsPicturesAndKeepsThemAfterTheLinkIsCut) {
    auto& glow = add<ImageSource>("glow");
    auto& diffuse = add<ImageSource>("diffuse");
    link(glow, node, 1);
    link(diffuse, node, 2);
    run(node);
    EXPECT_EQ(entry(3).illuminationImage, glow.images[0]);
    EXPECT_EQ(entry(3).diffuseImage, diffuse.images[0]);
    const auto kept = glow.images[0];
    EXPECT_TRUE(engine.deleteNode("glow"));
    run(node);
    EXPECT_EQ(entry(3).illuminationImage, kept);
}

TEST_F(RandomizeMaterialTest, GivesMaterialsInTurnToTheObjectsOfItsInput) {
    for (const char* name : {"a", "b", "c", "d", "e"}) model.append(name, 7);
    model.objects[1].material = std::make_shared<MaterialData>();
    model.objects[2].transform[12] = 8;
    model.transform[13] = 4;
    node.count = "2";
    link(model, node, 0);
    run(node);
    EXPECT_THAT(NamesOf(node), ElementsAre("a", "b", "c", "d", "e"));
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(node.objects[i].material, node.materials[i % 2]);
        EXPECT_EQ(node.objects[i].vertexArray, 7u);
    }
    EXPECT_EQ(node.objects[2].transform[12], 8.0f);
    EXPECT_EQ(node.transform[13], 4.0f);
    EXPECT_EQ(model.objects[0].material, nullptr);
}

TEST_F(RandomizeMaterialTest, TheTableGrowsAndShrinksWithItsCount) {
    model.append("a");
    link(model, node, 0);
    run(node);
    const auto first = node.materials[0];
    node.count = "40 pieces";
    run(node);
    EXPECT_EQ(node.materials.size(), 40u);
    EXPECT_EQ(node.objects[0].material, first) << "what others hold stays up to date";
    node.count = "1";
    run(node);
    EXPECT_EQ(node.materials.size(), 1u);
}

TEST_F(RandomizeMaterialTest, WithoutACountObjectsKeepTheirMaterial) {
    const auto own = std::make_shared<MaterialData>();
    model.append("a").material = own;
    model.append("b");
    model.material = std::make_shared<MaterialData>();
    link(model, node, 0);
    for (const char* count : {"0", "-3", "many", "", "-99999999999999999999"}) {
        node.count = count;
        EXPECT_TRUE(run(node));
        EXPECT_THAT(node.materials, IsEmpty()) << count;
        ASSERT_EQ(node.objects.size(), 2u);
        EXPECT_EQ(node.objects[0].material, own);
        EXPECT_EQ(node.objects[1].material, model.material);
    }
}

TEST_F(RandomizeMaterialTest, AVastCountIsBounded) {
    for (const char* count : {"2000000000", "4294967296", "99999999999999999999"}) {
        node.count = count;
        EXPECT_TRUE(run(node));
        EXPECT_EQ(node.materials.size(), GeometryNode_RandomizeMaterial::kMaxMaterials);
    }
}

TEST_F(RandomizeMaterialTest, NumbersBeyondAnIntegerAreNoFault) {
    for (const float bad : {1e30f, -1e30f, std::numeric_limits<float>::quiet_NaN(), 214748.3f}) {
        node.variation.phase = bad;
        node.randomSeed = bad;
        node.variation.randomize = 1;
        setColor(1, 1, 1, 1);
        EXPECT_TRUE(run(node));
        // A drift is at most 10000 ten-thousandths either way.
        EXPECT_GE(entry(0).illumColor[0], 0.0f);
        EXPECT_LE(entry(0).illumColor[0], 2.0f);
    }
}

TEST_F(RandomizeMaterialTest, AnEmptiedPortLeavesTheObjects) {
    model.append("a");
    link(model, node, 0);
    run(node);
    EXPECT_TRUE(engine.disconnect("vary", 0));
    model.append("b");
    EXPECT_TRUE(run(node));
    EXPECT_THAT(NamesOf(node), ElementsAre("a"));
}

TEST_F(RandomizeMaterialTest, WithoutAModelTheTableIsStillFilled) {
    EXPECT_TRUE(run(node));
    EXPECT_EQ(node.materials.size(), 15u);
    EXPECT_THAT(node.objects, IsEmpty());
}

TEST_F(RandomizeMaterialTest, DoesNothingWhileRenderingIsOff) {
    model.append("a");
    link(model, node, 0);
    engine.refreshNodes();
    EXPECT_THAT(node.materials, IsEmpty());
    EXPECT_THAT(node.objects, IsEmpty());
}

TEST_F(RandomizeMaterialTest, ALinkToItselfIsNoFault) {
    link(node, node, 0);
    EXPECT_TRUE(run(node));
    EXPECT_THAT(node.objects, IsEmpty());
}

}  // namespace
