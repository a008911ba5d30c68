// Marching cubes: the triangles of the surface on which a field, given at the points of a cubic
// grid, has a threshold's value. The published case tables, with corners and edges numbered as
// there. Pure functions without OpenGL; any thread.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "gpu/math_types.h"
#include "gpu/mesh_buffers.h"

// Points at equal steps along the three axes of a cube around the origin.
struct CubeGrid {
    int pointsPerAxis;
    float halfExtent;

    constexpr float coordinate(int index) const {
        return static_cast<float>(index) * halfExtent * 2.0f /
                   static_cast<float>(pointsPerAxis - 1) -
               halfExtent;
    }
    // Where the numbers of point (i, j, k) stand in a list of all points: rows along x, then y.
    constexpr std::size_t index(int i, int j, int k) const {
        const auto n = static_cast<std::size_t>(pointsPerAxis);
        return (static_cast<std::size_t>(k) * n + static_cast<std::size_t>(j)) * n +
               static_cast<std::size_t>(i);
    }
    constexpr std::size_t pointCount() const { return index(0, 0, pointsPerAxis); }
};

// Corners of a cell as steps from its lowest point: 0 to 3 around the lower square, 4 to 7 above.
inline constexpr int kCellCorners[8][3] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0},
                                           {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};
// The two corners of each edge, the one with the lower coordinate first: cells that share an edge
// cut it in the very same point.
inline constexpr int kCellEdges[12][2] = {{0, 1}, {1, 2}, {3, 2}, {0, 3}, {4, 5}, {5, 6},
                                          {7, 6}, {4, 7}, {0, 4}, {1, 5}, {2, 6}, {3, 7}};

// Bit e of row n: edge e is cut when the set corners are the bits of n.
extern const std::array<std::uint16_t, 256> kEdgeTable;
// Row n: the cut edges at the corners of its triangles, three each, ended by -1. Seen from the side
// of the set corners, triangles turn counter-clockwise.
using TriangleRow = std::array<std::int8_t, 16>;
extern const std::array<TriangleRow, 256> kTriangleTable;

// A vector that stands on the surface, pointing to the set side; of any length.
using GradientAt = std::function<Vec3(const Vec3& point)>;

// `values`: one for each point of the grid. A corner is set when the threshold is above its value,
// so an infinite field and one of NaNs have no set corner. Three vertices a triangle: position and
// gradient interpolated along the cut edge, the gradient then normalised, uv (0, 0). The surface is
// closed where it does not leave the grid.
std::vector<MeshVertex> MarchCubes(const CubeGrid& grid, std::span<const float> values,
                                   float threshold, const GradientAt& gradientAt);
