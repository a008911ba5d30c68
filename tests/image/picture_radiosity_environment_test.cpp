// The environment where it closes: the left edge of the map goes on at its right one, and a
// surface that shows both has no line between them, however small the copies of the map get.
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

#include "gpu/gl_mem_texture.h"
#include "image/radiosity_fixture.h"

namespace {

class RadiosityEnvironmentTest : public RadiosityTest {
  protected:
    static constexpr int kWidth = 256, kHeight = 128;
    static constexpr double kPi = 3.14159265;

    // Bright where it closes and dark opposite, so that any smaller copy is darker there; its
    // smallest one is half as bright.
    static double brightnessAt(double u) { return 0.5 + 0.5 * std::cos(2 * kPi * u); }

    RadiosityEnvironmentTest() {
        std::vector<std::uint8_t> pixels;
        for (int y = 0; y < kHeight; ++y) {
            for (int x = 0; x < kWidth; ++x) {
                const double value = brightnessAt((x + 0.5) / kWidth);
                pixels.insert(pixels.end(), 3, static_cast<std::uint8_t>(std::lround(255 * value)));
            }
        }
        const auto map = std::make_shared<GL_MemTexture>(kWidth, kHeight, GL_RGB, GL_REPEAT,
                                                         GL_REPEAT, pixels.data());
        link(add<PictureNode>("environment", map), node, Renderer::kEnvironmentPort);
    }

    // A mirror over the whole frame, turned so that the map closes on a slanted line in the middle
    // of it: pixels are shaded two by two, and the line crosses such groups.
    void addMirror(int blend) {
        const Material mirror = surface(0, blend);
        mirror->reflection = 1;
        mirror->refFresnel = 0.1f;
        addObject(SquareMesh(), mirror, placed({0, 0, 0}, kTurnDegrees, 8));
    }

    struct Expected {
        double value, longitude;  // 0 to 1; the map closes at both
    };
    // What the mirror shows in a pixel: the map at the longitude of the reflected view, as much of
    // it as the angle allows.
    static Expected expectedAt(int x, int y) {
        const double t = std::tan(kPi / 6);
        const Double3 toEye = Normalised({-acrossOf(x) * t * 1.77777, -upOf(y) * t, 1});
        const Mat4 turn = placed({0, 0, 0}, kTurnDegrees);
        const Double3 normal = {static_cast<double>(turn[8]), static_cast<double>(turn[9]),
                                static_cast<double>(turn[10])};
        const double incident = Dot(normal, toEye);
        const Double3 r = Plus(toEye, normal, -2 * incident);
        const double u = 0.5 + std::atan2(r[0], r[2]) / (2 * kPi);
        return {brightnessAt(u) * std::pow(1 - incident, 0.1), u};
    }

    void expectNoLine(int attachment) {
        const ReferencePicture drawn = prepared(attachment);
        int wrong = 0, closing = 0;
        for (int y = 400; y < 700; y += 3) {
            double before = expectedAt(0, y).longitude;
            for (int x = 1; x < kFrameWidth; ++x) {
                const Expected expected = expectedAt(x, y);
                closing += std::fabs(expected.longitude - before) > 0.5;
                before = expected.longitude;
                // 8 bits of the map, rounded; a little more where a pixel lies between two texels
                // or levels; half floats of 11 bits.
                const double tolerance = 1.5 / 255 + expected.value / 1024;
                const auto actual = static_cast<double>(drawn.texelAt(x, y).g);
                const bool right = std::fabs(actual - expected.value) <= tolerance;
                if (!right && ++wrong <= 3) {
                    ADD_FAILURE() << "at " << x << ", " << y << ": " << actual << " for "
                                  << expected.value;
                }
            }
        }
        EXPECT_EQ(wrong, 0);
        EXPECT_EQ(closing, 100);  // in every row
    }

    static constexpr Vec3 kTurnDegrees = {-20, 3, 0};
};

}  // namespace

TEST_F(RadiosityEnvironmentTest, HasNoLineWhereItCloses) {
    addMirror(MaterialData::kNormal);
    node.pull();
    expectNoLine(Renderer::kReflection);
}

TEST_F(RadiosityEnvironmentTest, HasNoLineWhereItClosesOnAdditiveSurfaces) {
    addMirror(MaterialData::kAdd);
    node.pull();
    expectNoLine(Renderer::kColour);
}
