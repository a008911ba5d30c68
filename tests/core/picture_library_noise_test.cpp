#include <array>
#include <cstring>

#include "library_shader_fixture.h"

namespace {

// ---- what both noises do with their number

struct Tint {
    double color[4] = {1, 1, 1, 1};
    double brightness = 0, contrast = 1, gamma = 1;
};

// The range of a pixel whose noise lies between two numbers.
PixelRange Tinted(double low, double high, const Tint& t) {
    const auto channel = [&](double n, int c) {
        const double tinted = std::max(n * t.color[c], 0.0);
        return std::pow(tinted, 1 / std::max(t.gamma, 0.001));
    };
    constexpr int kTakenFrom[3] = {0, 2, 1};  // contrast exchanges green and blue
    // Powers are made of exp2 and log2 with polynomials that are good to about 12 bits.
    const double slack = 0.0004 * std::max(1.0, 1 / t.gamma);
    PixelRange range{};
    for (int c = 0; c < 3; ++c) {
        const auto last = [&](double value) {
            return std::max((value - 0.5) * t.contrast + 0.5 + t.brightness, 0.0) * t.color[3];
        };
        range.low[c] = last(channel(std::max(low, 0.0), kTakenFrom[c]) * (1 - slack));
        range.high[c] = last(channel(std::min(high, 1.0), kTakenFrom[c]) * (1 + slack));
    }
    range.low[3] = range.high[3] = t.color[3];
    return range;
}

class NoiseTest : public LibraryShaderTest {
  protected:
    void setTint(const Node& node, const Tint& t) {
        const auto f = [](double v) { return static_cast<float>(v); };
        set(node, "Color", {f(t.color[0]), f(t.color[1]), f(t.color[2]), f(t.color[3])});
        set(node, "Brightness", {f(t.brightness)});
        set(node, "Contrast", {f(t.contrast)});
        set(node, "Gamma", {f(t.gamma)});
    }

    static inline const std::array<Tint, 4> kTints = {{
        {},
        {.color = {0.25, 0.5, 1, 1}, .gamma = 2.25},
        {.color = {1, 0.75, 0.125, 0.5}, .contrast = 2.5},
        {.color = {2, 1, 0.5, 0.75}, .brightness = 0.25, .contrast = 0.5, .gamma = 0.5},
    }};
};

// ---- simplex noise

std::uint32_t CornerHash(const std::array<int, 3>& corner, int seed) {
    constexpr std::uint32_t kPrimes[3] = {0x8da6b343u, 0xd8163841u, 0xcb1ab31fu};
    std::uint32_t h = 0;
    for (std::size_t i = 0; i < 3; ++i) h += static_cast<std::uint32_t>(corner[i]) * kPrimes[i];
    h ^= static_cast<std::uint32_t>(seed) * 0x165667b1u;
    h ^= h >> 15;
    h *= 0x2c1b3c6du;
    h ^= h >> 12;
    h *= 0x297a2d39u;
    return h ^ (h >> 15);
}

// The middles of a cube's edges: in the planes xy, yz and zx.
constexpr int kEdges[12][3] = {{1, 1, 0}, {-1, 1, 0}, {1, -1, 0}, {-1, -1, 0},
                               {0, 1, 1}, {0, -1, 1}, {0, 1, -1}, {0, -1, -1},
                               {1, 0, 1}, {1, 0, -1}, {-1, 0, 1}, {-1, 0, -1}};

double Simplex(const std::array<double, 3>& p, int seed) {
    const double skew = (p[0] + p[1] + p[2]) / 3;
    std::array<int, 3> corner{};
    std::array<double, 3> inCell{};
    for (std::size_t i = 0; i < 3; ++i) {
        corner[i] = static_cast<int>(std::floor(p[i] + skew));
        inCell[i] = p[i] + skew - corner[i];
    }
    // From the cell's first corner to its last, one step along each axis, the greatest first.
    std::array<std::size_t, 3> order = {0, 1, 2};
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return inCell[a] > inCell[b]; });
    double sum = 0;
    for (std::size_t step = 0; step < 4; ++step) {
        const double unskew = (corner[0] + corner[1] + corner[2]) / 6.0;
        const int* edge = kEdges[(CornerHash(corner, seed) >> 16) * 12u >> 16];
        double squared = 0, along = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            const double d = p[i] - (corner[i] - unskew);
            squared += d * d;
            along += d * edge[i];
        }
        sum += std::pow(std::max(0.5 - squared, 0.0), 4) * along;
        if (step < 3) ++corner[order[step]];
    }
    return 76 * sum;
}

