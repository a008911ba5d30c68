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
        const Point exact = GradientOf(particles, PointOf(vertex.position));
        // Where two charges pull against each other, the direction is anyone's.
        if (Length(exact) > 0.2) {
            ASSERT_GT(Dot(normal, exact), 0.0);
        }
    }
}

struct Cut {
    Point point, normal;
};

Point Between(const Point& from, const Point& to, double part) {
    Point result = {};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        result[axis] = from[axis] + part * (to[axis] - from[axis]);
    }
    return result;
}

// Where the surface cuts the edges of the grid.
std::vector<Cut> CutsOfGrid(const Particles& particles) {
    std::vector<Cut> cuts;
    for (int at = 0; at < 60 * 60 * 60 * 3; ++at) {
        const int axis = at % 3, i = at / 3 % 60, j = at / 180 % 60, k = at / 10800;
        const Point from = GridPoint(i, j, k);
        const Point to = GridPoint(i + (axis == 0), j + (axis == 1), k + (axis == 2));
        const double here = FieldAt(particles, from), there = FieldAt(particles, to);
        if ((1 > here) == (1 > there)) continue;
        const double part = (1 - here) / (there - here);
        const Point gradient =
            Between(GradientOf(particles, from), GradientOf(particles, to), part);
        cuts.push_back({Between(from, to, part), Between({}, gradient, 1 / Length(gradient))});
    }
    return cuts;
}

// Charges that keep their surface inside the grid: eight of 1 at distance 6 give less than 1.
Particles RandomParticles(std::mt19937& random, float leastCharge) {
    std::uniform_real_distribution<float> place(-4.0f, 4.0f), charge(leastCharge, 1.0f);
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
        const Particles particles = RandomParticles(random, 0.0f);
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

// A straight line between values at h = 1/3 leaves the field by at most h^2 / 8 of its second
// derivative along the edge, which for one charge r at its radius is from -2 / r^2 (edges along the
// sphere) to 6 / r^2 (edges through its centre), and the field falls by 2 / r a unit. So the
// surface lies from 0.0139 / r inside of the sphere to 0.042 / r outside; the end of the edge that
// is nearer to the charge counts as half an edge further in.
struct RadiusRange {
    double least, most;
};

RadiusRange RangeOfRadius(double radius) {
    const double nearer = radius - 1.0 / 6;
    return {radius - 0.0139 / nearer, radius + 0.042 / nearer};
}

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
    const RadiusRange range = RangeOfRadius(std::sqrt(2.0));
    EXPECT_GE(least, range.least);
    EXPECT_LE(most, range.most);
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
        const RadiusRange range = RangeOfRadius(radius);
        for (const MeshVertex& vertex : mesh) {
            const double distance = Length(PointOf(vertex.position));
            ASSERT_GE(distance, range.least) << charge;
            ASSERT_LE(distance, range.most) << charge;
        }
        ExpectClosed(mesh);
    }
}

TEST(ParticleSurface, IsClosedForManyCharges) {
    std::mt19937 random(17);
    int withSurface = 0;
    for (int round = 0; round < 60; ++round) {
        const auto mesh = ParticleSurface(RandomParticles(random, 0.0f));
        SCOPED_TRACE("round " + std::to_string(round));
        ASSERT_NO_FATAL_FAILURE(ExpectClosed(mesh));
        if (mesh.empty()) continue;
        ++withSurface;
        EXPECT_GT(SignedVolume(WeldedMesh(mesh)), 0.0) << "the inside is out";
    }
    EXPECT_GT(withSurface, 50);
}

// Charges are larger than the grid's step: the inner end of a cut edge does not lie behind one.
TEST(ParticleSurface, HasNormalsThatPointOutForManyCharges) {
    std::mt19937 random(19);
    for (int round = 0; round < 30; ++round) {
        const Particles particles = RandomParticles(random, 0.5f);
        const auto mesh = ParticleSurface(particles);
        SCOPED_TRACE("round " + std::to_string(round));
        ASSERT_FALSE(mesh.empty());
        ASSERT_NO_FATAL_FAILURE(ExpectClosed(mesh));
        ASSERT_NO_FATAL_FAILURE(ExpectOutwardNormals(particles, mesh));
    }
}

// Every edge of the grid with its ends on different sides has one vertex, where the straight line
// between its values has the threshold, with the normal of the line between its gradients.
TEST(ParticleSurface, HasAVertexOnEveryCutEdgeOfTheGridAndNoOther) {
    const Particles particles = {{0.13f, -0.71f, 1.07f, 1.3f}, {1.9f, 0.6f, -0.45f, 0.8f}};
    const std::vector<Cut> expected = CutsOfGrid(particles);
    const auto mesh = ParticleSurface(particles);
    EXPECT_EQ(WeldedMesh(mesh).points.size(), expected.size());
    for (const MeshVertex& vertex : mesh) {
        const Point point = PointOf(vertex.position);
        const Cut& nearest =
            *std::min_element(expected.begin(), expected.end(), [&](const Cut& a, const Cut& b) {
                return Length(Minus(point, a.point)) < Length(Minus(point, b.point));
            });
        // Values of the field round at 1e-6 of a fall of at least 0.1 along an edge.
        ASSERT_LT(Length(Minus(point, nearest.point)), 1e-5);
        ASSERT_LT(Length(Minus(PointOf(vertex.normal), nearest.normal)), 1e-5);
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
