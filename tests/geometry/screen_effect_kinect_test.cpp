#include <gmock/gmock.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "core/random.h"
#include "geometry/geometry_node_screen_effect_kinect.h"
#include "geometry/material_node.h"
#include "support/geometry_fixture.h"

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsNull;
using testing::Not;

using Colour = std::array<double, 3>;

// The colours of the table in double precision, with a generator of its own.
std::vector<Colour> ReferenceColours(std::uint32_t seed, const Colour& base, double phase,
                                     double randomize, double saturation) {
    std::uint32_t state = seed;
    const auto next = [&] {
        state = state * 214013u + 2531011u;
        return static_cast<int>(state >> 16 & 0x7FFFu);
    };
    std::vector<Colour> colours;
    for (int entry = 0; entry < 15; ++entry) {
        Colour c = base;
        for (double& channel : c) {
            const int v = (next() + static_cast<int>(phase * 10000)) % 20000 - 10000;
            channel *= 1 - (10000 - std::abs(v)) * randomize / 10000;
        }
        next();
        const double luma = c[0] * 0.2125 + c[1] * 0.7154 + c[2] * 0.0721;
        for (double& channel : c) channel = (1 - saturation) * luma + saturation * channel;
        colours.push_back(c);
    }
    return colours;
}

class ScreenEffectTest : public GeometryTest {
  protected:
    ScreenEffectTest() : node_(add<GeometryNode_ScreenEffectKinect>("lights")) {
        setColour(1, 0.5f, 0.25f);
    }
    void setColour(float r, float g, float b) {
        float* const colour = node_.materialTemplate.illumColor;
        colour[0] = r;
        colour[1] = g;
        colour[2] = b;
        colour[3] = 0.75f;
    }
    GeometrySource& linkPuppet(int objects) {
        auto& puppet = add<GeometrySource>("puppet");
        for (int i = 0; i < objects; ++i) puppet.append("part" + std::to_string(i));
        link(puppet, node_, 0);
        return puppet;
    }
    void expectColours(double phase, double randomize, double saturation, std::uint32_t seed) {
        const auto expected = ReferenceColours(seed, {1, 0.5, 0.25}, phase, randomize, saturation);
        for (std::size_t entry = 0; entry < 15; ++entry) {
            for (std::size_t channel = 0; channel < 3; ++channel) {
                // A few roundings of numbers of up to 3.
                EXPECT_NEAR(static_cast<double>(node_.materials[entry]->illumColor[channel]),
                            expected[entry][channel], 1e-6)
                    << entry << " " << channel;
            }
            EXPECT_EQ(node_.materials[entry]->illumColor[3], 0.75f);
        }
    }

    GeometryNode_ScreenEffectKinect& node_;
};

TEST_F(ScreenEffectTest, DeclaresItsInputsAndParameters) {
    const auto& fresh = add<GeometryNode_ScreenEffectKinect>("fresh");
    EXPECT_THAT(ParameterTable(engine, fresh),
                ElementsAre("Illumination float 0 to 10, 2 decimals, 1, animatable",
                            "Reflection float 0 to 10, 2 decimals, 1, animatable",
                            "Fresnel float 0.1 to 15, 2 decimals, 1, animatable",
                            "Illum Color vec4 0 0 0 1",
                            "Saturation float 0 to 3, 2 decimals, 1, animatable",
                            "Handlight float 0 to 10, 2 decimals, 0, animatable",
                            "Randomize float 0 to 1, 2 decimals, 0, animatable",
                            "Random Phase float 0 to 200, 2 decimals, 0, animatable",
                            "Random Seed float 0 to 10000, 2 decimals, 5000, animatable"));
    EXPECT_THAT(fresh.inputNames, ElementsAre("Puppet", "Light Mask", "Diffuse"));
    EXPECT_EQ(fresh.getType(), 2);
    EXPECT_EQ(fresh.count, 15u);
}

TEST_F(ScreenEffectTest, BindsEachParameterToItsMember) {
    const auto member = [&](const char* name) { return FloatMember(engine, node_, name); };
    EXPECT_EQ(member("Illumination"), &node_.illumination);
    EXPECT_EQ(member("Reflection"), &node_.reflection);
    EXPECT_EQ(member("Fresnel"), &node_.fresnel);
    EXPECT_EQ(member("Saturation"), &node_.variation.saturation);
    EXPECT_EQ(member("Handlight"), &node_.handlight);
    EXPECT_EQ(member("Randomize"), &node_.variation.randomize);
    EXPECT_EQ(member("Random Phase"), &node_.variation.phase);
    EXPECT_EQ(member("Random Seed"), &node_.randomSeed);
}

