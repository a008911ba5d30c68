#include "library_shader_fixture.h"

namespace {

// Where a value may lie between two numbers.
struct Interval {
    double low, high;
};

template <typename Monotone>
Interval Map(const Interval& x, Monotone&& f) {
    const double a = f(x.low), b = f(x.high);
    return {std::min(a, b), std::max(a, b)};
}

// x^e. Renderers make it of exp2 and log2 with polynomials that are good to about 12 bits, and log2
// is multiplied by e.
Interval Power(const Interval& x, double exponent) {
    const double slack = 0.0004 * std::max(1.0, exponent);
    const Interval p = Map(x, [&](double v) { return std::pow(std::max(v, 0.0), exponent); });
    return {p.low * (1 - slack), p.high * (1 + slack)};
}

// Opaque, half transparent and fully transparent stripes, with pure black among the colours. The
// stripes are wide, so that most pixels lie between four texels of the same stripe.
ReferencePicture StripedWaves(int seed) {
    const ReferencePicture waves = ReferencePicture::Waves(64, 36, seed);
    return {64, 36, [waves](int x, int y) -> Vec4 {
                const Sample texel = waves.sample((x + 0.5) / 64, (y + 0.5) / 36);
                const float alpha = (x / 8) % 4 == 0 ? 0.0f : (x / 8) % 4 == 1 ? 0.5f : 1.0f;
                const float light = y % 12 < 3 ? 0.0f : alpha;
                return {static_cast<float>(texel.rgba[0]) * light,
                        static_cast<float>(texel.rgba[1]) * light,
                        static_cast<float>(texel.rgba[2]) * light, alpha};
            }};
}

// The colour without its alpha. False where the alpha is too near 0 to divide by what was sampled.
bool Unpremultiply(const Sample& source, Interval (&colour)[3], Interval& alpha) {
    const double a = source.rgba[3], e = source.error + 1e-6;
    if (a == 0 && source.error == 0) {
        for (Interval& c : colour) c = {0, 0};
        alpha = {0, 0};
        return true;
    }
    if (a < 0.2) return false;
    for (int c = 0; c < 3; ++c) {
        colour[c] = {(source.rgba[c] - e) / (a + e), (source.rgba[c] + e) / (a - e)};
        colour[c].low = std::max(colour[c].low, 0.0);
    }
    alpha = {a - e, a + e};
    return true;
}

struct Grading {
    double gamma = 1;
    double low[3] = {0, 0, 0}, high[3] = {1, 1, 1};
    double black = 0, white = 1;
    double exponents[3] = {1, 1, 1};
    double brightness = 0, contrast = 1;
};

double Width(double low, double high) {
    const double w = high - low;
    return w < 0 ? std::min(w, -1e-4) : std::max(w, 1e-4);
}

Interval Grade(Interval c, const Grading& g, int channel) {
    const auto atLeastZero = [](double v) { return std::max(v, 0.0); };
    const double low = g.low[channel], high = g.high[channel];
    c = Map(c, [&](double v) { return atLeastZero((v - low) / Width(low, high)); });
    c = Power(c, std::max(g.exponents[channel], 0.001));
    c = Map(c, [&](double v) { return atLeastZero((v - g.black) / Width(g.black, g.white)); });
    c = Power(c, 1 / std::max(g.gamma, 0.001));
    return Map(c,
               [&](double v) { return atLeastZero((v - 0.5) * g.contrast + 0.5 + g.brightness); });
}

class ColorCorrectTest : public LibraryShaderTest {
  protected:
    void expectGrading(const Grading& g) {
        const auto f = [](double v) { return static_cast<float>(v); };
        set(node, "Gamma", {f(g.gamma)});
        set(node, "LowColor", {f(g.low[0]), f(g.low[1]), f(g.low[2]), 0.3f});
        set(node, "HiColor", {f(g.high[0]), f(g.high[1]), f(g.high[2]), 0.6f});
        set(node, "Blackpoint", {f(g.black)});
        set(node, "Whitepoint", {f(g.white)});
        set(node, "Exp_R", {f(g.exponents[0])});
        set(node, "Exp_G", {f(g.exponents[1])});
        set(node, "Exp_B", {f(g.exponents[2])});
        set(node, "Brightness", {f(g.brightness)});
        set(node, "Contrast", {f(g.contrast)});
        // Between stripes the alpha passes through values that are not decided.
        expectEverywhere(
            node, [&](double u, double v, PixelRange& range) { return pixel(g, u, v, range); },
            0.25);
    }