struct Clouds {
    int seed = 1;
    double density = 4, octaves = 3, phase = 0;
    double direction[2] = {1, 1.78}, translation[2] = {0, 0};
};

double CloudsAt(const Clouds& s, double u, double v) {
    std::array<double, 3> p = {(u - s.translation[0]) * s.direction[1] * s.density - 0.5,
                               (v - s.translation[1]) * s.direction[0] * s.density - 0.5, s.phase};
    const double octaves = std::clamp(s.octaves, 1.0, 8.0);
    double sum = 0, weights = 0;
    for (int o = 0; o < octaves; ++o) {
        const double weight = std::min(octaves - o, 1.0) * std::pow(0.5, o);
        sum += weight * Simplex(p, s.seed + o);
        weights += weight;
        for (double& x : p) x *= 2;
    }
    return std::clamp(0.5 + 0.5 * sum / weights, 0.0, 1.0);
}

class PerlinNoise3DTest : public NoiseTest {
  protected:
    void expectClouds(const Clouds& s, const Tint& t = {}) {
        const auto f = [](double v) { return static_cast<float>(v); };
        set(node, "Seed", {static_cast<float>(s.seed)});
        set(node, "Density", {f(s.density)});
        set(node, "Octaves", {f(s.octaves)});
        set(node, "Phase", {f(s.phase)});
        set(node, "Direction", {f(s.direction[0]), f(s.direction[1])});
        set(node, "Translation", {f(s.translation[0]), f(s.translation[1])});
        setTint(node, t);
        // Single precision keeps places of up to Density * 2 to a few 2^-24 of that, which every
        // octave doubles and then halves; the noise rises by less than 4 over one cell, and the
        // unskewed corners cost some digits more.
        const double error =
            4 * 1e-6 * (2 + s.density * 2 + std::fabs(s.phase)) * std::max(s.octaves, 1.0);
        expectEverywhere(node, [=](double u, double v, PixelRange& range) {
            const double n = CloudsAt(s, u, v);
            range = Tinted(n - error, n + error, t);
            return true;
        });
    }

    ImageNode_Shader& node = addScript("PerlinNoise3D");
};

// ---- white noise

