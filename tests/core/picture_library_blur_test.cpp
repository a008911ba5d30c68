#include "library_shader_fixture.h"

namespace {

constexpr double kAspect = static_cast<double>(kFrameWidth) / kFrameHeight;

double Mix(double a, double b, double part) {
    return a + (b - a) * part;
}

// Blurs draw from a picture, and their strength from a map.
class BlurTest : public LibraryShaderTest {
  protected:
    void addInputs(ImageNode_Shader& node) {
        link(addPicture("picture", picture), node, 0);
        link(addPicture("map", map), node, 1);
    }

    // The mean of the map, mixed in: its error moves the samples of a blur that reaches
    // `reachU` and `reachV` by less than the slope of the picture can show beyond this.
    double strengthAt(double u, double v, double mask) const {
        return Mix(1, map.sample(u, v).mean(), mask);
    }

    // How much a weighted mean of samples changes when they all move by a part of a texel: the
    // samples' error is a 256th of how far their texels lie apart.
    double movedError(const Sample& mean, double u, double v, double mask, double reachU,
                      double reachV) const {
        const double part = map.sample(u, v).error * mask + 1e-6;
        return mean.error * 256 * part * (reachU * picture.width + reachV * picture.height);
    }

    ReferencePicture picture = ReferencePicture::Waves(64, 36, 6);
    ReferencePicture map = ReferencePicture::Waves(32, 18, 7);
};

class DirectionalBlurTest : public BlurTest {
  protected:
    void expectBlur(double dx, double dy, double length, double quality, double mask) {
        const auto f = [](double v) { return static_cast<float>(v); };
        set(node, "Direction", {f(dx), f(dy)});
        set(node, "Length", {f(length)});
        set(node, "Quality", {f(quality)});
        set(node, "Mask", {f(mask)});
        expectEverywhere(node, [=, this](double u, double v, PixelRange& range) {
            const double l = std::max(1.0, length);
            const double k = strengthAt(u, v, mask);
            const int n = std::clamp(static_cast<int>(std::floor(quality)), 1, 64);
            Sample sum;
            double weights = 0;
            for (int i = -n; i <= n; ++i) {
                const double offset = l * i / n;
                const double weight = std::pow(1 - std::fabs(offset) / l, 2);
                sum.addWeighted(picture.sample(u + dx / kFrameWidth * offset * k,
                                               v + dy / kFrameHeight * offset * k),
                                weight);
                weights += weight;
            }
            Sample mean = sum.over(weights);
            mean.error += movedError(mean, u, v, mask, std::fabs(dx) * l / kFrameWidth,
                                     std::fabs(dy) * l / kFrameHeight);
            range = PixelRange::about(mean);
            return true;
        });
    }

    void SetUp() override {
        BlurTest::SetUp();
        addInputs(node);
    }

    ImageNode_Shader& node = addScript("DirectionalBlur");
};

class RadialOutBlurTest : public BlurTest {
  protected:
    struct Settings {
        double length = 60, quality = 16, mask = 0, ooze = 0, centerX = 0.5, centerY = 0.5;
    };

    void expectBlur(const Settings& s) {
        const auto f = [](double v) { return static_cast<float>(v); };
        set(node, "Length", {f(s.length)});
        set(node, "Quality", {f(s.quality)});
        set(node, "Mask", {f(s.mask)});
        set(node, "Oooooze", {f(s.ooze)});
        set(node, "Center", {f(s.centerX), f(s.centerY)});
        expectEverywhere(node, [=, this](double u, double v, PixelRange& range) {
            range = PixelRange::about(pixel(s, u, v));
            range.low[3] = std::min(range.low[3], 1.0);
            range.high[3] = std::min(range.high[3], 1.0);
            return true;
        });
    }

