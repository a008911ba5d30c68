#include "gpu/math_types.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>

namespace {

struct DoubleMatrix {
    double at[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
};

DoubleMatrix operator*(const DoubleMatrix& a, const DoubleMatrix& b) {
    DoubleMatrix product;
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) {
            product.at[r][c] = 0;
            for (int k = 0; k < 4; ++k) product.at[r][c] += a.at[r][k] * b.at[k][c];
        }
    }
    return product;
}

DoubleMatrix Rotation(int from, int to, double degrees) {
    DoubleMatrix matrix;
    const double angle = degrees * std::acos(-1.0) / 180;
    matrix.at[from][from] = matrix.at[to][to] = std::cos(angle);
    matrix.at[to][from] = std::sin(angle);
    matrix.at[from][to] = -std::sin(angle);
    return matrix;
}

DoubleMatrix ComposedInDouble(const Vec3& translate, const Vec3& degrees, double scale) {
    DoubleMatrix t, s;
    t.at[0][3] = static_cast<double>(translate.x);
    t.at[1][3] = static_cast<double>(translate.y);
    t.at[2][3] = static_cast<double>(translate.z);
    for (int i = 0; i < 3; ++i) s.at[i][i] = scale;
    return t * Rotation(1, 2, static_cast<double>(degrees.x)) *
           Rotation(2, 0, static_cast<double>(degrees.y)) *
           Rotation(0, 1, static_cast<double>(degrees.z)) * s;
}

void ExpectNear(const Mat4& matrix, const DoubleMatrix& expected, double tolerance) {
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) {
            EXPECT_NEAR(static_cast<double>(matrix[c * 4 + r]), expected.at[r][c], tolerance)
                << "row " << r << " column " << c;
        }
    }
}

Mat4 Numbered(float first, float step) {
    Mat4 matrix;
    for (int i = 0; i < 16; ++i) matrix[i] = first + step * static_cast<float>(i * i % 11);
    return matrix;
}

}  // namespace

TEST(MathTypes, HaveTheLayoutThatOpenGlTakes) {
    EXPECT_EQ(offsetof(Vec3, y), 4u);
    EXPECT_EQ(offsetof(Vec3, z), 8u);
    EXPECT_EQ(offsetof(Vec4, a), 12u);
    Mat4 matrix;
    EXPECT_EQ(static_cast<const void*>(&matrix), static_cast<const void*>(&matrix[0]));
}

TEST(Vec3, SetFillsAndReturnsItsTarget) {
    Vec3 v;
    EXPECT_EQ(&Vec3Set(v, 1, -2, 3), &v);
    EXPECT_EQ(v.x, 1);
    EXPECT_EQ(v.y, -2);
    EXPECT_EQ(v.z, 3);
}

TEST(Vec3, NormalisesToLengthOne) {
    const Vec3 v = Vec3Normalise({3, 0, -4});
    EXPECT_FLOAT_EQ(v.x, 0.6f);
    EXPECT_EQ(v.y, 0);
    EXPECT_FLOAT_EQ(v.z, -0.8f);
}

TEST(Vec3, NormalisingNothingGivesNotANumber) {
    EXPECT_TRUE(std::isnan(Vec3Normalise({0, 0, 0}).x));
}

TEST(Vec3, CrossOfXAndYIsZ) {
    const Vec3 z = Vec3Cross({1, 0, 0}, {0, 1, 0});
    EXPECT_EQ(z.x, 0);
    EXPECT_EQ(z.y, 0);
    EXPECT_EQ(z.z, 1);
}

TEST(Mat4Multiply, IsTheProductInItsOrder) {
    const Mat4 left = Numbered(-3, 0.7f), right = Numbered(2, -0.9f);
    Mat4 out;
    EXPECT_EQ(&Mat4Multiply(left, out, right), &out);
    DoubleMatrix a, b;
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) {
            a.at[r][c] = static_cast<double>(left[c * 4 + r]);
            b.at[r][c] = static_cast<double>(right[c * 4 + r]);
        }
    }
    // Seven float operations on sums below 200: a few units in the last place.
    ExpectNear(out, a * b, 1e-4);
}

