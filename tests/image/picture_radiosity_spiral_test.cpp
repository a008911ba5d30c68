// The occlusion and the light gather of the radiosity renderer, against the same sums in double
// precision over the targets that the passes read.
#include <gmock/gmock.h>

#include <algorithm>

#include "image/radiosity_fixture.h"

namespace {

// A mean of four equal texels, in double precision, may be this far from them.
constexpr double kSamePlace = 1e-12;
constexpr double kGoldenAngle = 2.4;
constexpr int kPhaseSteps = 12;  // to each side of the middle

struct SpiralSettings {
    double intensity, radius, bias, scale, maxDistance;
    int samples;
};

// A result with the least and the most that a renderer may answer.
struct Band {
    double least = 1e30, most = -1e30;
    void take(double value, double error) {
        least = std::min(least, value - error);
        most = std::max(most, value + error);
    }
};

// Noise from 0 to 1 of a place, in single precision as the definition has it.
float Hash12(float x, float y) {
    const auto fract = [](float v) { return v - std::floor(v); };
    float p[3] = {fract(x * .1031f), fract(y * .11369f), fract(x * .13787f)};
    const float sum = p[0] * (p[1] + 19.19f) + p[1] * (p[2] + 19.19f) + p[2] * (p[0] + 19.19f);
    for (float& v : p) v += sum;
    return fract((p[0] + p[1]) * p[2]);
}

double Weight(const Double3& normal, const Double3& d, const SpiralSettings& settings) {
    const double l = Length(d);
    if (l < kSamePlace) return 0;
    const double facing = std::max(0.0, Dot(normal, d) / l - settings.bias);
    const double t = std::clamp(
        (l - settings.maxDistance) / (settings.maxDistance * 0.5 - settings.maxDistance), 0.0, 1.0);
    return facing / (1 + l * settings.scale) * t * t * (3 - 2 * t);
}

Double3 Rgb(const Sample& sample) {
    return {sample.rgba[0], sample.rgba[1], sample.rgba[2]};
}

struct SpiralInputs {
    const ReferencePicture& normals;
    const ReferencePicture& positions;
    const ReferencePicture* light;  // null: occlusion
};

// The phases from which a renderer may begin, from the least to the most. The noise is made of the
// last digits of the place, so that what interpolation in single precision moves it by (about a
// unit at 1, 6e-8) counts, and what the noise's own numbers up to 7000 are rounded by as well.
struct PhaseRange {
    double middle, slack;
};

PhaseRange PhasesAt(double u, double v) {
    const auto noise = [&](int stepU, int stepV) {
        const auto moved = [](double place, int step) {
            return static_cast<float>(place + step * 1.2e-7) * 100;
        };
        return static_cast<double>(Hash12(moved(u, stepU), moved(v, stepV)));
    };
    const double middle = noise(0, 0);
    double slack = 0.003;
    for (int i = 0; i < 9; ++i) {
        const double apart = std::fabs(noise(i % 3 - 1, i / 3 - 1) - middle);
        slack = std::max(slack, std::min(apart, 1 - apart));  // 1 is the same phase as 0
    }
    return {middle * 6.28, slack * 6.28};
}

// How far a weight may lie off, when the sampled place does along each axis: it comes from four
// texels. The same place on four equal texels is certain.
double WeightError(const Double3& normal, const Double3& d, double placeError,
                   const SpiralSettings& settings) {
    if (placeError == 0 && Length(d) < kSamePlace) return 0;
    const double w = Weight(normal, d, settings);
    double apart = 0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        for (const double step : {-1.0, 1.0}) {
            Double3 moved = d;
            moved[axis] += step * (placeError + 1e-4);
            apart = std::max(apart, std::fabs(Weight(normal, moved, settings) - w));
        }
    }
    return apart;
}