// The float whose bits the first channels of two pixels carry, a byte a channel.
float FloatOfBytes(const float* pixel) {
    std::uint32_t bits = 0;
    for (int c = 3; c >= 0; --c) bits = bits << 8 | static_cast<std::uint32_t>(pixel[c]);
    float value = 0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

// fract(sin(dot(...)) * 43758.5453) as single precision works it out, one operation after another,
// but with the true sine.
float Hash(float x, float y, float factorX = 12.9898f, float factorY = 78.233f) {
    const float turned = x * factorX + y * factorY;
    const float scaled = static_cast<float>(std::sin(static_cast<double>(turned))) * 43758.5453f;
    return scaled - std::floor(scaled);
}

// The software renderer's sine errs by less than 2^-23, which the hash makes 43758 times as large.
constexpr double kHashError = 43758.5453 / 8388608;

bool SoftwareRenderer() {
    const auto* name = reinterpret_cast<const char*>(glGetString(GL_RENDERER));
    return name != nullptr && std::string(name).find("llvmpipe") != std::string::npos;
}

class SimpleNoiseTest : public NoiseTest {
  protected:
    RegionPixels drawNoise(int seed, const Tint& t = {}) {
        set(node, "Seed", {static_cast<float>(seed)});
        setTint(node, t);
        return draw(node, kPatch);
    }

    // Coordinates as the fragment stage gets them, exact to the bit.
    RegionPixels drawCoordinate(const char* id, const char* component) {
        NodeScript script;
        const std::string text = std::string(R"(Name "Bytes", "Test"
Source #version 330 core
in vec2 texcoord;
out vec4 frag[1];
void main() {
    uint bits = floatBitsToUint(texcoord.)") +
                                 component + R"();
    frag[0] = vec4(bits & 255u, bits >> 8 & 255u, bits >> 16 & 255u, bits >> 24);
})";
        parseScript(text, "bytes", script);
        auto& probe = add<ImageNode_Shader>(id, script);
        EXPECT_FALSE(probe.hasError) << probe.program->errorLog();
        return draw(probe, kPatch);
    }

    static constexpr Region kPatch = {640, 300, 256, 128};
    static constexpr int kPatchPixels = 256 * 128;
    ImageNode_Shader& node = addScript("SimpleNoise");
};

double MeanOf(const RegionPixels& pixels) {
    double sum = 0;
    for (std::size_t i = 0; i < pixels.rgba.size(); i += 4) {
        sum += static_cast<double>(pixels.rgba[i]);
    }
    return sum / static_cast<double>(pixels.rgba.size() / 4);
}

// ---- the broken signal

struct Glitch {
    double stripCount = 1.5, stripIntensity = 0.6;
    double blockCount = 1, blockWidth = 0.25, blockIntensity = 0.6;
    double translation = 0.3, offset[2] = {0, 0}, intensity = 0.5;
};

// Reads the signal at one pixel. What a renderer may see either way is noted as undecided.
class GlitchReader {
  public:
    explicit GlitchReader(const Glitch& glitch) : g_(glitch) {}

    bool read(double u, double v, PixelRange& range) {
        undecided_ = false;
        double color[4] = {0, 0, 0, 0};
        const double intensity = std::floor(std::clamp(g_.intensity, 0.0, 1.0) * 100 + 1e-5) / 100;
        readBand(v, intensity, color);
        readBlock(u, v, intensity, color);
        for (int c = 0; c < 4; ++c) range.low[c] = range.high[c] = color[c];
        return !undecided_;
    }

  private:
    // The noise number `place` of a row. One near 0 or 1 might have gone round.
    double noise(double row, int place) {
        const auto f = [](double value) { return static_cast<float>(value); };
        const float n = Hash(f(row) * 0.0131f + 0.17f, f(place) * 0.0131f + 0.17f,
                             12.9898f + f(g_.offset[0]) * 10.0f, 78.233f + f(g_.offset[1]) * 10.0f);
        const auto result = static_cast<double>(n);
        undecided_ |= result < kHashError || result > 1 - kHashError;
        return result;
    }
    bool below(double value, double limit, double slack = kHashError) {
        undecided_ |= std::fabs(value - limit) < slack + 1e-5;
        return value < limit;
    }

    void readBand(double v, double intensity, double (&color)[4]) {
        const double count = std::floor(g_.stripCount * 30 * intensity + 1e-4);
        if (count < 1) return;
        const double moved = v + (noise(0, 1) - 0.5) * g_.translation * intensity;
        const double slack = kHashError * g_.translation * intensity + 1e-6;
        const double y = (moved - std::floor(moved)) * count;
        const double row = std::floor(y), place = y - row;
        // Near the end of a row the pixel may count to the next one.
        undecided_ |= std::min(place, 1 - place) < slack * count;
        const double from = 0.7 * noise(row, 3), to = from + 0.1 + 0.5 * noise(row, 4);
        const double placeSlack = slack * count + kHashError * 1.2;
        const bool holds = below(noise(row, 2), g_.stripIntensity * intensity);
        if (!holds) return;
        const bool behind = !below(place, from, placeSlack);
        if (behind && below(place, to, placeSlack)) setColor(noise(row, 5), color);
    }

    void readBlock(double u, double v, double intensity, double (&color)[4]) {
        const double count = std::floor(g_.blockCount * 30 * intensity + 1e-4);
        if (count < 1) return;
        const double row = std::floor(v * count), place = v * count - row;
        undecided_ |= std::min(place, 1 - place) < 1e-5 * count;
        if (!below(noise(row, 6), g_.blockIntensity * intensity)) return;
        const double width = std::clamp(g_.blockWidth, 0.0, 1.0) * (0.25 + 0.75 * noise(row, 8));
        const double from = noise(row, 7) * (1 - width);
        if (!below(u, from, 2 * kHashError) && below(u, from + width, 2 * kHashError)) {
            setColor(noise(row, 9), color);
        }
    }

    void setColor(double c, double (&color)[4]) {
        for (double& channel : color) channel = 0;
        color[3] = 1;
        if (below(c, 0.25)) {
            color[0] = 1;
        } else if (below(c, 0.5)) {
            color[1] = 1;
        } else if (below(c, 0.75)) {
            color[2] = 1;
        } else {
            color[0] = color[1] = color[2] = 0.7;
        }
    }

    const Glitch& g_;
    bool undecided_ = false;
};

class DigitalGlitchTest : public LibraryShaderTest {
  protected:
    void setAll(const Glitch& g) {
        const auto f = [](double v) { return static_cast<float>(v); };
        set(node, "StripCount", {f(g.stripCount)});
        set(node, "StripIntensity", {f(g.stripIntensity)});
        set(node, "BlockCount", {f(g.blockCount)});
        set(node, "BlockWidth", {f(g.blockWidth)});
        set(node, "BlockIntensity", {f(g.blockIntensity)});
        set(node, "StripTranslationIntensity", {f(g.translation)});
        set(node, "RandOffset", {f(g.offset[0]), f(g.offset[1])});
        set(node, "Intensity", {f(g.intensity)});
    }

    void expectSignal(const Glitch& g) {
        if (!SoftwareRenderer()) GTEST_SKIP() << "the sine of this renderer is not known";
        setAll(g);
        GlitchReader reader(g);
        const auto reference = [&](double u, double v, PixelRange& range) {
            return reader.read(u, v, range);
        };
        // Rims of bands and blocks are a few pixels wide, and now and then a whole row's noise
        // lies at a limit.
        for (const Region& region : kColumns) expectPixels(node, region, reference, 0.3);
    }

    double coveredShare(const Region& region = {0, 0, kFrameWidth, kFrameHeight}) {
        const RegionPixels pixels = draw(node, region);
        int covered = 0;
        for (std::size_t i = 3; i < pixels.rgba.size(); i += 4) covered += pixels.rgba[i] > 0;
        return covered / static_cast<double>(pixels.rgba.size() / 4);
    }

    static constexpr Region kColumns[] = {
        {3, 0, 2, kFrameHeight}, {800, 0, 2, kFrameHeight}, {1500, 0, 2, kFrameHeight}};
    ImageNode_Shader& node = addScript("DigitalGlitch");
};

}  // namespace

