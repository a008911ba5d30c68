#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <vector>

#include "core/random.h"
#include "image/image_node_random_dots.h"
#include "support/gl_state.h"
#include "support/graph_fixture.h"
#include "support/parameter_table.h"

namespace {

using testing::ElementsAre;

constexpr int kSize = 1024;

// The nearest half float of a number that is not negative, ties to even.
float Half(double value) {
    if (value == 0) return 0;
    const int exponent = std::max(static_cast<int>(std::floor(std::log2(value))), -14);
    const double step = std::ldexp(1.0, exponent - 10);
    return static_cast<float>(std::nearbyint(value / step) * step);
}

struct Settings {
    double dots = 1000, minLuma = 0, maxLuma = 1, seed = 5000, variance = 0;
    double color[3] = {1, 1, 1};
};

class RandomDotsTest : public GraphTest {
  protected:
    void apply(const Settings& s) {
        const auto f = [](double v) { return static_cast<float>(v); };
        set(node, "Dots", {f(s.dots)});
        set(node, "Min Luma", {f(s.minLuma)});
        set(node, "Max Luma", {f(s.maxLuma)});
        set(node, "Seed", {f(s.seed)});
        set(node, "Variance", {f(s.variance)});
        set(node, "Color", {f(s.color[0]), f(s.color[1]), f(s.color[2]), 0.5f});
    }

    std::vector<float> pixels() const { return pixelsOf(*node.images[0]); }

    static std::vector<float> pixelsOf(const GL_Image& image, int level = 0) {
        const std::size_t side = kSize >> level;
        std::vector<float> result(side * side * 4);
        image.BindTexture(0, GL_TEXTURE0);
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        glGetTexImage(GL_TEXTURE_2D, level, GL_RGBA, GL_FLOAT, result.data());
        image.UnbindTextures(GL_TEXTURE0);
        return result;
    }

    // The dots, with a generator of their own.
    static std::vector<float> expected(const Settings& s) {
        std::vector<float> result(std::size_t{kSize} * kSize * 4);
        auto state = static_cast<unsigned>(static_cast<int>(s.seed));
        const auto roll = [&](int sides) {
            state = state * 214013u + 2531011u;
            return static_cast<int>(state >> 16 & 0x7FFF) % sides;
        };
        for (int i = 0; i < static_cast<int>(s.dots); ++i) {
            const int x = roll(1024), y = roll(1024);
            double drift[3];
            for (double& d : drift) d = (1 - roll(2000) / 1000.0) * s.variance;
            const double base = roll(100000) / 100000.0 * (s.maxLuma - s.minLuma) + s.minLuma;
            float* pixel = &result[static_cast<std::size_t>(y * kSize + x) * 4];
            for (int c = 0; c < 3; ++c) {
                pixel[c] = Half(s.color[c] * std::max(0.0, drift[c] + base));
            }
            pixel[3] = 1;
        }
        return result;
    }

    // Numbers that single precision holds exactly, so that every texel is decided.
    void expectDots(const Settings& s) {
        apply(s);
        EXPECT_TRUE(node.pull());
        EXPECT_EQ(pixels(), expected(s));
    }

    ImageNode_RandomDots& node = add<ImageNode_RandomDots>("dots");
};

}  // namespace

TEST_F(RandomDotsTest, HasItsParametersAndNoPorts) {
    EXPECT_THAT(
        ParameterTable(engine, node),
        ElementsAre("Dots float 100 to 50000, 0 decimals, 1000", testing::StartsWith("Position"),
                    "Min Luma float 0 to 10, 2 decimals, 0",
                    "Max Luma float 0 to 50, 2 decimals, 1",
                    "Seed float 0 to 99999, 0 decimals, 5000", "Color vec4 1 1 1 1",
                    "Variance float 0.0001 to 10, 4 decimals, 0, animatable"));
    const auto* place = dynamic_cast<ValueVec2*>(engine.findValue(&node, "Position"));
    ASSERT_NE(place, nullptr);
    EXPECT_TRUE(place->animatable);
    EXPECT_EQ(place->data[0], 0.5f);
    EXPECT_EQ(place->data[1], 0.5f);
    EXPECT_EQ(node.inputCount, 0);
    EXPECT_FALSE(node.canConnect(0, &node));
}

