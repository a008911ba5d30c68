// Small meshes, and a second way to see them: rays in double precision through the pixels of a
// camera, with the vertex attributes at what they hit. For tests of passes that draw geometry.
#pragma once

#include <array>
#include <optional>
#include <vector>

#include "gpu/math_types.h"
#include "gpu/mesh_buffers.h"

using MeshVertices = std::vector<MeshVertex>;
using Double3 = std::array<double, 3>;

// The unit square in x and y, from -1 to 1 at z = 0, with normals along z and uv from 0 to 1.
MeshVertices SquareMesh();
// The cube from -1 to 1, each face with uv from 0 to 1.
MeshVertices BoxMesh();
// The sphere of radius 1 with smooth normals; u runs around, v from the south pole up.
MeshVertices SphereMesh(int slices, int stacks);

Double3 Plus(const Double3& a, const Double3& b, double factorOfB = 1);
double Dot(const Double3& a, const Double3& b);
Double3 Normalised(const Double3& a);
double Length(const Double3& a);

struct TracedObject {
    MeshVertices vertices;
    Mat4 modelMatrix;
};

struct TraceHit {
    std::size_t object = 0, triangle = 0;
    double depth = 0;  // along -z of the eye
    double u = 0, v = 0;
    Double3 eyeNormal{}, worldNormal{}, eyePosition{};  // interpolated between vertices
};

class SceneTracer {
  public:
    // `tanHalfAngle` vertical; `aspect` width over height of what the camera sees.
    SceneTracer(std::vector<TracedObject> objects, const Mat4& camera, double tanHalfAngle,
                double aspect);

    // All hits beyond `nearDepth` through a place on the screen, both coordinates from -1 to 1, y
    // upwards; the nearest first.
    std::vector<TraceHit> hits(double x, double y, double nearDepth) const;

  private:
    struct Corner {
        Double3 eyePosition, eyeNormal, worldNormal;
        double u, v;
    };
    struct Triangle {
        std::size_t object, index;
        std::array<Corner, 3> corners;
    };
    std::optional<TraceHit> hit(const Triangle& triangle, const Double3& direction) const;

    std::vector<Triangle> triangles_;
    double tanHalfAngle_, aspect_;
};