TEST_F(PerlinNoise3DTest, IsTheSumOfItsOctaves) {
    expectClouds({.octaves = 1});
    expectClouds({});
    expectClouds({.octaves = 4.375});
}

TEST_F(PerlinNoise3DTest, BoundsItsOctaves) {
    expectClouds({.octaves = -5});
    expectClouds({.density = 1, .octaves = 100});
}

TEST_F(PerlinNoise3DTest, MovesWithPhaseTranslationAndDirection) {
    expectClouds({.seed = 12, .phase = 3.75});
    expectClouds({.density = 7, .phase = -20.5, .direction = {1, -0.5}});
    expectClouds({.density = 2.5, .translation = {0.25, -1.5}});
}

TEST_F(PerlinNoise3DTest, DependsOnItsSeed) {
    const RegionPixels one = draw(node, kCorner);
    set(node, "Seed", {2});
    EXPECT_NE(draw(node, kCorner).rgba, one.rgba);
    expectClouds({.seed = -3});
    expectClouds({.seed = 1000});
}

TEST_F(PerlinNoise3DTest, TintsThenAppliesGammaThenContrastWithGreenAndBlueExchanged) {
    for (const Tint& tint : kTints) expectClouds({.octaves = 2}, tint);
}

TEST_F(PerlinNoise3DTest, UsesMostOfTheRange) {
    set(node, "Octaves", {1});
    set(node, "Density", {20});
    set(node, "Contrast", {1});
    const RegionPixels pixels = draw(node, {400, 200, 500, 300});
    float least = 1, most = 0;
    for (std::size_t i = 0; i < pixels.rgba.size(); i += 4) {
        least = std::min(least, pixels.rgba[i]);
        most = std::max(most, pixels.rgba[i]);
    }
    EXPECT_LT(least, 0.1f);
    EXPECT_GT(most, 0.9f);
    EXPECT_NEAR(MeanOf(pixels), 0.5, 0.03);  // some 50 cells, each of deviation 0.2
}