// Channel `c` of the mean over the spiral times the intensity, at a place of the geometry targets.
Band SpiralAt(const SpiralInputs& inputs, const SpiralSettings& settings, double u, double v,
              int c) {
    const Double3 p = Rgb(inputs.positions.sample(u, v));
    const Double3 n = Rgb(inputs.normals.sample(u, v));
    Band band;
    const PhaseRange phases = PhasesAt(u, v);
    for (int phase = -kPhaseSteps; phase <= kPhaseSteps; ++phase) {
        double rotatePhase = phases.middle + phases.slack * phase / kPhaseSteps;
        double radius = 0, sum = 0, error = 0;
        for (int i = 0; i < settings.samples; ++i) {
            radius += settings.radius / p[2] / settings.samples;
            const double su = u + std::sin(rotatePhase) * radius;
            const double sv = v + std::cos(rotatePhase) * radius;
            rotatePhase += kGoldenAngle;
            const Sample place = inputs.positions.sample(su, sv);
            const Double3 d = Plus(Rgb(place), p, -1);
            const double w = Weight(n, d, settings);
            const double apart = WeightError(n, d, place.error, settings);
            if (inputs.light == nullptr) {
                sum += w;
                error += apart;
            } else {
                const Sample light = inputs.light->sample(su, sv);
                sum += light.rgba[c] * w;
                error += std::fabs(light.rgba[c]) * apart + light.error * w;
            }
        }
        const double gain = settings.intensity / settings.samples;
        band.take(sum * gain, error * gain);
    }
    return band;
}

// Bands of the frame, drawn by scissors: the targets that a pass reads stay whole.
constexpr Region kBands[] = {{0, 560, kFrameWidth, 2}, {0, 800, kFrameWidth, 2}};
constexpr Region kColumn = {1010, 0, 2, kFrameHeight};

class RadiositySpiralTest : public RadiosityTest {
  protected:
    // Compares a pass with the reference; how much of the picture it says anything about follows.
    struct Comparison {
        int points = 0, wrong = 0, busy = 0;
        double bandWidth = 0;  // sum
    };

    void drawScene() {
        set(node, "FOV", {50});
        node.pull();
        normals = std::make_unique<ReferencePicture>(prepared(Renderer::kEyeNormal));
        positions = std::make_unique<ReferencePicture>(prepared(Renderer::kEyePosition));
        light = std::make_unique<ReferencePicture>(prepared(Renderer::kIllumination));
    }

    void compareOcclusion(const Region& region, Comparison& result) {
        draw(node, region);
        const SpiralSettings settings = {wide(node.aoIntensity),   wide(node.aoRadius),
                                         wide(node.aoBias),        wide(node.aoScale),
                                         wide(node.aoMaxDistance), 16};
        const RegionPixels pixels = read(*node.aoBuffer, region);
        eachPoint(region, [&](int x, int y, double u, double v) {
            const Band sum = SpiralAt({*normals, *positions, nullptr}, settings, u, v, 0);
            const Band band = {std::max(0.0, 1 - sum.most), std::max(0.0, 1 - sum.least)};
            const float* texel = pixels.at(x, y);
            take(result, band, static_cast<double>(texel[0]), sum.most > 0.02);
            result.wrong += texel[1] != texel[0] || texel[2] != texel[0] || texel[3] != 1;
        });
    }

    void compareLight(const Region& region, int samples, Comparison& result) {
        draw(node, region);
        const SpiralSettings settings = {wide(node.giIntensity),   wide(node.giRadius),
                                         wide(node.giBias),        wide(node.giScale),
                                         wide(node.giMaxDistance), samples};
        const RegionPixels pixels = read(*node.giBuffer, region);
        eachPoint(region, [&](int x, int y, double u, double v) {
            for (int c = 0; c < 3; ++c) {
                const Band band = SpiralAt({*normals, *positions, light.get()}, settings, u, v, c);
                take(result, band, static_cast<double>(pixels.at(x, y)[c]), band.most > 0.02);
            }
            result.wrong += pixels.at(x, y)[3] != 1;
        });
    }

