#include "geometry/marching_cubes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <random>
#include <set>
#include <utility>

namespace {

using Segment = std::pair<int, int>;  // from one cut edge to another

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

bool IsSet(unsigned row, int corner) {
    return (row >> corner & 1u) != 0;
}

// The sides of a row's triangles that no other triangle of the row runs along the other way.
std::multiset<Segment> Outline(unsigned row) {
    std::multiset<Segment> open;
    const TriangleRow& edges = kTriangleTable[row];
    for (std::size_t i = 0; i < edges.size() && edges[i] >= 0; ++i) {
        const Segment side = {edges[i], edges[i % 3 == 2 ? i - 2 : i + 1]};
        const auto other = open.find({side.second, side.first});
        if (other != open.end()) {
            open.erase(other);
        } else {
            open.insert(side);
        }
    }
    return open;
}

bool LiesOnSide(int edge, int axis, int side) {
    return kCellCorners[kCellEdges[edge][0]][axis] == side &&
           kCellCorners[kCellEdges[edge][1]][axis] == side;
}

// The corner at the other end of the cell along one axis.
int Across(int corner, int axis) {
    for (int other = 0; other < 8; ++other) {
        bool found = true;
        for (int a = 0; a < 3; ++a) {
            found &= (kCellCorners[other][a] == kCellCorners[corner][a]) == (a != axis);
        }
        if (found) return other;
    }
    return -1;
}

// The edge of the far side of a cell that is `edge` of the near side of the next one.
int EdgeAcross(int edge, int axis) {
    const Segment ends = {Across(kCellEdges[edge][0], axis), Across(kCellEdges[edge][1], axis)};
    for (int other = 0; other < 12; ++other) {
        if (kCellEdges[other][0] == ends.first && kCellEdges[other][1] == ends.second) {
            return other;
        }
    }
    return -1;
}

std::multiset<Segment> OutlineOnSide(unsigned row, int axis, int side) {
    std::multiset<Segment> result;
    for (const Segment& segment : Outline(row)) {
        if (LiesOnSide(segment.first, axis, side) && LiesOnSide(segment.second, axis, side)) {
            result.insert(segment);
        }
    }
    return result;
}

Vec3 UpGradient(const Vec3&) {
    return {0, 0, 2};
}

// Sides of triangles by the exact places of their ends, less those of the opposite direction.
using Place = std::array<float, 3>;

Place PlaceOf(const MeshVertex& vertex) {
    return {vertex.position.x, vertex.position.y, vertex.position.z};
}

std::map<std::pair<Place, Place>, int> SideBalance(const std::vector<MeshVertex>& mesh) {
    std::map<std::pair<Place, Place>, int> balance;
    for (std::size_t i = 0; i < mesh.size(); ++i) {
        const Place from = PlaceOf(mesh[i]);
        const Place to = PlaceOf(mesh[i % 3 == 2 ? i - 2 : i + 1]);
        ++balance[{from, to}];
        --balance[{to, from}];
    }
    return balance;
}

}  // namespace

TEST(MarchingCubesTables, CutTheEdgesBetweenSetAndOtherCorners) {
    EXPECT_EQ(kEdgeTable[0], 0);
    EXPECT_EQ(kEdgeTable[1], 0x109);  // edges 0, 3 and 8 meet at corner 0
    EXPECT_EQ(kEdgeTable[128], 0x8C0);
    EXPECT_EQ(kEdgeTable[255], 0);
    for (unsigned row = 0; row < 256; ++row) {
        for (int edge = 0; edge < 12; ++edge) {
            const bool cut = IsSet(row, kCellEdges[edge][0]) != IsSet(row, kCellEdges[edge][1]);
            EXPECT_EQ((kEdgeTable[row] >> edge & 1) != 0, cut) << row << " " << edge;
        }
        EXPECT_EQ(kEdgeTable[row], kEdgeTable[255 - row]);
    }
}

TEST(MarchingCubesTables, RunEdgesFromTheLowerCornerToTheUpperOneAlongOneAxis) {
    for (const auto& ends : kCellEdges) {
        int steps = 0;
        for (int axis = 0; axis < 3; ++axis) {
            const int step = kCellCorners[ends[1]][axis] - kCellCorners[ends[0]][axis];
            EXPECT_GE(step, 0);
            steps += step;
        }
        EXPECT_EQ(steps, 1);
    }
}

