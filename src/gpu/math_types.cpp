#include "gpu/math_types.h"

#include <cmath>
#include <utility>

Vec3& Vec3Set(Vec3& out, float x, float y, float z) {
    out.x = x;
    out.y = y;
    out.z = z;
    return out;
}

Vec3 Vec3Normalise(const Vec3& v) {
    const float length = std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
    return {v.x / length, v.y / length, v.z / length};
}

Vec3 Vec3Cross(const Vec3& a, const Vec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

void Mat4Identity(Mat4& out) {
    out = Mat4{};
}

Mat4& Mat4Multiply(const Mat4& left, Mat4& out, const Mat4& right) {
    for (int c = 0; c < 4; ++c) {
        for (int r = 0; r < 4; ++r) {
            out[c * 4 + r] = left[r] * right[c * 4] + left[4 + r] * right[c * 4 + 1] +
                             left[8 + r] * right[c * 4 + 2] + left[12 + r] * right[c * 4 + 3];
        }
    }
    return out;
}

void Mat4Scale(Mat4& out, const Vec3& factors) {
    Mat4Identity(out);
    out[0] = factors.x;
    out[5] = factors.y;
    out[10] = factors.z;
}

void Mat4Translation(Mat4& out, const Vec3& offset) {
    Mat4Identity(out);
    out[12] = offset.x;
    out[13] = offset.y;
    out[14] = offset.z;
}

void Mat4Ortho2D(Mat4& out, float left, float right, float bottom, float top) {
    Mat4Identity(out);
    out[0] = 2.0f / (right - left);
    out[5] = 2.0f / (top - bottom);
    out[10] = -1.0f;
    out[12] = -(left + right) / (right - left);
    out[13] = -(bottom + top) / (top - bottom);
    out[14] = -0.0f;
}

void Mat4LookAt(Mat4& out, const Vec3& eye, const Vec3& target, const Vec3& up) {
    const Vec3 f = Vec3Normalise({eye.x - target.x, eye.y - target.y, eye.z - target.z});
    const Vec3 s = Vec3Normalise(Vec3Cross(up, f));
    const Vec3 u = Vec3Normalise(Vec3Cross(f, s));
    const Mat4 rotation = {{s.x, u.x, f.x, 0, s.y, u.y, f.y, 0, s.z, u.z, f.z, 0, 0, 0, 0, 1}};
    Mat4 translation;
    Mat4Translation(translation, {-eye.x, -eye.y, -eye.z});
    Mat4Multiply(rotation, out, translation);
}

void Mat4FromDirection(Mat4& out, const Vec3& direction, const Vec3& up) {
    const Vec3 x = Vec3Normalise(Vec3Cross(up, direction));
    const Vec3 y = Vec3Normalise(Vec3Cross(direction, x));
    const Vec3& z = direction;
    out = {{x.x, x.y, x.z, 0, y.x, y.y, y.z, 0, z.x, z.y, z.z, 0, 0, 0, 0, 1}};
}

void Mat4ComposeTRS(Mat4& out, const Vec3& translate, const Vec3& rotateDegrees, float scale) {
    const float ax = rotateDegrees.x * kDegreesToRadians;
    const float ay = rotateDegrees.y * kDegreesToRadians;
    const float az = rotateDegrees.z * kDegreesToRadians;
    Mat4 t;
    Mat4Translation(t, translate);
    Mat4 rx;
    rx[5] = std::cos(ax);
    rx[6] = std::sin(ax);
    rx[9] = -rx[6];
    rx[10] = rx[5];
    Mat4 ry;
    ry[0] = std::cos(ay);
    ry[8] = std::sin(ay);
    ry[2] = -ry[8];
    ry[10] = ry[0];
    Mat4 rz;
    rz[0] = std::cos(az);
    rz[1] = std::sin(az);
    rz[4] = -rz[1];
    rz[5] = rz[0];
    Mat4 s;
    Mat4Scale(s, {scale, scale, scale});
    Mat4 a, b, c;
    Mat4Multiply(Mat4Multiply(Mat4Multiply(Mat4Multiply(t, a, rx), b, ry), c, rz), out, s);
}

void Mat4Perspective(Mat4& out, float tanHalfAngle, float aspect, float element10,
                     float element14) {
    out = {{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}};
    out[0] = 1.0f / (tanHalfAngle * aspect);
    out[5] = 1.0f / tanHalfAngle;
    out[10] = element10;
    out[11] = -1.0f;
    out[14] = element14;
}

namespace {

// The eight columns of [matrix | identity], row by row.
using AugmentedRows = double[4][8];

int PivotRow(const AugmentedRows& rows, int column) {
    int best = column;
    for (int row = column + 1; row < 4; ++row) {
        if (std::fabs(rows[row][column]) > std::fabs(rows[best][column])) best = row;
    }
    return best;
}

// Gauss-Jordan step: makes `column` a column of the identity. False when it has no pivot.
bool EliminateColumn(AugmentedRows& rows, int column) {
    const int pivot = PivotRow(rows, column);
    const double value = rows[pivot][column];
    if (value == 0 || !std::isfinite(value)) return false;
    for (int i = 0; i < 8; ++i) std::swap(rows[pivot][i], rows[column][i]);
    for (double& element : rows[column]) element /= value;
    for (int row = 0; row < 4; ++row) {
        if (row == column) continue;
        const double factor = rows[row][column];
        for (int i = 0; i < 8; ++i) rows[row][i] -= factor * rows[column][i];
    }
    return true;
}

}  // namespace

bool Mat4Invert(const Mat4& matrix, Mat4& out) {
    AugmentedRows rows = {};
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) rows[r][c] = static_cast<double>(matrix[c * 4 + r]);
        rows[r][4 + r] = 1;
    }
    for (int column = 0; column < 4; ++column) {
        if (!EliminateColumn(rows, column)) return false;
    }
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) out[c * 4 + r] = static_cast<float>(rows[r][4 + c]);
    }
    return true;
}

Vec3 Mat4TransformPoint(const Mat4& matrix, const Vec3& point) {
    const auto row = [&](int r) {
        return matrix[r] * point.x + matrix[4 + r] * point.y + matrix[8 + r] * point.z +
               matrix[12 + r];
    };
    return {row(0), row(1), row(2)};
}