TEST_F(RandomDotsTest, HasTheDotsOfItsSeed) {
    expectDots({});
    expectDots({.dots = 100, .seed = 0});
    expectDots({.dots = 4321, .seed = 99999, .variance = 0.5});
    expectDots({.dots = 50000, .minLuma = 2, .maxLuma = 50, .seed = 17, .variance = 10});
    expectDots({.minLuma = 0.25, .maxLuma = 3.5, .variance = 0.125, .color = {0.5, 2, 0.75}});
}

TEST_F(RandomDotsTest, CutsFractionsOfDotsAndSeed) {
    expectDots({.dots = 150.75, .seed = 12.9});
}

TEST_F(RandomDotsTest, RunsDownwardsFromAMinimumAboveTheMaximum) {
    expectDots({.minLuma = 8, .maxLuma = 1, .variance = 0.25});
}

TEST_F(RandomDotsTest, IsGreyWithoutVariance) {
    apply({.variance = 0.0001, .color = {1, 1, 1}});
    node.pull();
    const std::vector<float> texels = pixels();
    int dots = 0;
    for (std::size_t i = 0; i < texels.size(); i += 4) {
        if (texels[i + 3] == 0) continue;
        ++dots;
        // Twice the variance, and a half float.
        EXPECT_NEAR(texels[i], texels[i + 1], 0.0003);
        EXPECT_NEAR(texels[i], texels[i + 2], 0.0003);
    }
    EXPECT_GT(dots, 990);
}

// Without drift a dot is the colour times its luma, the same share of each channel.
TEST_F(RandomDotsTest, HasDotsOfItsColourWithVarianceNearZero) {
    for (const double variance : {0.0, 0.0001}) {
        Settings settings = {.dots = 3000, .minLuma = 0.5, .maxLuma = 4, .variance = variance};
        const double color[3] = {0.5, 2, 0.75};
        std::copy(color, color + 3, settings.color);
        apply(settings);
        node.pull();
        const std::vector<float> texels = pixels();
        settings.variance = 0;
        const std::vector<float> plain = expected(settings);
        int dots = 0, wrong = 0;
        for (std::size_t i = 0; i < texels.size(); i += 4) {
            if (plain[i + 3] == 0) continue;
            ++dots;
            for (std::size_t c = 0; c < 3; ++c) {
                const auto actual = static_cast<double>(texels[i + c]);
                const auto wanted = static_cast<double>(plain[i + c]);
                // The drift, and what a half float of 11 bits makes of it.
                const double tolerance = variance == 0 ? 0 : color[c] * variance + wanted / 1024;
                wrong += !(std::fabs(actual - wanted) <= tolerance);
                // In proportion: each of the two channels is rounded to 11 bits.
                const auto red = static_cast<double>(texels[i]);
                const double share = red / color[0] * color[c];
                wrong += !(std::fabs(actual - share) <= 2 * color[c] * variance + share / 1024);
            }
        }
        EXPECT_EQ(wrong, 0) << variance;
        EXPECT_GT(dots, 2900);
    }
}

TEST_F(RandomDotsTest, IsNamedDot) {
    if (!GLEW_KHR_debug || glGetObjectLabel == nullptr) GTEST_SKIP() << "the driver knows no names";
    for (int made = 0; made < 2; ++made) {
        set(node, "Seed", {static_cast<float>(made)});
        node.pull();
        GLchar name[16] = {};
        glGetObjectLabel(GL_TEXTURE, node.images[0]->textures[0], sizeof name, nullptr, name);
        EXPECT_STREQ(name, "Dot");
    }
}

