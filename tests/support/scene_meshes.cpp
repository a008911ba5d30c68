#include "support/scene_meshes.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kPi = 3.14159265358979323846;

Double3 Cross(const Double3& a, const Double3& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

// The product of a matrix with (v, w), without its last row.
Double3 Transformed(const Mat4& matrix, const Double3& v, double w) {
    Double3 result;
    for (int r = 0; r < 3; ++r) {
        const auto at = [&](int c) { return static_cast<double>(matrix[c * 4 + r]); };
        result[static_cast<std::size_t>(r)] =
            at(0) * v[0] + at(1) * v[1] + at(2) * v[2] + at(3) * w;
    }
    return result;
}

Double3 Wide(const Vec3& v) {
    return {static_cast<double>(v.x), static_cast<double>(v.y), static_cast<double>(v.z)};
}

void AppendQuad(MeshVertices& mesh, const std::array<MeshVertex, 4>& corners) {
    for (const std::size_t i : {0u, 1u, 2u, 0u, 2u, 3u}) mesh.push_back(corners[i]);
}

MeshVertex SphereVertex(double u, double v) {
    const double around = 2 * kPi * u, up = kPi * (v - 0.5);
    const Vec3 place = {static_cast<float>(std::cos(up) * std::sin(around)),
                        static_cast<float>(std::sin(up)),
                        static_cast<float>(std::cos(up) * std::cos(around))};
    return {place, place, {static_cast<float>(u), static_cast<float>(v)}};
}

}  // namespace

MeshVertices SquareMesh() {
    const Vec3 normal = {0, 0, 1};
    MeshVertices mesh;
    AppendQuad(mesh, {{{{-1, -1, 0}, normal, {0, 0}},
                       {{1, -1, 0}, normal, {1, 0}},
                       {{1, 1, 0}, normal, {1, 1}},
                       {{-1, 1, 0}, normal, {0, 1}}}});
    return mesh;
}

MeshVertices BoxMesh() {
    MeshVertices mesh;
    for (const Vec3& rotation : {Vec3{0, 0, 0}, Vec3{0, 90, 0}, Vec3{0, 180, 0}, Vec3{0, 270, 0},
                                 Vec3{90, 0, 0}, Vec3{-90, 0, 0}}) {
        Mat4 turn;
        Mat4ComposeTRS(turn, {0, 0, 0}, rotation, 1);
        for (MeshVertex vertex : SquareMesh()) {
            vertex.position.z = 1;
            vertex.position = Mat4TransformPoint(turn, vertex.position);
            vertex.normal = Mat4TransformPoint(turn, vertex.normal);
            mesh.push_back(vertex);
        }
    }
    return mesh;
}

MeshVertices SphereMesh(int slices, int stacks) {
    MeshVertices mesh;
    for (int stack = 0; stack < stacks; ++stack) {
        for (int slice = 0; slice < slices; ++slice) {
            const auto corner = [&](int right, int up) {
                return SphereVertex(static_cast<double>(slice + right) / slices,
                                    static_cast<double>(stack + up) / stacks);
            };
            AppendQuad(mesh, {corner(0, 0), corner(1, 0), corner(1, 1), corner(0, 1)});
        }
    }
    return mesh;
}

Double3 Plus(const Double3& a, const Double3& b, double factorOfB) {
    return {a[0] + b[0] * factorOfB, a[1] + b[1] * factorOfB, a[2] + b[2] * factorOfB};
}

double Dot(const Double3& a, const Double3& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

double Length(const Double3& a) {
    return std::sqrt(Dot(a, a));
}

Double3 Normalised(const Double3& a) {
    return Plus({0, 0, 0}, a, 1 / Length(a));
}

SceneTracer::SceneTracer(std::vector<TracedObject> objects, const Mat4& camera, double tanHalfAngle,
                         double aspect)
    : tanHalfAngle_(tanHalfAngle), aspect_(aspect) {
    for (std::size_t object = 0; object < objects.size(); ++object) {
        const TracedObject& source = objects[object];
        const auto corner = [&](const MeshVertex& vertex) {
            const Double3 world = Transformed(source.modelMatrix, Wide(vertex.position), 1);
            const Double3 normal = Normalised(Wide(vertex.normal));
            const Double3 turned = Transformed(source.modelMatrix, normal, 0);
            return Corner{Transformed(camera, world, 1), Normalised(Transformed(camera, turned, 0)),
                          Transformed(source.modelMatrix, Wide(vertex.normal), 0),
                          static_cast<double>(vertex.uv.x), static_cast<double>(vertex.uv.y)};
        };
        for (std::size_t i = 0; i + 2 < source.vertices.size(); i += 3) {
            triangles_.push_back({object,
                                  i / 3,
                                  {corner(source.vertices[i]), corner(source.vertices[i + 1]),
                                   corner(source.vertices[i + 2])}});
        }
    }
}

// The usual intersection of a ray from the origin with a triangle (Moeller and Trumbore).
std::optional<TraceHit> SceneTracer::hit(const Triangle& triangle, const Double3& direction) const {
    const auto &a = triangle.corners[0], &b = triangle.corners[1], &c = triangle.corners[2];
    const Double3 ab = Plus(b.eyePosition, a.eyePosition, -1);
    const Double3 ac = Plus(c.eyePosition, a.eyePosition, -1);
    const Double3 h = Cross(direction, ac);
    const double determinant = Dot(ab, h);
    if (std::fabs(determinant) < 1e-12) return std::nullopt;
    const Double3 s = Plus({0, 0, 0}, a.eyePosition, -1);
    const double ofB = Dot(s, h) / determinant;
    const Double3 q = Cross(s, ab);
    const double ofC = Dot(direction, q) / determinant;
    if (ofB < 0 || ofC < 0 || ofB + ofC > 1) return std::nullopt;
    const double ofA = 1 - ofB - ofC;
    const auto mixed = [&](const Double3 Corner::*member) {
        Double3 sum{};
        sum = Plus(sum, a.*member, ofA);
        sum = Plus(sum, b.*member, ofB);
        return Plus(sum, c.*member, ofC);
    };
    TraceHit result;
    result.object = triangle.object;
    result.triangle = triangle.index;
    result.u = a.u * ofA + b.u * ofB + c.u * ofC;
    result.v = a.v * ofA + b.v * ofB + c.v * ofC;
    result.eyeNormal = mixed(&Corner::eyeNormal);
    result.worldNormal = mixed(&Corner::worldNormal);
    result.eyePosition = mixed(&Corner::eyePosition);
    result.depth = -result.eyePosition[2];
    return result;
}

std::vector<TraceHit> SceneTracer::hits(double x, double y, double nearDepth) const {
    const Double3 direction = {x * tanHalfAngle_ * aspect_, y * tanHalfAngle_, -1};
    std::vector<TraceHit> found;
    for (const Triangle& triangle : triangles_) {
        const std::optional<TraceHit> one = hit(triangle, direction);
        if (one && one->depth > nearDepth) found.push_back(*one);
    }
    std::sort(found.begin(), found.end(),
              [](const TraceHit& a, const TraceHit& b) { return a.depth < b.depth; });
    return found;
}
