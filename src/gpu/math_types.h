// Vectors and matrices of the whole system: plain single-precision floats in the layout that OpenGL
// takes. Matrices are column-major, the element of row r and column c at index c * 4 + r; vectors
// are columns. Right-handed, the camera looks along -z. No state; any thread.
#pragma once

struct Vec2 {
    float x = 0, y = 0;
};

struct Vec3 {
    float x = 0, y = 0, z = 0;
};

struct Vec4 {
    float r = 0, g = 0, b = 0, a = 0;
};

struct Mat4 {
    float m[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    float& operator[](int index) { return m[index]; }
    const float& operator[](int index) const { return m[index]; }
};
static_assert(sizeof(Vec3) == 12 && sizeof(Vec4) == 16 && sizeof(Mat4) == 64);

constexpr float kDegreesToRadians = 0.017453292f;

Vec3& Vec3Set(Vec3& out, float x, float y, float z);
Vec3 Vec3Normalise(const Vec3& v);  // a zero vector gives NaNs
Vec3 Vec3Cross(const Vec3& a, const Vec3& b);

void Mat4Identity(Mat4& out);
// Writes left * right into `out` and returns it. `out` must be neither operand.
Mat4& Mat4Multiply(const Mat4& left, Mat4& out, const Mat4& right);
// Diagonal matrix of the three factors.
void Mat4Scale(Mat4& out, const Vec3& factors);
void Mat4Translation(Mat4& out, const Vec3& offset);
// Maps [left, right] x [bottom, top] to [-1, 1]; depth is negated, from -1 to 1.
void Mat4Ortho2D(Mat4& out, float left, float right, float bottom, float top);
void Mat4LookAt(Mat4& out, const Vec3& eye, const Vec3& target, const Vec3& up);
// Rotation with `direction`, as given and not normalised, as its third column.
void Mat4FromDirection(Mat4& out, const Vec3& direction, const Vec3& up);
// T * Rx * Ry * Rz * S with rotations in degrees and one uniform scale factor.
void Mat4ComposeTRS(Mat4& out, const Vec3& translate, const Vec3& rotateDegrees, float scale);
// Perspective with OpenGL's depth constants given as elements 10 and 14.
void Mat4Perspective(Mat4& out, float tanHalfAngle, float aspect, float element10, float element14);
// Inverse of any invertible matrix, in double precision inside; false when it is singular.
bool Mat4Invert(const Mat4& matrix, Mat4& out);
// matrix * (x, y, z, 1), without division by w.
Vec3 Mat4TransformPoint(const Mat4& matrix, const Vec3& point);