TEST(Mat4Multiply, WithTheIdentityChangesNothing) {
    const Mat4 matrix = Numbered(1, 3);
    Mat4 out, identity;
    Mat4Multiply(identity, out, matrix);
    for (int i = 0; i < 16; ++i) EXPECT_EQ(out[i], matrix[i]);
}

TEST(Mat4Scale, PutsTheFactorsOnTheDiagonal) {
    Mat4 matrix = Numbered(5, 1);
    Mat4Scale(matrix, {2, 3, 4});
    for (int i = 0; i < 16; ++i) {
        const float expected = i == 0 ? 2 : i == 5 ? 3 : i == 10 ? 4 : i == 15 ? 1 : 0;
        EXPECT_EQ(matrix[i], expected) << i;
    }
}

TEST(Mat4ComposeTRS, ScalesAndTranslatesWithoutRotation) {
    Mat4 matrix;
    Mat4ComposeTRS(matrix, {1, 2, 3}, {0, 0, 0}, 2);
    EXPECT_EQ(matrix[0], 2);
    EXPECT_EQ(matrix[5], 2);
    EXPECT_EQ(matrix[10], 2);
    EXPECT_EQ(matrix[12], 1);
    EXPECT_EQ(matrix[13], 2);
    EXPECT_EQ(matrix[14], 3);
    EXPECT_EQ(matrix[15], 1);
}

TEST(Mat4ComposeTRS, TurnsYToZAboutX) {
    Mat4 matrix;
    Mat4ComposeTRS(matrix, {0, 0, 0}, {90, 0, 0}, 1);
    const Vec3 v = Mat4TransformPoint(matrix, {0, 1, 0});
    // The float cosine of 90 degrees is not zero.
    EXPECT_NEAR(v.x, 0, 1e-6);
    EXPECT_NEAR(v.y, 0, 1e-6);
    EXPECT_NEAR(v.z, 1, 1e-6);
}

TEST(Mat4ComposeTRS, IsTheProductInDoublePrecisionAtManyAngles) {
    for (int i = 0; i < 64; ++i) {
        const float t = static_cast<float>(i);
        const Vec3 translate = {t * 0.5f - 10, 3 - t * 0.25f, t * 0.125f};
        const Vec3 degrees = {t * 11 - 300, 200 - t * 7, t * 5 - 90};
        const float scale = 0.25f + t * 0.05f;
        Mat4 matrix;
        Mat4ComposeTRS(matrix, translate, degrees, scale);
        // Float sines of float angles up to 7 rad, four products, elements up to 22.
        ExpectNear(matrix, ComposedInDouble(translate, degrees, static_cast<double>(scale)), 2e-5);
    }
}

TEST(Mat4Ortho2D, MapsTheCornersOfTheUnitSquare) {
    Mat4 matrix = Numbered(9, 2);
    Mat4Ortho2D(matrix, 0, 1, 0, 1);
    const Vec3 low = Mat4TransformPoint(matrix, {0, 0, 0});
    const Vec3 high = Mat4TransformPoint(matrix, {1, 1, 0});
    EXPECT_EQ(low.x, -1);
    EXPECT_EQ(low.y, -1);
    EXPECT_EQ(high.x, 1);
    EXPECT_EQ(high.y, 1);
}

TEST(Mat4Ortho2D, NegatesDepth) {
    Mat4 matrix;
    Mat4Ortho2D(matrix, -2, 6, 10, -10);
    EXPECT_EQ(matrix[0], 0.25f);
    EXPECT_EQ(matrix[5], -0.1f);
    EXPECT_EQ(matrix[10], -1);
    EXPECT_EQ(matrix[12], -0.5f);
    EXPECT_EQ(matrix[13], 0);
    EXPECT_EQ(matrix[14], 0);
    EXPECT_TRUE(std::signbit(matrix[14]));
    EXPECT_EQ(matrix[15], 1);
}

