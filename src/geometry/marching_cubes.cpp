#include "geometry/marching_cubes.h"

#include <utility>

namespace {

// A gradient that is nothing, or beyond what single precision can square, has no direction: any
// will do.
Vec3 NormalOf(const Vec3& gradient) {
    const Vec3 normal = Vec3Normalise(gradient);
    const float square = normal.x * normal.x + normal.y * normal.y + normal.z * normal.z;
    return square > 0.99f && square < 1.01f ? normal : Vec3{0, 0, 1};
}

float Mix(float from, float to, float part) {
    return from + part * (to - from);
}

Vec3 Mix(const Vec3& from, const Vec3& to, float part) {
    return {Mix(from.x, to.x, part), Mix(from.y, to.y, part), Mix(from.z, to.z, part)};
}

class Marcher {
  public:
    Marcher(const CubeGrid& grid, std::span<const float> values, float threshold,
            const GradientAt& gradientAt)
        : grid_(grid), values_(values), threshold_(threshold), gradientAt_(gradientAt) {}

    std::vector<MeshVertex> march() {
        const int cells = grid_.pointsPerAxis - 1;
        for (int k = 0; k < cells; ++k) {
            for (int j = 0; j < cells; ++j) marchRow(j, k);
        }
        return std::move(mesh_);
    }

  private:
    // The cells that begin in one row of points. A cell takes the four corners of its lower side
    // over from the cell before.
    void marchRow(int j, int k) {
        const float* const rows[4] = {
            &values_[grid_.index(0, j, k)], &values_[grid_.index(0, j + 1, k)],
            &values_[grid_.index(0, j, k + 1)], &values_[grid_.index(0, j + 1, k + 1)]};
        unsigned lower = 0;
        for (int i = 0; i < grid_.pointsPerAxis; ++i) {
            const unsigned a = threshold_ > rows[0][i], b = threshold_ > rows[1][i];
            const unsigned c = threshold_ > rows[2][i], d = threshold_ > rows[3][i];
            const unsigned row = lower | a << 1 | b << 2 | c << 5 | d << 6;
            if (i > 0 && kEdgeTable[row] != 0) addCell(row, i - 1, j, k);
            lower = a | b << 3 | c << 4 | d << 7;
        }
    }

    void addCell(unsigned row, int i, int j, int k) {
        MeshVertex cuts[12];
        for (unsigned edge = 0; edge < 12; ++edge) {
            const bool isCut = (kEdgeTable[row] >> edge & 1u) != 0;
            if (isCut) cuts[edge] = cutEdge(kCellEdges[edge], i, j, k);
        }
        for (const std::int8_t edge : kTriangleTable[row]) {
            if (edge < 0) break;
            mesh_.push_back(cuts[edge]);
        }
    }

    MeshVertex cutEdge(const int (&ends)[2], int i, int j, int k) const {
        Vec3 points[2];
        float endValues[2];
        for (int end = 0; end < 2; ++end) {
            const int* const step = kCellCorners[ends[end]];
            const int x = i + step[0], y = j + step[1], z = k + step[2];
            points[end] = {grid_.coordinate(x), grid_.coordinate(y), grid_.coordinate(z)};
            endValues[end] = values_[grid_.index(x, y, z)];
        }
        float part = (threshold_ - endValues[0]) / (endValues[1] - endValues[0]);
        if (!(part >= 0.0f && part <= 1.0f)) part = 0.5f;  // a NaN or an infinity at one end
        const Vec3 gradient = Mix(gradientAt_(points[0]), gradientAt_(points[1]), part);
        return {Mix(points[0], points[1], part), NormalOf(gradient), {}};
    }

    const CubeGrid& grid_;
    std::span<const float> values_;
    float threshold_;
    const GradientAt& gradientAt_;
    std::vector<MeshVertex> mesh_;
};

}  // namespace

std::vector<MeshVertex> MarchCubes(const CubeGrid& grid, std::span<const float> values,
                                   float threshold, const GradientAt& gradientAt) {
    if (grid.pointsPerAxis < 2 || values.size() < grid.pointCount()) return {};
    return Marcher(grid, values, threshold, gradientAt).march();
}