    bool pixel(const Grading& g, double u, double v, PixelRange& range) const {
        Interval colour[3], alpha{};
        if (!Unpremultiply(picture.sample(u, v), colour, alpha)) return false;
        for (int c = 0; c < 3; ++c) {
            const Interval graded = Grade(colour[c], g, c);
            range.low[c] = graded.low * alpha.low;
            range.high[c] = graded.high * alpha.high;
        }
        range.low[3] = alpha.low;
        range.high[3] = alpha.high;
        return true;
    }

    void SetUp() override {
        LibraryShaderTest::SetUp();
        link(addPicture("picture", picture), node, 0);
    }

    ReferencePicture picture = StripedWaves(1);
    ImageNode_Shader& node = addScript("ColorCorrect");
};

}  // namespace

TEST_F(ColorCorrectTest, ChangesNothingWithItsDefaults) {
    expectGrading({});
}

TEST_F(ColorCorrectTest, MapsTheRangeBetweenTheTwoColors) {
    Grading g;
    g.low[0] = 0.25, g.low[1] = 0.125, g.low[2] = 0.75;
    g.high[0] = 0.5, g.high[1] = 2, g.high[2] = 0.25;
    expectGrading(g);
}

TEST_F(ColorCorrectTest, RaisesEachChannelToItsExponent) {
    Grading g;
    g.exponents[0] = 2, g.exponents[1] = 0.5, g.exponents[2] = 3.5;
    expectGrading(g);
}

TEST_F(ColorCorrectTest, MapsFromBlackToWhiteAfterTheExponents) {
    Grading g;
    g.exponents[0] = 1.5;
    g.black = 0.25, g.white = 0.625;
    expectGrading(g);
}

TEST_F(ColorCorrectTest, AppliesGammaBeforeContrastAndBrightness) {
    Grading g;
    g.gamma = 2.25, g.contrast = 1.75, g.brightness = -0.125;
    expectGrading(g);
}

TEST_F(ColorCorrectTest, AppliesAllAtOnce) {
    Grading g;
    g.gamma = 0.75, g.contrast = 0.5, g.brightness = 0.25, g.black = 0.0625, g.white = 1.5;
    g.low[1] = 0.125, g.high[2] = 0.75, g.exponents[2] = 1.25;
    expectGrading(g);
}

TEST_F(ColorCorrectTest, StaysFiniteWhereARangeHasNoWidth) {
    Grading colors;
    colors.low[0] = colors.high[0] = 0.5;
    expectGrading(colors);
    Grading points;
    points.black = points.white = 0.25;
    expectGrading(points);
}

TEST_F(ColorCorrectTest, SamplesItsInputThroughTheInputsMatrix) {
    auto& source = static_cast<PictureNode&>(*engine.findNode("picture"));
    source.textureMatrix[0] = 0.5f;
    source.textureMatrix[13] = 0.25f;
    Grading g;
    g.contrast = 1.5;
    set(node, "Contrast", {1.5f});
    expectPixels(
        node, kBand,
        [&](double u, double v, PixelRange& range) { return pixel(g, u * 0.5, v + 0.25, range); },
        0.25);
}

class LumaToAlphaTest : public LibraryShaderTest {};

TEST_F(LumaToAlphaTest, MakesTheLumaOfThePlainColourTheAlpha) {
    const ReferencePicture picture = StripedWaves(2);
    ImageNode_Shader& node = addScript("LumaToAlpha");
    link(addPicture("picture", picture), node, 0);
    const auto reference = [&](double u, double v, PixelRange& range) {
        Interval colour[3], alpha{};
        if (!Unpremultiply(picture.sample(u, v), colour, alpha)) return false;
        range.low[3] = 0.299 * colour[0].low + 0.587 * colour[1].low + 0.114 * colour[2].low;
        range.high[3] = 0.299 * colour[0].high + 0.587 * colour[1].high + 0.114 * colour[2].high;
        for (int c = 0; c < 3; ++c) {
            range.low[c] = colour[c].low;
            range.high[c] = colour[c].high;
        }
        return true;
    };
    expectEverywhere(node, reference, 0.25);
    set(node, "Exponent", {3.0f});
    expectEverywhere(node, reference, 0.25);
}

class ChromaticAbberationTest : public LibraryShaderTest {};