TEST_F(SimpleNoiseTest, IsTheFractionOfAScaledSine) {
    if (!SoftwareRenderer()) GTEST_SKIP() << "the sine of this renderer is not known";
    const RegionPixels xs = drawCoordinate("x", "x"), ys = drawCoordinate("y", "y");
    for (const int seed : {0, 1, 77}) {
        const RegionPixels pixels = drawNoise(seed);
        const float shift = static_cast<float>(seed) * 0.618034f;
        const float part = shift - std::floor(shift);
        int same = 0;
        for (int y = kPatch.y; y < kPatch.y + kPatch.height; ++y) {
            for (int x = kPatch.x; x < kPatch.x + kPatch.width; ++x) {
                const float n =
                    Hash(FloatOfBytes(xs.at(x, y)) + part, FloatOfBytes(ys.at(x, y)) + part);
                const double apart = std::fabs(static_cast<double>(n - pixels.at(x, y)[0]));
                // 1 is as near to 0 as the fraction goes round; half floats round too.
                same += std::min(apart, 1 - apart) < kHashError + 1.0 / 1024;
            }
        }
        // A compiler may join a product and a sum, which moves the sine's argument by an ulp.
        EXPECT_GE(same, kPatchPixels * 0.99) << "seed " << seed;
    }
}

TEST_F(SimpleNoiseTest, SpreadsEvenlyAndNeighboursAreStrangers) {
    const RegionPixels pixels = drawNoise(5);
    int histogram[16] = {};
    double products = 0, squares = 0;
    for (int y = kPatch.y; y < kPatch.y + kPatch.height; ++y) {
        for (int x = kPatch.x; x + 1 < kPatch.x + kPatch.width; ++x) {
            const auto a = static_cast<double>(pixels.at(x, y)[0]);
            const auto b = static_cast<double>(pixels.at(x + 1, y)[0]);
            ++histogram[std::min(static_cast<int>(a * 16), 15)];
            products += (a - 0.5) * (b - 0.5);
            squares += (a - 0.5) * (a - 0.5);
        }
    }
    // Of 32640 numbers: five standard deviations of the mean of even numbers from 0 to 1, of the
    // count in a sixteenth, of the variance, and of a correlation.
    EXPECT_NEAR(MeanOf(pixels), 0.5, 0.008);
    for (const int count : histogram) EXPECT_NEAR(count, 2040, 220);
    EXPECT_NEAR(squares / 32640, 1.0 / 12, 0.0021);
    EXPECT_NEAR(products / squares, 0, 0.028);
}

TEST_F(SimpleNoiseTest, DependsOnItsSeed) {
    EXPECT_NE(drawNoise(1).rgba, drawNoise(2).rgba);
    EXPECT_EQ(drawNoise(3).rgba, drawNoise(3).rgba);
}