TEST(MarchingCubesTables, UseEveryCutEdgeAndNoOtherInWholeTriangles) {
    for (unsigned row = 0; row < 256; ++row) {
        unsigned used = 0;
        std::size_t count = 0;
        for (const std::int8_t edge : kTriangleTable[row]) {
            if (edge < 0) break;
            used |= 1u << edge;
            ++count;
        }
        EXPECT_EQ(used, kEdgeTable[row]) << row;
        EXPECT_EQ(count % 3, 0u) << row;
        EXPECT_LE(count, 15u) << row;
        for (std::size_t i = count; i < 16; ++i) EXPECT_EQ(kTriangleTable[row][i], -1) << row;
    }
}

TEST(MarchingCubesTables, HoldThePublishedRows) {
    EXPECT_EQ(kTriangleTable[1],
              (TriangleRow{0, 8, 3, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1}));
    EXPECT_EQ(kTriangleTable[15],
              (TriangleRow{9, 8, 10, 10, 8, 11, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1}));
    EXPECT_EQ(kTriangleTable[61],
              (TriangleRow{5, 7, 0, 5, 0, 9, 7, 11, 0, 1, 0, 10, 11, 10, 0, -1}));
    EXPECT_EQ(kTriangleTable[254],
              (TriangleRow{0, 3, 8, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1}));
}

TEST(MarchingCubesTables, EndTrianglesOnTheSidesOfTheCellOnly) {
    for (unsigned row = 0; row < 256; ++row) {
        std::size_t onSides = 0;
        for (int axis = 0; axis < 3; ++axis) {
            for (int side = 0; side < 2; ++side) onSides += OutlineOnSide(row, axis, side).size();
        }
        EXPECT_EQ(onSides, Outline(row).size()) << row;
    }
}

// For each two cells that can lie beside each other: what the one leaves open on the side that they
// share, the other closes.
TEST(MarchingCubesTables, CloseTheSurfaceBetweenAllNeighbours) {
    int pairs = 0;
    for (int axis = 0; axis < 3; ++axis) {
        for (unsigned first = 0; first < 256; ++first) {
            for (unsigned second = 0; second < 256; ++second) {
                bool fit = true;
                for (int corner = 0; corner < 8; ++corner) {
                    if (kCellCorners[corner][axis] == 1) continue;
                    fit &= IsSet(second, corner) == IsSet(first, Across(corner, axis));
                }
                if (!fit) continue;
                ++pairs;
                std::multiset<Segment> closing;
                for (const Segment& segment : OutlineOnSide(second, axis, 0)) {
                    closing.insert(
                        {EdgeAcross(segment.second, axis), EdgeAcross(segment.first, axis)});
                }
                ASSERT_EQ(OutlineOnSide(first, axis, 1), closing)
                    << "axis " << axis << ", rows " << first << " and " << second;
            }
        }
    }
    EXPECT_EQ(pairs, 3 * 4096);
}

TEST(MarchingCubes, PlacesPointsAtEqualStepsAroundTheOrigin) {
    constexpr CubeGrid grid = {61, 10.0f};
    EXPECT_EQ(grid.pointCount(), 226981u);
    for (int i = 0; i < 61; ++i) {
        // One rounding of the quotient and one of the difference, at numbers below 32.
        EXPECT_NEAR(static_cast<double>(grid.coordinate(i)), i * 20.0 / 60.0 - 10.0, 2e-6);
    }
    EXPECT_EQ(grid.coordinate(0), -10.0f);
    EXPECT_EQ(grid.coordinate(30), 0.0f);
    EXPECT_EQ(grid.coordinate(60), 10.0f);
    EXPECT_EQ(grid.index(1, 2, 3), 3u * 61 * 61 + 2 * 61 + 1);
}

// Corner 0 alone is set; its three edges are cut at a quarter, a half and three quarters.
TEST(MarchingCubes, CutsEdgesWhereTheFieldHasTheThreshold) {
    constexpr CubeGrid grid = {2, 1.0f};
    const std::vector<float> values = {0, 4, 2, 9, 4.0f / 3, 9, 9, 9};
    const auto mesh = MarchCubes(grid, values, 1.0f, [](const Vec3& point) {
        return Vec3{0, point.y + 1, 1};  // differs along edge 3, from (0, 0, 1) to (0, 2, 1)
    });
    ASSERT_EQ(mesh.size(), 3u);
    EXPECT_EQ(PlaceOf(mesh[0]), (Place{-0.5f, -1, -1}));
    EXPECT_NEAR(mesh[1].position.z, 0.5, 1e-6) << "4/3 is not a number of single precision";
    EXPECT_EQ(PlaceOf(mesh[2]), (Place{-1, 0, -1}));
    for (const MeshVertex& vertex : mesh) {
        EXPECT_EQ(vertex.uv.x, 0.0f);
        EXPECT_EQ(vertex.uv.y, 0.0f);
    }
    EXPECT_EQ(mesh[0].normal.y, 0.0f);
    EXPECT_EQ(mesh[0].normal.z, 1.0f);
    // Halfway between the two ends, and of length 1: one rounding.
    EXPECT_NEAR(mesh[2].normal.y, std::sqrt(0.5), 1e-7);
    EXPECT_NEAR(mesh[2].normal.z, std::sqrt(0.5), 1e-7);
}