TEST_F(ScreenEffectTest, TakesGeometryAndPictures) {
    const auto& geometry = add<GeometrySource>("geometry");
    const auto& image = add<ImageSource>("image");
    for (int port = -1; port < 5; ++port) {
        EXPECT_EQ(node_.canConnect(port, &geometry), port == 0) << port;
        EXPECT_EQ(node_.canConnect(port, &image), port == 1 || port == 2) << port;
        EXPECT_FALSE(node_.canConnect(port, nullptr)) << port;
    }
}

TEST_F(ScreenEffectTest, GivesAllTheTemplatesColourWithoutRandomness) {
    run(node_);
    expectColours(0, 0, 1, 5000);
    EXPECT_EQ(node_.materials[7]->illumColor[1], 0.5f);
}

TEST_F(ScreenEffectTest, DrawsItsColoursFromTheSeed) {
    node_.variation.randomize = 1;
    run(node_);
    expectColours(0, 1, 1, 5000);
    node_.randomSeed = 17.9f;
    node_.variation.randomize = 0.5f;
    run(node_);
    expectColours(0, 0.5, 1, 17);
}

// The first numbers that seed 5000 gives are 16366, 10231, 16527, 27677 (dropped) and 4895.
TEST_F(ScreenEffectTest, HasFixedColoursForAFixedSeed) {
    node_.variation.randomize = 1;
    run(node_);
    // Single numbers in [0, 1].
    EXPECT_NEAR(static_cast<double>(node_.materials[0]->illumColor[0]), 0.6366, 1e-6);
    EXPECT_NEAR(static_cast<double>(node_.materials[0]->illumColor[1]), 0.0231 / 2, 1e-6);
    EXPECT_NEAR(static_cast<double>(node_.materials[0]->illumColor[2]), 0.6527 / 4, 1e-6);
    EXPECT_NEAR(static_cast<double>(node_.materials[1]->illumColor[0]), 1 - 0.4895, 1e-6);
}

TEST_F(ScreenEffectTest, DrawsFourNumbersForEachEntry) {
    run(node_);
    const int next = Random::next();
    Random::seed(5000);
    for (int i = 0; i < 60; ++i) Random::next();
    EXPECT_EQ(Random::next(), next);
}

TEST_F(ScreenEffectTest, DriftsWithThePhase) {
    node_.variation.randomize = 1;
    for (const float phase : {0.5f, 1.25f, 3.0f, 199.5f}) {
        node_.variation.phase = phase;
        run(node_);
        expectColours(static_cast<double>(phase), 1, 1, 5000);
    }
}

TEST_F(ScreenEffectTest, SaturatesItsColours) {
    node_.variation.randomize = 0.7f;
    for (const float saturation : {0.0f, 0.5f, 3.0f}) {
        node_.variation.saturation = saturation;
        run(node_);
        expectColours(0, static_cast<double>(0.7f), static_cast<double>(saturation), 5000);
    }
}

TEST_F(ScreenEffectTest, MultipliesTheTemplatesSurface) {
    node_.illumination = 4;
    node_.reflection = 3;
    node_.fresnel = 2;
    run(node_);
    for (const auto& material : node_.materials) {
        EXPECT_EQ(material->illumination, 4);
        EXPECT_EQ(material->reflection, 3);
        EXPECT_EQ(material->refFresnel, 5);
        EXPECT_EQ(material->diffuse, 1);
    }
}

TEST_F(ScreenEffectTest, GivesObjectsItsMaterialsInTurn) {
    linkPuppet(40);
    run(node_);
    ASSERT_EQ(node_.objects.size(), 40u);
    for (std::size_t i = 0; i < 40; ++i) {
        EXPECT_EQ(node_.objects[i].material, node_.materials[i % 15]) << i;
        EXPECT_EQ(node_.objects[i].name, "part" + std::to_string(i));
    }
}

TEST_F(ScreenEffectTest, LeavesThePuppetAsItIs) {
    auto& puppet = linkPuppet(2);
    puppet.transform[12] = 9;
    puppet.objects[1].transform[13] = 4;
    run(node_);
    EXPECT_EQ(node_.transform[12], 9);
    EXPECT_EQ(node_.objects[1].transform[13], 4);
    for (const GeometryObject& object : puppet.objects) EXPECT_EQ(object.material, nullptr);
}

TEST_F(ScreenEffectTest, LightsTheRightHandByItself) {
    auto& puppet = linkPuppet(3);
    puppet.append("xRIGHT_HAND_1");
    puppet.append("LEFT_HAND");
    node_.illumination = 2;
    node_.fresnel = 3;
    node_.handlight = 0.5f;
    node_.variation.randomize = 1;
    run(node_);
    EXPECT_NE(node_.materials[0]->illumColor[1], node_.materials[3]->illumColor[1]);
    EXPECT_EQ(node_.objects[3].material, node_.handMaterial);
    EXPECT_EQ(node_.objects[4].material, node_.materials[4]);
    EXPECT_EQ(node_.handMaterial->illumination, 0.5f);
    EXPECT_EQ(node_.handMaterial->refFresnel, 7.5f);
    EXPECT_EQ(node_.handMaterial->illumColor[1], node_.materials[0]->illumColor[1]);
    EXPECT_EQ(node_.materials[0]->illumination, 2);
}