TEST_F(SimpleNoiseTest, TintsThenAppliesGammaThenContrastWithGreenAndBlueExchanged) {
    const RegionPixels plain = drawNoise(9);
    for (const Tint& tint : kTints) {
        const RegionPixels pixels = drawNoise(9, tint);
        int wrong = 0;
        for (std::size_t i = 0; i < pixels.rgba.size(); i += 4) {
            const auto n = static_cast<double>(plain.rgba[i]);
            const double rounding = n / 1024 + 1e-6;  // of the half float that tells it
            const PixelRange range = Tinted(n - rounding, n + rounding, tint);
            wrong += !range.holds(&pixels.rgba[i]);
        }
        EXPECT_EQ(wrong, 0);
    }
}

TEST_F(DigitalGlitchTest, DrawsBandsAndBlocksByTheirHashes) {
    expectSignal({});
    expectSignal({.blockCount = 0});
    expectSignal({.stripCount = 0, .blockWidth = 0.75, .blockIntensity = 1.5});
    expectSignal({.stripCount = 3,
                  .stripIntensity = 1.5,
                  .blockCount = 2.5,
                  .translation = 0.05,
                  .intensity = 0.875});
    expectSignal({.stripCount = 0.5, .translation = 1, .offset = {0.25, -0.5}});
    expectSignal({.stripCount = 0.75, .offset = {3, 7.5}, .intensity = 1});
}

TEST_F(DigitalGlitchTest, IsTransparentWithoutIntensity) {
    for (const double intensity : {0.0, 0.009, -1.0}) {
        setAll({.stripIntensity = 2, .blockIntensity = 2, .intensity = intensity});
        EXPECT_EQ(coveredShare({500, 0, 2, kFrameHeight}), 0);
    }
}

TEST_F(DigitalGlitchTest, CutsTheIntensityToHundredths) {
    setAll({.intensity = 0.502});
    const RegionPixels cut = draw(node, kColumns[1]);
    setAll({.intensity = 0.5078125});
    EXPECT_EQ(draw(node, kColumns[1]).rgba, cut.rgba);
    setAll({.intensity = 0.515});
    EXPECT_NE(draw(node, kColumns[1]).rgba, cut.rgba);
}

TEST_F(DigitalGlitchTest, DrawsPureColorsAndOneGrey) {
    setAll({.stripCount = 4,
            .stripIntensity = 2,
            .blockCount = 4,
            .blockIntensity = 2,
            .intensity = 1});
    const RegionPixels pixels = draw(node, {400, 0, 400, kFrameHeight});
    int counts[5] = {};
    for (std::size_t i = 0; i < pixels.rgba.size(); i += 4) {
        const float r = pixels.rgba[i], g = pixels.rgba[i + 1], b = pixels.rgba[i + 2];
        const float a = pixels.rgba[i + 3];
        if (r == 0 && g == 0 && b == 0 && a == 0) {
            ++counts[0];
        } else if (r + g + b == 1 && (r == 1 || g == 1 || b == 1) && a == 1) {
            ++counts[r == 1 ? 1 : g == 1 ? 2 : 3];
        } else {
            EXPECT_NEAR(r, 0.7, 0.0005);  // as a half float holds it
            EXPECT_TRUE(r == g && g == b && a == 1);
            ++counts[4];
        }
    }
    for (const int count : counts) EXPECT_GT(count, 0);
}

TEST_F(DigitalGlitchTest, AnswersToEveryParameter) {
    const Region region = {0, 0, kFrameWidth, kFrameHeight};
    const Glitch base = {};
    setAll(base);
    const RegionPixels before = draw(node, region);
    Glitch changed[8];
    for (Glitch& g : changed) g = base;
    changed[0].stripCount = 3;
    changed[1].stripIntensity = 1.8;
    changed[2].blockCount = 3;
    changed[3].blockWidth = 0.9;
    changed[4].blockIntensity = 1.8;
    changed[5].translation = 0.8;
    changed[6].offset[0] = 0.1;
    changed[7].offset[1] = 0.1;
    for (const Glitch& g : changed) {
        setAll(g);
        EXPECT_NE(draw(node, region).rgba, before.rgba) << &g - changed;
    }
}