TEST(Mat4LookAt, FromTheZAxisIsATranslation) {
    Mat4 matrix;
    Mat4LookAt(matrix, {0, 0, 5}, {0, 0, 0}, {0, 1, 0});
    const Mat4 identity;
    for (int i = 0; i < 16; ++i) EXPECT_EQ(matrix[i], i == 14 ? -5 : identity[i]) << i;
}

TEST(Mat4LookAt, PutsTheTargetOnTheNegativeZAxis) {
    Mat4 matrix;
    Mat4LookAt(matrix, {4, -2, 7}, {1, 5, -3}, {0, 1, 0});
    const Vec3 target = Mat4TransformPoint(matrix, {1, 5, -3});
    const Vec3 eye = Mat4TransformPoint(matrix, {4, -2, 7});
    const double distance = std::sqrt(9.0 + 49.0 + 100.0);
    // Sums of three float products below 100.
    EXPECT_NEAR(target.x, 0, 1e-5);
    EXPECT_NEAR(target.y, 0, 1e-5);
    EXPECT_NEAR(static_cast<double>(target.z), -distance, 1e-5);
    EXPECT_NEAR(eye.x, 0, 1e-5);
    EXPECT_NEAR(eye.y, 0, 1e-5);
    EXPECT_NEAR(eye.z, 0, 1e-5);
    const Vec3 above = Mat4TransformPoint(matrix, {4, -1, 7});
    EXPECT_NEAR(above.x, 0, 1e-5) << "up stays upright";
    EXPECT_GT(above.y, 0);
}

TEST(Mat4FromDirection, PutsTheDirectionUnchangedIntoTheThirdColumn) {
    Mat4 matrix = Numbered(4, 4);
    Mat4FromDirection(matrix, {0, 0, 3}, {0, 1, 0});
    const float expected[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 3, 0, 0, 0, 0, 1};
    for (int i = 0; i < 16; ++i) EXPECT_EQ(matrix[i], expected[i]) << i;
}

TEST(Mat4FromDirection, AlongUpGivesNotANumber) {
    Mat4 matrix;
    Mat4FromDirection(matrix, {0, 2, 0}, {0, 1, 0});
    EXPECT_TRUE(std::isnan(matrix[0]));
    EXPECT_TRUE(std::isnan(matrix[5]));
    EXPECT_EQ(matrix[9], 2);
}

TEST(Mat4Perspective, WritesItsFiveElements) {
    Mat4 matrix = Numbered(4, 4);
    Mat4Perspective(matrix, 0.5f, 2, -1.0100503f, -1.0050251f);
    for (int i = 0; i < 16; ++i) {
        const float expected = i == 0    ? 1.0f
                               : i == 5  ? 2.0f
                               : i == 10 ? -1.0100503f
                               : i == 11 ? -1.0f
                               : i == 14 ? -1.0050251f
                                         : 0.0f;
        EXPECT_EQ(matrix[i], expected) << i;
    }
}

TEST(Mat4Invert, UndoesAMatrix) {
    Mat4 matrix, inverse, product;
    Mat4ComposeTRS(matrix, {5, -7, 2}, {33, 120, -71}, 3);
    matrix[3] = 0.25f;  // not affine
    ASSERT_TRUE(Mat4Invert(matrix, inverse));
    Mat4Multiply(matrix, product, inverse);
    // Float products of elements up to 10.
    ExpectNear(product, DoubleMatrix{}, 1e-5);
}

TEST(Mat4Invert, RefusesASingularMatrix) {
    Mat4 matrix, inverse;
    Mat4Scale(matrix, {1, 0, 1});
    EXPECT_FALSE(Mat4Invert(matrix, inverse));
    matrix[5] = std::nanf("");
    EXPECT_FALSE(Mat4Invert(matrix, inverse));
}

TEST(Mat4Invert, MayWriteIntoItsOperand) {
    Mat4 matrix;
    Mat4Translation(matrix, {1, 2, 3});
    ASSERT_TRUE(Mat4Invert(matrix, matrix));
    EXPECT_EQ(matrix[12], -1);
    EXPECT_EQ(matrix[13], -2);
    EXPECT_EQ(matrix[14], -3);
}