    Sample pixel(const Settings& s, double u, double v) const {
        const double k = std::max(strengthAt(u, v, s.mask), 0.0);
        const double x = (u - s.centerX) * kFrameWidth, y = (v - s.centerY) * kFrameHeight;
        const double distance = std::hypot(x, y);
        const double l = std::min(2 * std::max(s.length, 0.0) * k, distance);
        const int n = std::clamp(static_cast<int>(std::floor(s.quality)), 1, 64);
        Sample sum;
        double weights = 0;
        for (int i = 0; i < n; ++i) {
            const double offset = -l * i / n;
            const double weight = std::pow(1 - static_cast<double>(i) / n, 2);
            const double part = distance > 0 ? offset / distance : 0;
            sum.addWeighted(picture.sample(u + x * part / kFrameWidth, v + y * part / kFrameHeight),
                            weight);
            weights += weight;
        }
        Sample mean = sum.over(weights);
        mean.error +=
            movedError(mean, u, v, s.mask, 2 * s.length / kFrameWidth, 2 * s.length / kFrameHeight);
        return mean.addWeighted(picture.sample(u, v), s.ooze);
    }

    void SetUp() override {
        BlurTest::SetUp();
        addInputs(node);
    }

    ImageNode_Shader& node = addScript("RadialOutBlur");
};

// Four pixels a texel, with a bright spot now and then on a dark ground. Steps of quarter pixels
// then fall on places that the 8 bits between two texels hold; what is left is single precision.
ReferencePicture Spots() {
    ReferencePicture spots(480, 270, [](int x, int y) -> Vec4 {
        const unsigned mixed = static_cast<unsigned>(x * 7919 + y * 104729) * 2654435761u >> 16;
        const auto part = [mixed](unsigned shift) {
            return static_cast<float>(mixed >> shift & 63) / 256;
        };
        const float light = mixed % 23 == 0 ? 0.75f : 0.0f;
        return {part(0) + light, part(4) + light, part(8), 0.5f + part(6)};
    });
    spots.placeError = 1.0 / 4000;
    return spots;
}

class LensBlurTest : public BlurTest {
  protected:
    struct Settings {
        double radius, accuracy, maskIntensity;
    };

    void expectBlur(const Settings& s, const Region& region) {
        const auto f = [](double v) { return static_cast<float>(v); };
        set(node, "Radius", {f(s.radius)});
        set(node, "Accuracy", {f(s.accuracy)});
        set(node, "MaskIntensity", {f(s.maskIntensity)});
        expectPixels(node, region, [=, this](double u, double v, PixelRange& range) {
            range = PixelRange::about(pixel(s, u, v));
            return true;
        });
    }

    Sample pixel(const Settings& s, double u, double v) const {
        const double mask = std::max(strengthAt(u, v, s.maskIntensity), 0.0);
        const double radius = std::clamp(15 * s.radius * mask, 0.0, 240.0);
        const double part = radius - std::floor(radius);
        Sample result;
        const double mapError = map.sample(u, v).error * s.maskIntensity + 1e-6;
        const Sample inner = disc(std::floor(radius), s.accuracy, mask, mapError, u, v);
        const Sample outer = disc(std::ceil(radius), s.accuracy, mask, mapError, u, v);
        result.addWeighted(inner, 1 - part).addWeighted(outer, part);
        // The map's error moves the blend of the two discs.
        double apart = 0;
        for (int c = 0; c < 4; ++c) {
            apart = std::max(apart, std::fabs(inner.rgba[c] - outer.rgba[c]));
        }
        result.error += 15 * s.radius * mapError * apart;
        return result;
    }

    // `mapError`: of the mask.
    Sample disc(double size, double accuracy, double mask, double mapError, double u,
                double v) const {
        if (size < 1) return picture.sample(u, v);
        const double step = 1 + std::max(accuracy, 0.0) / 20;
        const int n = static_cast<int>(std::floor(size / step + 1e-9));
        const double swell = 8 * std::clamp(mask * 3, 0.0, 1.0);
        const double swellError = mask * 3 < 1 ? 24 * mapError : 0;
        Sample sum;
        double weights = 0, weightErrors = 0, least = 1e30, most = -1e30;
        for (int y = -n; y <= n; ++y) {
            for (int x = -n; x <= n; ++x) {
                const double l = std::hypot(x, y) * step;
                if (l > size + 1e-9) continue;
                const Sample sample = picture.sample(u + x * step / kFrameWidth,
                                                     v + y * kAspect * step / kFrameWidth);
                const double bright = std::max(sample.mean() - 0.1, 0.0);
                const double weight = 1 + bright * swell * (1 + l / size);
                sum.addWeighted(sample, weight);
                weights += weight;
                const double brightError = sample.mean() + sample.error > 0.1 ? sample.error : 0;
                weightErrors += (brightError * swell + bright * swellError) * (1 + l / size);
                least = std::min(least, *std::min_element(sample.rgba, sample.rgba + 4));
                most = std::max(most, *std::max_element(sample.rgba, sample.rgba + 4));
            }
        }
        Sample mean = sum.over(weights);
        // A weight that is off counts as far as its sample lies from the mean.
        mean.error += weightErrors / weights * (most - least);
        return mean;
    }