TEST_F(ChromaticAbberationTest, ShiftsTwoChannelsRadiallyInEachMode) {
    const ReferencePicture picture = ReferencePicture::Waves(64, 36, 3);
    ImageNode_Shader& node = addScript("ChromaticAbberation");
    PictureNode& source = addPicture("picture", picture);
    source.textureMatrix[0] = 0.5f;  // the plain coordinates count
    link(source, node, 0);
    // For each mode the channel that is taken further out, that stays, and that is taken further
    // in.
    constexpr int kChannels[3][3] = {{0, 1, 2}, {1, 2, 0}, {2, 0, 1}};
    for (const float factor : {0.25f, -1.0f}) {
        for (int mode = 0; mode < 3; ++mode) {
            set(node, "Factor", {factor});
            set(node, "Mode", {static_cast<float>(mode)});
            expectEverywhere(node, [&](double u, double v, PixelRange& range) {
                const double du = (u - 0.5) * 0.1 * static_cast<double>(factor);
                const double dv = (v - 0.5) * 0.1 * static_cast<double>(factor);
                const Sample samples[3] = {picture.sample(u + du, v + dv), picture.sample(u, v),
                                           picture.sample(u - du, v - dv)};
                Sample result;
                for (int i = 0; i < 3; ++i) {
                    result.rgba[kChannels[mode][i]] = samples[i].rgba[kChannels[mode][i]];
                    result.rgba[3] += samples[i].rgba[3] / 3;
                    result.error = std::max(result.error, samples[i].error);
                }
                range = PixelRange::about(result);
                return true;
            });
        }
    }
}

class Displace2DTest : public LibraryShaderTest {
  protected:
    double channel(const Sample& map, int number) const {
        if (number < 4) return map.rgba[number];
        return 0.299 * map.rgba[0] + 0.587 * map.rgba[1] + 0.114 * map.rgba[2];
    }

    void expectDisplacement(int horizontal, int vertical, double distortH, double distortV) {
        set(node, "Horizontal", {static_cast<float>(horizontal)});
        set(node, "Vertical", {static_cast<float>(vertical)});
        set(node, "Distort_H", {static_cast<float>(distortH)});
        set(node, "Distort_V", {static_cast<float>(distortV)});
        // The rim of the picture, where the place may fall on either side, is not decided.
        expectEverywhere(
            node,
            [&](double u, double v, PixelRange& range) {
                const Sample map = displacement.sample(u, v);
                const double x = u + (channel(map, horizontal) - 0.5) * distortH;
                const double y = v + (channel(map, vertical) - 0.5) * distortV;
                const double slackX = (map.error + 1e-6) * std::fabs(distortH) + 1e-6;
                const double slackY = (map.error + 1e-6) * std::fabs(distortV) + 1e-6;
                if (std::fabs(x - std::round(x)) < slackX) return false;
                if (std::fabs(y - std::round(y)) < slackY) return false;
                return placed(x - std::floor(x), y - std::floor(y), slackX, slackY, range);
            },
            0.06);
    }

    // The range of the picture's values round a place.
    bool placed(double x, double y, double slackX, double slackY, PixelRange& range) const {
        range = PixelRange::about(image.sample(x, y));
        for (const double dx : {-slackX, slackX}) {
            for (const double dy : {-slackY, slackY}) {
                const PixelRange other = PixelRange::about(image.sample(x + dx, y + dy));
                for (int c = 0; c < 4; ++c) {
                    range.low[c] = std::min(range.low[c], other.low[c]);
                    range.high[c] = std::max(range.high[c], other.high[c]);
                }
            }
        }
        return true;
    }

    void SetUp() override {
        LibraryShaderTest::SetUp();
        link(addPicture("image", image), node, 0);
        link(addPicture("displacement", displacement), node, 1);
    }

    ReferencePicture image = ReferencePicture::Waves(64, 36, 4);
    ReferencePicture displacement = ReferencePicture::Waves(40, 24, 5);
    ImageNode_Shader& node = addScript("Displace2D");
};

TEST_F(Displace2DTest, ShowsThePictureAsItIsWithoutDistortion) {
    expectDisplacement(4, 4, 0, 0);
}

TEST_F(Displace2DTest, TakesTheOffsetsFromTheChosenChannels) {
    for (int number = 0; number < 5; ++number) {
        expectDisplacement(number, (number + 2) % 5, 0.25, -0.5);
    }
}

TEST_F(Displace2DTest, WrapsAroundTheEdges) {
    expectDisplacement(0, 1, -2.5, 3.5);
}

TEST_F(Displace2DTest, ShiftsByHalfTheDistortionWhereThereIsNoMap) {
    EXPECT_TRUE(engine.disconnect(node.id, 1));
    set(node, "Horizontal", {0});
    set(node, "Vertical", {1});
    set(node, "Distort_H", {0.5f});
    set(node, "Distort_V", {0.25f});
    expectPixels(node, kCorner, [&](double u, double v, PixelRange& range) {
        const double y = v - 0.125;
        range = PixelRange::about(image.sample(u + 0.75, y < 0 ? y + 1 : y));
        return true;
    });
}
