#include <gmock/gmock.h>

#include <array>
#include <cmath>
#include <random>

#include "geometry/transform3d_node_orbit_camera.h"
#include "support/geometry_fixture.h"

namespace {

using ::testing::ElementsAre;

using Point = std::array<double, 3>;

Point operator+(const Point& a, const Point& b) {
    return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
}
Point operator-(const Point& a, const Point& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}
Point operator*(const Point& a, double factor) {
    return {a[0] * factor, a[1] * factor, a[2] * factor};
}
double Dot(const Point& a, const Point& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
Point Cross(const Point& a, const Point& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
Point Unit(const Point& a) {
    return a * (1 / std::sqrt(Dot(a, a)));
}

// The view matrix of the camera, in double precision from the formula.
struct Camera {
    double height = 0, radius = 2, timeOffset = 0, targetHeight = 0, globalSpeed = 0, wiggle = 0,
           wiggleSpeed = 0, pan = 0;

    static double wave(double x) {
        return std::sin(std::cos(x * 0.25) + x - std::sin(x * 0.05) * 10);
    }
    std::array<double, 16> view(double t) const {
        const Point up = {0, 1, 0};
        const double x1 = wiggleSpeed * t, x2 = (t - 0.5) * wiggleSpeed;
        const double angle = globalSpeed * t + timeOffset * 3.1415927;
        const Point c = {std::sin(angle) * radius, height, std::cos(angle) * radius};
        const Point d = Unit(Point{0, targetHeight, 0} - c);
        const Point s = Unit(Cross(up, d));
        const Point eye = c + s * pan + up * (std::cos(x1) * wiggle) + s * (wave(x1) * wiggle);
        const Point target = Point{0, targetHeight, 0} + s * pan +
                             (up * (std::cos(x2) * wiggle) + s * (wave(x2) * wiggle)) * 0.2;
        const Point f = Unit(eye - target), side = Unit(Cross(up, f)), u = Unit(Cross(f, side));
        return {side[0], u[0], f[0], 0, side[1],         u[1],         f[1],         0,
                side[2], u[2], f[2], 0, -Dot(side, eye), -Dot(u, eye), -Dot(f, eye), 1};
    }
};

class OrbitCameraTest : public GeometryTest {
  protected:
    void expectView(const Camera& camera, float time) {
        node.height = static_cast<float>(camera.height);
        node.radius = static_cast<float>(camera.radius);
        node.timeOffset = static_cast<float>(camera.timeOffset);
        node.targetHeight = static_cast<float>(camera.targetHeight);
        node.globalSpeed = static_cast<float>(camera.globalSpeed);
        node.wiggle = static_cast<float>(camera.wiggle);
        node.wiggleSpeed = static_cast<float>(camera.wiggleSpeed);
        node.pan = static_cast<float>(camera.pan);
        EXPECT_TRUE(run(node, time));
        const auto expected = camera.view(static_cast<double>(time));
        for (int i = 0; i < 16; ++i) {
            // Angles of up to 100 radians are rounded to 4e-6, the wave makes up to 1.75 times as
            // much of that, and no eye of the test stands nearer than 2 to its target; the offset
            // is at most 10 long.
            EXPECT_NEAR(static_cast<double>(node.matrix[i]), expected[static_cast<std::size_t>(i)],
                        2e-4)
                << "element " << i << " at " << time;
        }
    }
    Transform3DNode_OrbitCamera& node = add<Transform3DNode_OrbitCamera>("camera");
};

TEST_F(OrbitCameraTest, DeclaresItsParameters) {
    EXPECT_THAT(ParameterTable(engine, node),
                ElementsAre("Height float -3 to 3, 2 decimals, 0, animatable",
                            "Radius float 0 to 20, 2 decimals, 2, animatable",
                            "Time Offset float -3 to 3, 2 decimals, 0",
                            "Target Height float -3 to 3, 2 decimals, 0, animatable",
                            "Global Speed float -3 to 3, 2 decimals, 0",
                            "Wiggle float -1 to 1, 2 decimals, 0, animatable",
                            "WiggleSpeed float -3 to 3, 2 decimals, 0, animatable",
                            "Pan float -4 to 4, 2 decimals, 0, animatable"));
    EXPECT_EQ(node.getType(), kTransform3DNode);
    EXPECT_EQ(node.inputCount, 0);
    EXPECT_FALSE(node.canConnect(0, &node));
    EXPECT_EQ(node.matrix[0], 1.0f);
    EXPECT_EQ(node.matrix[14], 0.0f);
}

TEST_F(OrbitCameraTest, LooksAtTheOriginFromItsRadiusByDefault) {
    EXPECT_TRUE(run(node, 5));
    EXPECT_THAT(node.matrix.m, ElementsAre(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, -2, 1));
}

TEST_F(OrbitCameraTest, ATimeOffsetOfOneIsHalfATurn) {
    node.timeOffset = 1;
    run(node, 0);
    // The sine of single-precision pi is 9e-8.
    EXPECT_NEAR(static_cast<double>(node.matrix[0]), -1, 1e-6);
    EXPECT_NEAR(static_cast<double>(node.matrix[10]), -1, 1e-6);
    EXPECT_NEAR(static_cast<double>(node.matrix[14]), -2, 1e-6);
}

TEST_F(OrbitCameraTest, CirclesAtItsSpeed) {
    expectView({.height = 1, .radius = 3, .globalSpeed = 0.5}, 2);
    expectView({.radius = 3, .timeOffset = -0.25, .globalSpeed = -0.75}, 7.5f);
}

TEST_F(OrbitCameraTest, PanSlidesEyeAndTargetTogether) {
    run(node, 0);
    const Mat4 before = node.matrix;
    node.pan = 1.5f;
    run(node, 0);
    // At rest the camera stands on +z; its side axis is -x.
    EXPECT_EQ(node.matrix[12], 1.5f);
    for (int i = 0; i < 12; ++i) EXPECT_EQ(node.matrix[i], before[i]);
    expectView({.radius = 2, .timeOffset = 0.5, .pan = -2}, 1);
}

TEST_F(OrbitCameraTest, TheTargetWigglesHalfASecondLaterWithAFifth) {
    expectView({.wiggle = 0.5, .wiggleSpeed = 1}, 0);
    expectView({.wiggle = 0.5, .wiggleSpeed = 2}, 0.5f);
    expectView({.wiggle = -1, .wiggleSpeed = -3}, 12.25f);
}

TEST_F(OrbitCameraTest, FollowsItsFormulaEverywhere) {
    std::mt19937 random(3);
    const auto number = [&](double low, double high) {
        const double value = low + (high - low) * static_cast<double>(random()) / 4294967295.0;
        return static_cast<double>(static_cast<float>(value));
    };
    for (int i = 0; i < 2000; ++i) {
        const Camera camera = {.height = number(-1, 1),
                               .radius = number(2, 6),
                               .timeOffset = number(-3, 3),
                               .targetHeight = number(-1, 1),
                               .globalSpeed = number(-3, 3),
                               .wiggle = number(-0.5, 0.5),
                               .wiggleSpeed = number(-3, 3),
                               .pan = number(-4, 4)};
        expectView(camera, static_cast<float>(number(0, 30)));
    }
}

TEST_F(OrbitCameraTest, WithoutARadiusItGoesOn) {
    node.radius = 0;
    EXPECT_TRUE(run(node, 1));
    EXPECT_TRUE(std::isnan(node.matrix[0]));
    node.radius = 2;
    EXPECT_TRUE(run(node, 2));
    EXPECT_EQ(node.matrix[14], -2.0f);
}

}  // namespace