    // `widestBand`: how much may be left open on the mean.
    static void expectGood(const Comparison& result, double widestBand = 0.04) {
        // Between two of the phases that are tried, a sample may fall on the rim of a surface,
        // which is a texel wide.
        EXPECT_LE(result.wrong, result.points / 100) << "of " << result.points;
        EXPECT_GT(result.points, 500);
        EXPECT_GT(result.busy, 300);  // there was something to see
        EXPECT_LT(result.bandWidth / result.points, widestBand);
    }

    std::unique_ptr<ReferencePicture> normals, positions, light;

  private:
    static double wide(float number) { return static_cast<double>(number); }

    // The results lie upside down to what they are made from.
    template <typename Visit>
    static void eachPoint(const Region& region, Visit visit) {
        for (int y = region.y; y < region.y + region.height; ++y) {
            for (int x = region.x + y % 3; x < region.x + region.width; x += 5) {
                visit(x, y, (x + 0.5) / kFrameWidth, 1 - (y + 0.5) / kFrameHeight);
            }
        }
    }

    static void take(Comparison& result, const Band& band, double actual, bool busy) {
        // Half floats of 11 bits, cut or rounded, and single precision on the way.
        const double tolerance = std::max(std::fabs(band.most), 0.25) / 1024 + 1e-3;
        ++result.points;
        result.busy += busy;
        result.bandWidth += band.most - band.least;
        result.wrong += !(actual >= band.least - tolerance && actual <= band.most + tolerance);
    }
};

}  // namespace

TEST_F(RadiositySpiralTest, OccludesWhereSurfacesStandOverAPoint) {
    buildRoom();
    drawScene();
    node.aoEnable = true;
    Comparison result;
    for (const Region& region : {kBands[0], kBands[1], kColumn}) compareOcclusion(region, result);
    expectGood(result);
}

TEST_F(RadiositySpiralTest, OccludesByAllItsParameters) {
    buildRoom();
    drawScene();
    node.aoEnable = true;
    set(node, "AO:Intensity", {8});
    set(node, "AO:Radius", {2.5f});
    set(node, "AO:Bias", {0.01f});
    set(node, "AO:Scale", {0.75f});
    set(node, "AO:Max Dist", {1.5f});
    Comparison result;
    compareOcclusion(kBands[0], result);
    compareOcclusion(kColumn, result);
    expectGood(result);
}

TEST_F(RadiositySpiralTest, TakesTheBackgroundForASurface) {
    buildRoom();
    set(node, "Background", {0.25f, 0.5f, 0.75f, 1});
    drawScene();
    node.aoEnable = true;
    Comparison result;
    compareOcclusion(kBands[1], result);
    compareOcclusion(kColumn, result);
    expectGood(result);
}

TEST_F(RadiositySpiralTest, GathersTheLightOfLampsNearby) {
    buildRoom();
    drawScene();
    node.giEnable = true;
    set(node, "GI:Intensity", {20});
    set(node, "GI:Radius", {2});
    Comparison result;
    for (const Region& region : {kBands[1], kColumn}) compareLight(region, 32, result);
    expectGood(result);
}

TEST_F(RadiositySpiralTest, GathersByAllItsParameters) {
    buildRoom();
    drawScene();
    node.giEnable = true;
    node.giSamples = " 11 and more";
    set(node, "GI:Intensity", {30});
    set(node, "GI:Radius", {2.5f});
    set(node, "GI:Bias", {0.01f});
    set(node, "GI:Scale", {0.5f});
    set(node, "GI:Max Dist", {2.5f});
    Comparison result;
    compareLight(kBands[1], 11, result);
    expectGood(result, 0.1);  // of light that reaches 3
}

TEST_F(RadiositySpiralTest, LeavesOutOnlyWhatDoesNotShow) {
    buildRoom();
    set(node, "GI:Ambiance", {0.5f});
    const Region region = {500, 420, 400, 160};
    for (const Vec4& colour : {Vec4{0, 0, 0, 1}, Vec4{0.1f, 0.2f, 0.3f, 1}, Vec4{1, 1, 1, 0}}) {
        set(node, "Background", {colour.r, colour.g, colour.b, colour.a});
        std::vector<float> ao[2], gi[2];
        node.aoEnable = node.giEnable = false;
        node.pull();
        node.aoEnable = node.giEnable = true;
        for (const bool skip : {false, true}) {
            node.skipNeutralWork = skip;
            draw(node, region);
            ao[skip] = read(*node.aoBuffer, region).rgba;
            gi[skip] = read(*node.giBuffer, region).rgba;
        }
        EXPECT_EQ(ao[0], ao[1]);
        EXPECT_EQ(gi[0], gi[1]);
    }
}