TEST(MarchingCubes, SetsACornerWhenTheThresholdIsAboveItsValueOnly) {
    constexpr CubeGrid grid = {2, 1.0f};
    std::vector<float> values(8, 2.0f);
    values[0] = 1.0f;
    EXPECT_TRUE(MarchCubes(grid, values, 1.0f, UpGradient).empty()) << "equal is not set";
    values[0] = std::nextafter(1.0f, 0.0f);
    EXPECT_EQ(MarchCubes(grid, values, 1.0f, UpGradient).size(), 3u);
}

// Noise has all 256 cases. A diagonal of a cell can run between the same two cut edges as one of
// its neighbour, so more than two triangles may meet; they are as many either way.
TEST(MarchingCubes, ClosesTheSurfaceOfNoise) {
    constexpr CubeGrid grid = {24, 1.0f};
    std::mt19937 random(7);
    for (const double share : {0.1, 0.5, 0.9}) {
        std::vector<float> values(grid.pointCount(), 0.0f);
        std::bernoulli_distribution inside(share);
        std::uniform_real_distribution<float> depth(0.1f, 0.9f);
        for (int k = 1; k < 23; ++k) {
            for (int j = 1; j < 23; ++j) {
                for (int i = 1; i < 23; ++i) {
                    const float way = inside(random) ? 1.0f : -1.0f;
                    values[grid.index(i, j, k)] = 1.0f + way * depth(random);
                }
            }
        }
        const auto mesh = MarchCubes(grid, values, 1.0f, UpGradient);
        ASSERT_GT(mesh.size(), 3000u);
        for (const auto& [side, balance] : SideBalance(mesh)) ASSERT_EQ(balance, 0);
    }
}

TEST(MarchingCubes, MakesNothingOfAFieldOnOneSideOfTheThreshold) {
    constexpr CubeGrid grid = {5, 1.0f};
    for (const float value : {0.0f, 0.999f, 1.0f, 50.0f, kInfinity, -kInfinity, kNan}) {
        const std::vector<float> values(grid.pointCount(), value);
        EXPECT_TRUE(MarchCubes(grid, values, 1.0f, UpGradient).empty()) << value;
    }
}

TEST(MarchingCubes, MakesNothingWithoutEnoughPoints) {
    EXPECT_TRUE(MarchCubes({1, 1.0f}, std::vector<float>{0}, 1.0f, UpGradient).empty());
    EXPECT_TRUE(MarchCubes({0, 1.0f}, {}, 1.0f, UpGradient).empty());
    EXPECT_TRUE(MarchCubes({-3, 1.0f}, {}, 1.0f, UpGradient).empty());
    EXPECT_TRUE(MarchCubes({3, 1.0f}, std::vector<float>(26), 1.0f, UpGradient).empty());
}

// Whatever the field and its gradient hold, vertices stay in the grid and normals have length 1.
TEST(MarchingCubes, KeepsVerticesFiniteWhereTheFieldIsNot) {
    constexpr CubeGrid grid = {10, 1.0f};
    const float odd[] = {kNan, kInfinity, -kInfinity, 3e38f, -3e38f, 0.0f, 2.0f, 1.0f};
    std::mt19937 random(11);
    std::vector<float> values(grid.pointCount());
    for (float& value : values) value = odd[random() % 8];
    const auto gradient = [&](const Vec3&) {
        return Vec3{odd[random() % 8], odd[random() % 8], odd[random() % 8]};
    };
    const auto mesh = MarchCubes(grid, values, 1.0f, gradient);
    ASSERT_GT(mesh.size(), 300u);
    for (const MeshVertex& vertex : mesh) {
        for (const float number : PlaceOf(vertex)) {
            ASSERT_LE(std::abs(number), 1.0f);
        }
        const Vec3& normal = vertex.normal;
        const float length = std::hypot(normal.x, normal.y, normal.z);
        ASSERT_NEAR(length, 1.0f, 1e-6f) << "three roundings";
    }
}