TEST_F(RandomDotsTest, KeepsThePictureWhileOnlyThePlaceMoves) {
    node.pull();
    for (std::size_t i = 0; i < 16; ++i) EXPECT_EQ(node.textureMatrix[i], i % 5 == 0 ? 1 : 0) << i;
    const auto picture = node.images[0];
    set(node, "Position", {0.25f, 1.5f});
    node.updated = false;
    node.pull();
    EXPECT_EQ(node.images[0], picture);
    EXPECT_EQ(node.textureMatrix[12], 0.25f);
    EXPECT_EQ(node.textureMatrix[13], -1);
    EXPECT_EQ(node.textureMatrix[0], 1);
}

TEST_F(RandomDotsTest, MakesThePictureAnewForEveryOtherParameter) {
    for (const char* name : {"Dots", "Min Luma", "Max Luma", "Seed", "Variance"}) {
        node.pull();
        const auto before = node.images[0];
        set(node, name, {321});
        node.pull();
        EXPECT_NE(node.images[0], before) << name;
    }
    for (int channel = 0; channel < 4; ++channel) {
        const auto before = node.images[0];
        node.color[channel] = 0.5f;
        node.pull();
        EXPECT_NE(node.images[0], before) << channel;
    }
    const auto before = node.images[0];
    node.clampFlag = false;
    node.pull();
    EXPECT_NE(node.images[0], before);
}

TEST_F(RandomDotsTest, LeavesAPictureThatOthersStillShowAsItIs) {
    apply({.seed = 1});
    node.pull();
    const auto shown = node.images[0];
    expectDots({.seed = 2});
    EXPECT_NE(node.images[0], shown);
    EXPECT_EQ(pixelsOf(*shown), expected({.seed = 1}));
}

TEST_F(RandomDotsTest, TakesTheTextureOfBeforeWithAllItsLevels) {
    node.pull();
    const GL_Image* const texture = node.images[0].get();
    node.images[0]->hasMipmaps = false;  // a mark, which a new picture would not have
    apply({.dots = 3000, .seed = 2});
    node.pull();
    EXPECT_EQ(node.images[0].get(), texture);
    EXPECT_FALSE(node.images[0]->hasMipmaps);
    auto& fresh = add<ImageNode_RandomDots>("fresh");
    set(fresh, "Dots", {3000});
    set(fresh, "Seed", {2});
    set(fresh, "Color", {1, 1, 1, 0.5f});
    fresh.pull();
    for (int level = 0; level <= 10; ++level) {
        EXPECT_EQ(pixelsOf(*node.images[0], level), pixelsOf(*fresh.images[0], level)) << level;
    }
}

TEST_F(RandomDotsTest, IsMadeInTheLoadPass) {
    engine.renderEnabled = 0;
    EXPECT_TRUE(node.process());
    EXPECT_EQ(pixels(), expected({}));
}

TEST_F(RandomDotsTest, IsTransparentOutsideOrRepeated) {
    const auto expectWrap = [&](GLint wrap) {
        node.pull();
        EXPECT_EQ(TextureParameter(*node.images[0], GL_TEXTURE_WRAP_S), wrap);
        EXPECT_EQ(TextureParameter(*node.images[0], GL_TEXTURE_WRAP_T), wrap);
        EXPECT_EQ(node.images[0]->hasBorder, wrap == GL_CLAMP_TO_BORDER);
    };
    expectWrap(GL_CLAMP_TO_BORDER);
    node.clampFlag = false;
    expectWrap(GL_REPEAT);
}

TEST_F(RandomDotsTest, LeavesTheGeneratorAfterItsNumbers) {
    apply({.dots = 100, .seed = 3});
    node.pull();
    const int next = Random::next();
    Random::seed(3);
    for (int i = 0; i < 600; ++i) Random::next();
    EXPECT_EQ(next, Random::next());
}

TEST_F(RandomDotsTest, EndsForAnyParameters) {
    constexpr float kNone = std::numeric_limits<float>::quiet_NaN();
    for (const float value : {kNone, -5.0f, 2e9f, 1e30f, -1e30f}) {
        set(node, "Dots", {value});
        set(node, "Seed", {value});
        set(node, "Variance", {value});
        EXPECT_TRUE(node.pull());
        const auto made = node.images[0];
        EXPECT_TRUE(node.pull());
        EXPECT_EQ(node.images[0], made);  // also for what is no number: nothing has changed
    }
}