TEST_F(RadiositySpiralTest, DoesNotGatherWhatThePictureDoesNotShow) {
    buildRoom();
    node.pull();
    node.giEnable = true;
    const Region region = {1000, 600, 400, 40};
    for (const char* name : {"GI:Ambiance", "GI:Intensity"}) {
        SCOPED_TRACE(name);
        const float usual = name == std::string("GI:Ambiance") ? 1.0f : 5.0f;
        set(node, name, {0});
        node.skipNeutralWork = false;
        const std::vector<float> plain = draw(node, region).rgba;
        node.skipNeutralWork = true;
        EXPECT_EQ(draw(node, region).rgba, plain);
        EXPECT_EQ(texelOf(*node.giBuffer, 1250, 620).r, 0);
        set(node, name, {usual});
    }
}

TEST_F(RadiositySpiralTest, HoldsNeutralValuesWhileOff) {
    buildRoom();
    node.aoEnable = node.giEnable = true;
    node.giSamples = "4";
    node.pull();
    node.aoEnable = node.giEnable = false;
    node.pull();
    const Region all;
    const std::vector<float> ao = read(*node.aoBuffer, all).rgba;
    EXPECT_EQ(std::count(ao.begin(), ao.end(), 1.0f), static_cast<long>(ao.size()));
    const std::vector<float> gi = read(*node.giBuffer, all).rgba;
    int wrong = 0;
    for (std::size_t i = 0; i < gi.size(); ++i) wrong += gi[i] != (i % 4 == 3 ? 1.0f : 0.0f);
    EXPECT_EQ(wrong, 0);
}

TEST_F(RadiositySpiralTest, AdditiveSurfacesNeitherCastNorReceive) {
    buildRoom();
    node.pull();
    node.aoEnable = node.giEnable = true;
    const Region region = {900, 420, 400, 300};
    draw(node, region);
    const std::vector<float> ao = read(*node.aoBuffer, region).rgba;
    const std::vector<float> gi = read(*node.giBuffer, region).rgba;
    const Material veil = surface(0.5f, MaterialData::kAdd);
    veil->illumination = 3;
    veil->illuminationImage = plain({1, 1, 1, 1});
    addObject(SphereMesh(12, 6), veil, placed({0, 0.2f, 1}, {0, 0, 0}, 0.8f));
    draw(node, region);
    EXPECT_EQ(read(*node.aoBuffer, region).rgba, ao);
    EXPECT_EQ(read(*node.giBuffer, region).rgba, gi);
}

TEST_F(RadiositySpiralTest, ReadsItsSampleCountFromText) {
    EXPECT_EQ(GatherSampleCount("32"), 32);
    EXPECT_EQ(GatherSampleCount("  7 samples"), 7);
    EXPECT_EQ(GatherSampleCount("many"), 0);
    EXPECT_EQ(GatherSampleCount(""), 0);
    EXPECT_EQ(GatherSampleCount("-5"), 0);
    EXPECT_EQ(GatherSampleCount("4096"), 4096);
    EXPECT_EQ(GatherSampleCount("99999999999999999999999"), 4096);
}

TEST_F(RadiositySpiralTest, GathersNothingWithoutSamples) {
    buildRoom();
    node.giEnable = true;
    node.giSamples = "none";
    node.pull();
    for (const auto& [x, y] : {std::pair{960, 400}, {960, 700}, {1200, 500}}) {
        EXPECT_EQ(texelOf(*node.giBuffer, x, y).r, 0);
        EXPECT_TRUE(std::isfinite(texelOf(*node.composeBuffer, x, y).r));
    }
}