    void SetUp() override {
        BlurTest::SetUp();
        picture = Spots();
        addInputs(node);
    }

    ImageNode_Shader& node = addScript("LensBlur");
    static constexpr Region kSpot = {900, 500, 48, 24};
    static constexpr Region kRim = {0, kFrameHeight - 20, 40, 20};
};

}  // namespace

TEST_F(DirectionalBlurTest, AveragesAlongItsDirection) {
    expectBlur(1, 0, 48, 8, 0);
    expectBlur(0.6, -0.8, 120, 5.75, 0);
    expectBlur(0, 1, 200, 64, 0);
}

TEST_F(DirectionalBlurTest, ScalesTheLengthByTheMap) {
    expectBlur(0.7, 0.7, 160, 12, 1);
    expectBlur(1, -0.5, 100, 9, 0.375);
}

TEST_F(DirectionalBlurTest, BlursOverAPixelAtLeast) {
    expectBlur(30, 0, 0.01, 4, 0);
}

TEST_F(DirectionalBlurTest, BoundsItsSamples) {
    expectBlur(1, 0, 48, -3, 0);
    expectBlur(1, 0, 48, 1e6, 0);
}

TEST_F(RadialOutBlurTest, AveragesTowardsItsCenter) {
    expectBlur({});
    expectBlur({.length = 300, .quality = 40.5, .centerX = 0.25, .centerY = 0.875});
    expectBlur({.length = 100, .quality = 6, .centerX = -0.5, .centerY = 1.25});
}

TEST_F(RadialOutBlurTest, ScalesTheLengthByTheMap) {
    expectBlur({.length = 200, .mask = 1});
    expectBlur({.length = 200, .mask = 0.5, .centerX = 0.125});
}

TEST_F(RadialOutBlurTest, AddsTheOriginalAndCapsAlpha) {
    expectBlur({.ooze = 0.75});
    expectBlur({.length = 0, .ooze = 2});
}

TEST_F(LensBlurTest, LeavesThePictureAloneWithoutARadius) {
    expectBlur({.radius = 0, .accuracy = 0, .maskIntensity = 0}, kSpot);
    expectBlur({.radius = 0, .accuracy = 0, .maskIntensity = 0}, kFarCorner);
}

TEST_F(LensBlurTest, BlendsTheDiscsOfTheWholeRadiiAround) {
    expectBlur({.radius = 0.05, .accuracy = 0, .maskIntensity = 0}, kSpot);
    expectBlur({.radius = 0.3, .accuracy = 0, .maskIntensity = 0}, kSpot);
    expectBlur({.radius = 0.6875, .accuracy = 15, .maskIntensity = 0}, kRim);
}

TEST_F(LensBlurTest, TakesItsStepFromTheAccuracyUpToTheWidestRadius) {
    expectBlur({.radius = 4, .accuracy = 40, .maskIntensity = 0}, kSpot);
    expectBlur({.radius = 4, .accuracy = 0, .maskIntensity = 0}, {1000, 300, 12, 6});
}

TEST_F(LensBlurTest, ScalesRadiusAndSwellingByTheMask) {
    expectBlur({.radius = 1, .accuracy = 40, .maskIntensity = 1}, kSpot);
    expectBlur({.radius = 1.5, .accuracy = 40, .maskIntensity = 0.5}, kRim);
}

TEST_F(LensBlurTest, EndsForAnyRadius) {
    set(node, "Radius", {1e30f});
    set(node, "Accuracy", {-1e30f});
    const RegionPixels pixels = draw(node, {960, 540, 2, 2});
    for (const float value : pixels.rgba) EXPECT_TRUE(std::isfinite(value));
}