TEST_F(ScreenEffectTest, GivesTheHandItsTurnWithoutAHandlight) {
    auto& puppet = linkPuppet(3);
    puppet.append("RIGHT_HAND");
    node_.handlight = 2;
    run(node_);
    node_.handlight = 0;
    run(node_);
    EXPECT_EQ(node_.objects[3].material, node_.materials[3]);
    EXPECT_EQ(node_.handMaterial->illumination, node_.materials[0]->illumination);
}

TEST_F(ScreenEffectTest, UsesNoHandMaterialWithoutARightHand) {
    linkPuppet(20);
    node_.handlight = 2;
    run(node_);
    for (const GeometryObject& object : node_.objects) {
        EXPECT_NE(object.material, node_.handMaterial);
    }
}

TEST_F(ScreenEffectTest, TakesItsPicturesAndKeepsThemWhenALinkIsCut) {
    const auto& mask = add<ImageSource>("mask");
    const auto& diffuse = add<ImageSource>("diffuse");
    link(mask, node_, 1);
    link(diffuse, node_, 2);
    run(node_);
    engine.disconnect("lights", 1);
    engine.disconnect("lights", 2);
    const auto maskImage = mask.images[0], diffuseImage = diffuse.images[0];
    engine.deleteNode("mask");
    run(node_);
    EXPECT_EQ(node_.materials[14]->illuminationImage, maskImage);
    EXPECT_EQ(node_.materials[14]->diffuseImage, diffuseImage);
}

TEST_F(ScreenEffectTest, KeepsItsObjectsWithoutAPuppet) {
    linkPuppet(3);
    run(node_);
    engine.deleteNode("puppet");
    EXPECT_TRUE(run(node_));
    EXPECT_EQ(node_.objects.size(), 3u);
}

TEST_F(ScreenEffectTest, DoesNothingWhileTheGpuIsOff) {
    linkPuppet(3);
    engine.renderEnabled = 0;
    EXPECT_TRUE(node_.process());
    EXPECT_THAT(node_.objects, IsEmpty());
}

TEST_F(ScreenEffectTest, LeavesItsMaterialsToThoseWhoWearThem) {
    linkPuppet(1);
    run(node_);
    const GeometryObject worn = node_.objects[0];
    engine.deleteNode("lights");
    EXPECT_EQ(worn.material->illumColor[0], 1);
}

TEST_F(ScreenEffectTest, SurvivesAnyNumbers) {
    linkPuppet(1);
    const float inf = std::numeric_limits<float>::infinity();
    for (const float number : {inf, -inf, 1e30f, -1e30f, std::nanf("")}) {
        node_.randomSeed = number;
        node_.variation.phase = number;
        node_.variation.randomize = number;
        EXPECT_TRUE(run(node_));
    }
}

TEST(ColourDrift, IsATriangleWaveOfThePhase) {
    EXPECT_EQ(Drift(0, 0, 1), 0);
    EXPECT_EQ(Drift(5000, 0, 1), 0.5f);
    EXPECT_EQ(Drift(10000, 0, 1), 1);
    EXPECT_EQ(Drift(15000, 0, 1), 0.5f);
    EXPECT_EQ(Drift(20000, 0, 1), 0);
    EXPECT_EQ(Drift(5000, 1, 1), 0.5f);
    EXPECT_EQ(Drift(5000, 1.5f, 0.5f), 0);
    EXPECT_EQ(Drift(10000, 0, 0.25f), 0.25f);
}

TEST(ColourDrift, TruncatesItsPhaseToTenThousandths) {
    EXPECT_EQ(Drift(0, 0.00017f, 1), 1 / 10000.0f);
    EXPECT_EQ(Drift(100, -0.00017f, 1), 99 / 10000.0f);
    EXPECT_EQ(Drift(0, 0.99999f, 1), 9999 / 10000.0f);
}

TEST(ColourDrift, TakesWhatNoIntegerHoldsForTheSmallestOne) {
    // The smallest 32-bit integer lies 3648 before a multiple of the wave's 20000 (its remainder in
    // the manner of C is -3648, which a wave that starts at -10000 carries below 0).
    for (const float bad : {1e30f, -1e30f, std::nanf("")}) {
        EXPECT_EQ(Drift(0, bad, 1), -3648 / 10000.0f) << bad;
    }
}

}  // namespace
