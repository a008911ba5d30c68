#include "geometry/particle_surface.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <map>
#include <random>
#include <vector>

namespace {

using Point = std::array<double, 3>;
using Particles = std::vector<Particle>;

const Particles kTwoInOnePlace = {{0, 0, 0, 1}, {0, 0, 0, 1}};

double FieldAt(const Particles& particles, const Point& point) {
    double value = 0;
    for (const Particle& p : particles) {
        const double dx = point[0] - p.x, dy = point[1] - p.y, dz = point[2] - p.z;
        value += double{p.r} * p.r / std::max(dx * dx + dy * dy + dz * dz, 0.0001);
    }
    return value;
}

Point GradientOf(const Particles& particles, const Point& point) {
    Point gradient = {};
    for (const Particle& p : particles) {
        const double d[3] = {point[0] - p.x, point[1] - p.y, point[2] - p.z};
        const double d2 = std::max(d[0] * d[0] + d[1] * d[1] + d[2] * d[2], 0.0001);
        for (std::size_t axis = 0; axis < 3; ++axis) {
            gradient[axis] += double{p.r} * p.r / (d2 * d2) * d[axis];
        }
    }
    return gradient;
}

Point GridPoint(int i, int j, int k) {
    return {i * 20.0 / 60 - 10, j * 20.0 / 60 - 10, k * 20.0 / 60 - 10};
}

Point PointOf(const Vec3& v) {
    return {double{v.x}, double{v.y}, double{v.z}};
}

double Dot(const Point& a, const Point& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

double Length(const Point& a) {
    return std::sqrt(Dot(a, a));
}

Point Minus(const Point& a, const Point& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

Point Cross(const Point& a, const Point& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

// A mesh whose corners in the very same place are one.
struct WeldedMesh {
    std::vector<Point> points;
    std::vector<std::array<std::size_t, 3>> triangles;  // with three different corners

    explicit WeldedMesh(const std::vector<MeshVertex>& mesh) {
        std::map<Point, std::size_t> known;
        for (std::size_t i = 0; i + 2 < mesh.size(); i += 3) {
            std::array<std::size_t, 3> t = {};
            for (std::size_t c = 0; c < 3; ++c) {
                const Point point = PointOf(mesh[i + c].position);
                const auto [place, isNew] = known.try_emplace(point, points.size());
                if (isNew) points.push_back(point);
                t[c] = place->second;
            }
            if (t[0] != t[1] && t[1] != t[2] && t[2] != t[0]) triangles.push_back(t);
        }
    }

    // How often the triangles run along each side, by its two ends in order.
    std::map<std::pair<std::size_t, std::size_t>, int> sides() const {
        std::map<std::pair<std::size_t, std::size_t>, int> result;
        for (const auto& t : triangles) {
            for (std::size_t c = 0; c < 3; ++c) ++result[{t[c], t[(c + 1) % 3]}];
        }
        return result;
    }
};

void ExpectClosed(const std::vector<MeshVertex>& mesh) {
    const auto sides = WeldedMesh(mesh).sides();
    for (const auto& [ends, count] : sides) {
        ASSERT_EQ(count, 1) << "two triangles turn the same way around a side";
        const auto other = sides.find({ends.second, ends.first});
        ASSERT_NE(other, sides.end()) << "a side without a second triangle";
        ASSERT_EQ(other->second, 1);
    }
}

double SignedVolume(const WeldedMesh& mesh) {
    double volume = 0;
    for (const auto& t : mesh.triangles) {
        volume += Dot(mesh.points[t[0]], Cross(mesh.points[t[1]], mesh.points[t[2]])) / 6;
    }
    return volume;
}

// Normals have length 1 and stand on the side from which triangles turn counter-clockwise.
void ExpectOutwardNormals(const Particles& particles, const std::vector<MeshVertex>& mesh) {
    for (const MeshVertex& vertex : mesh) {
        const Point normal = PointOf(vertex.normal);
        ASSERT_NEAR(Length(normal), 1.0, 1e-6) << "three roundings";
        // Between the directions at the ends of a cut edge, a third of a unit apart.
        const Point exact = GradientOf(particles, PointOf(vertex.position));
        if (Length(exact) > 0.2) {
            ASSERT_GT(Dot(normal, exact) / Length(exact), 0.9);
        }
    }
}

// Charges that keep their surface inside the grid: eight of 1 at distance 6 give less than 1.
Particles RandomParticles(std::mt19937& random) {
    std::uniform_real_distribution<float> place(-4.0f, 4.0f), charge(0.0f, 1.0f);
    Particles particles(1 + random() % 8);
    for (Particle& p : particles) p = {place(random), place(random), place(random), charge(random)};
    return particles;
}

}  // namespace

TEST(ParticleField, IsTheSumOfSquaredChargeOverSquaredDistance) {
    const Particles particles = {{0, 0, 0, 1}, {1.5f, -2.25f, 7, 0.5f}, {-9, 3, 0.1f, -3}};
    const auto values = ParticleFieldValues(kParticleGrid, particles);
    ASSERT_EQ(values.size(), 226981u);
    std::size_t at = 0;
    for (int k = 0; k < 61; ++k) {
        for (int j = 0; j < 61; ++j) {
            for (int i = 0; i < 61; ++i) {
                const double exact = FieldAt(particles, GridPoint(i, j, k));
                // Coordinates round at 1e-6, which counts most next to a charge: the nearest point
                // is 0.1 away.
                ASSERT_NEAR(values[at++], exact, 5e-5 * exact) << i << " " << j << " " << k;
            }
        }
    }
}

TEST(ParticleField, CountsNearPointsAsAHundredthAway) {
    const auto values = ParticleFieldValues(kParticleGrid, kTwoInOnePlace);
    // 0.0001 is not a number of single precision.
    EXPECT_NEAR(values[kParticleGrid.index(30, 30, 30)], 20000.0f, 0.01f);
    const Vec3 centre = ParticleFieldGradient(kTwoInOnePlace, {0, 0, 0});
    EXPECT_EQ(centre.x, 0.0f);
    // Nearer than the least distance, only the direction and length of the way still count.
    const Vec3 near = ParticleFieldGradient(kTwoInOnePlace, {0.001f, 0, 0});
    EXPECT_NEAR(near.x, 2.0 / 1e-8 * 0.001, 1.0) << "five roundings at 200000";
}

TEST(ParticleField, HasTheGradientOfTheFormula) {
    std::mt19937 random(3);
    std::uniform_real_distribution<float> place(-10.0f, 10.0f);
    for (int round = 0; round < 200; ++round) {
        const Particles particles = RandomParticles(random);
        const Vec3 point = {place(random), place(random), place(random)};
        const Vec3 gradient = ParticleFieldGradient(particles, point);
        const Point exact = GradientOf(particles, PointOf(point));
        double scale = 1e-30;
        for (const Particle& p : particles) {
            scale += Length(GradientOf({p}, PointOf(point)));
        }
        // Ten roundings in each term; terms may cancel, so the limit is of their sizes.
        EXPECT_LT(Length(Minus(PointOf(gradient), exact)), 5e-6 * scale);
    }
}

// On an edge of a third of a unit across radius sqrt(2), the straight line between the values lies
// above the field 2 / d^2 by at most (1/3)^2 / 8 * 12 / d^4 = 0.042, and the field falls by 1.41 a
// unit: the surface lies up to 0.03 outside of the sphere, and only by rounding inside.
TEST(ParticleSurface, IsASphereOfRadiusRootTwoForTwoChargesInOnePlace) {
    const auto mesh = ParticleSurface(kTwoInOnePlace);
    ASSERT_GT(mesh.size(), 1000u);
    EXPECT_EQ(mesh.size() % 3, 0u);
    double least = 10, most = 0;
    for (const MeshVertex& vertex : mesh) {
        const double radius = Length(PointOf(vertex.position));
        least = std::min(least, radius);
        most = std::max(most, radius);
        // The interpolated normal of a sphere leaves the radius by the same second order.
        EXPECT_GT(Dot(PointOf(vertex.normal), PointOf(vertex.position)) / radius, 0.999);
        EXPECT_EQ(vertex.uv.x, 0.0f);
        EXPECT_EQ(vertex.uv.y, 0.0f);
    }
    EXPECT_GE(least, std::sqrt(2.0) - 1e-6);
    EXPECT_LE(most, std::sqrt(2.0) + 0.035);
    ExpectClosed(mesh);
    ExpectOutwardNormals(kTwoInOnePlace, mesh);

    const WeldedMesh welded(mesh);
    const auto sideCount = static_cast<long>(welded.sides().size() / 2);
    EXPECT_EQ(static_cast<long>(welded.points.size()) - sideCount +
                  static_cast<long>(welded.triangles.size()),
              2)
        << "not the topology of a sphere";
    // Between the polyhedra of the two radii above; flat faces take off about 1 %.
    const double ball = 4.0 / 3 * std::acos(-1.0) * std::pow(std::sqrt(2.0), 3);
    EXPECT_NEAR(SignedVolume(welded), ball, 0.05 * ball);
}

TEST(ParticleSurface, HasTheChargesRadius) {
    for (const float charge : {0.7f, 1.0f, 2.5f, 5.0f, 9.0f, -3.0f}) {
        const double radius = std::abs(double{charge});
        const auto mesh = ParticleSurface(Particles{{0, 0, 0, charge}});
        ASSERT_FALSE(mesh.empty());
        // As above: (1/3)^2 / 8 * 6 r^2 / d^4 over 2 r^2 / d^3 is 0.042 / r, on an edge that may
        // begin at a sixth of a unit further in.
        const double most = 0.042 / (radius - 1.0 / 6) + 1e-4;
        for (const MeshVertex& vertex : mesh) {
            const double distance = Length(PointOf(vertex.position));
            ASSERT_GE(distance, radius - 1e-5) << "only rounding leads inside";
            ASSERT_LE(distance, radius + most) << charge;
        }
        ExpectClosed(mesh);
    }
}

TEST(ParticleSurface, IsClosedAndTurnedOutwardsForManyCharges) {
    std::mt19937 random(17);
    int withSurface = 0;
    for (int round = 0; round < 60; ++round) {
        const Particles particles = RandomParticles(random);
        const auto mesh = ParticleSurface(particles);
        SCOPED_TRACE("round " + std::to_string(round));
        ASSERT_NO_FATAL_FAILURE(ExpectClosed(mesh));
        ASSERT_NO_FATAL_FAILURE(ExpectOutwardNormals(particles, mesh));
        if (mesh.empty()) continue;
        ++withSurface;
        EXPECT_GT(SignedVolume(WeldedMesh(mesh)), 0.0) << "the inside is out";
    }
    EXPECT_GT(withSurface, 50);
}

// Every edge of the grid with its ends on different sides has one vertex, where the straight line
// between its values has the threshold.
TEST(ParticleSurface, HasAVertexOnEveryCutEdgeOfTheGridAndNoOther) {
    const Particles particles = {{0.13f, -0.71f, 1.07f, 1.3f}, {1.9f, 0.6f, -0.45f, 0.8f}};
    std::vector<Point> expected;
    for (int k = 0; k < 60; ++k) {
        for (int j = 0; j < 60; ++j) {
            for (int i = 0; i < 60; ++i) {
                const Point from = GridPoint(i, j, k);
                const double here = FieldAt(particles, from);
                for (std::size_t axis = 0; axis < 3; ++axis) {
                    const Point to = GridPoint(i + (axis == 0), j + (axis == 1), k + (axis == 2));
                    const double there = FieldAt(particles, to);
                    if ((1 > here) == (1 > there)) continue;
                    Point cut = from;
                    cut[axis] += (1 - here) / (there - here) * (to[axis] - from[axis]);
                    expected.push_back(cut);
                }
            }
        }
    }
    const WeldedMesh mesh(ParticleSurface(particles));
    ASSERT_EQ(mesh.points.size(), expected.size());
    for (const Point& point : mesh.points) {
        double nearest = 1;
        for (const Point& cut : expected) nearest = std::min(nearest, Length(Minus(point, cut)));
        // Values of the field round at 1e-6 of a fall of at least 0.1 along an edge.
        ASSERT_LT(nearest, 1e-5);
    }
}

TEST(ParticleSurface, IsTheSameInEveryRun) {
    const auto first = ParticleSurface(kTwoInOnePlace);
    const auto second = ParticleSurface(kTwoInOnePlace);
    ASSERT_EQ(first.size(), second.size());
    EXPECT_EQ(std::memcmp(first.data(), second.data(), first.size() * sizeof(MeshVertex)), 0);
}

TEST(ParticleSurface, IsEmptyWithoutCharge) {
    EXPECT_TRUE(ParticleSurface({}).empty());
    EXPECT_TRUE(ParticleSurface(Particles{{0, 0, 0, 0}}).empty());
    EXPECT_TRUE(ParticleSurface(Particles{{0.1f, 0.1f, 0.1f, 0.01f}}).empty())
        << "smaller than the grid can show";
    EXPECT_TRUE(ParticleSurface(Particles{{1e30f, 0, 0, 1}}).empty()) << "far away";
}

TEST(ParticleSurface, LivesWithChargesThatAreNoNumbers) {
    constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    for (const float odd : {kNan, kInfinity, -kInfinity, 3e38f, -3e38f, 1e19f, 1e-40f}) {
        for (const Particle& p :
             {Particle{odd, 0, 0, 1}, Particle{0, odd, 0, 1}, Particle{0, 0, odd, 1},
              Particle{0, 0, 0, odd}, Particle{odd, odd, odd, odd}}) {
            for (const MeshVertex& vertex : ParticleSurface(Particles{p, {1, 1, 1, 1}})) {
                ASSERT_LE(std::abs(vertex.position.x), 10.0f);
                ASSERT_LE(std::abs(vertex.position.y), 10.0f);
                ASSERT_LE(std::abs(vertex.position.z), 10.0f);
                ASSERT_NEAR(Length(PointOf(vertex.normal)), 1.0, 1e-6) << "three roundings";
            }
        }
    }
}

// Where the surface leaves the grid it ends, without a lid.
TEST(ParticleSurface, IsOpenWhereItLeavesTheGrid) {
    const auto mesh = ParticleSurface(Particles{{10, 0, 0, 2}});
    ASSERT_FALSE(mesh.empty());
    for (const MeshVertex& vertex : mesh) ASSERT_LE(vertex.position.x, 10.0f);
    const auto sides = WeldedMesh(mesh).sides();
    int open = 0;
    for (const auto& [ends, count] : sides) open += !sides.contains({ends.second, ends.first});
    EXPECT_GT(open, 10);
}
