// The workshop of the demo's models: shapes of triangles with smooth normals and texture
// coordinates, and the OBJ file that they go into, an object each. Y is up, a unit is a metre,
// triangles run counter-clockwise seen from outside. Depends on the vector types only; no state,
// any thread.
#pragma once

#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "gpu/mesh_buffers.h"

namespace models {

inline constexpr float kPi = 3.14159265f;

inline Vec3 operator+(const Vec3& a, const Vec3& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vec3 operator-(const Vec3& a, const Vec3& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vec3 operator*(const Vec3& v, float factor) {
    return {v.x * factor, v.y * factor, v.z * factor};
}
inline float dot(const Vec3& a, const Vec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

// Three vertices a triangle, as the program draws them.
struct Mesh {
    std::vector<MeshVertex> vertices;

    void addTriangle(const MeshVertex& a, const MeshVertex& b, const MeshVertex& c);
    // Two triangles; corners counter-clockwise.
    void addQuad(const MeshVertex& a, const MeshVertex& b, const MeshVertex& c,
                 const MeshVertex& d);
    void add(const Mesh& other);
};

// --- shapes, each around the origin

// A box whose edges are cut by `bevel` and shaded round. Texture coordinates in metres, from a
// corner of each face.
Mesh Box(const Vec3& halfSize, float bevel);

// A flat rectangle that faces z, with the texture once over it, its top upwards.
Mesh Panel(float width, float height);

// A profile of (radius, height) turned around the y axis; it climbs on the outside. A point given
// twice is a sharp crease. Closed where it starts and ends on the axis, or where it ends as it
// starts. u goes around, v along the profile.
Mesh Lathe(std::span<const Vec2> profile, int slices);

Mesh Sphere(float radius, int slices, int stacks);
Mesh Torus(float radius, float tubeRadius, int slices, int sides);

enum class Path { Open, Closed };  // an open one gets flat ends

// The shape of a cross-section along a path, by frames that turn as little as they can. `section`:
// a counter-clockwise outline of (right, up), shaded smooth. `turns`: full turns of the section on
// the way, for a closed path in whole symmetries of the section. `scaleAt` takes the share of the
// way. u goes along, v around.
struct SweepShape {
    std::vector<Vec2> section;
    Path path = Path::Open;
    float turns = 0;
    std::function<float(float)> scaleAt;  // empty: 1 everywhere
};
Mesh Sweep(std::span<const Vec3> points, const SweepShape& shape);

std::vector<Vec2> CircleSection(float radius, int sides);
// Points of a curve at even steps of its parameter from 0 to 1; a closed curve is not repeated
// at 1.
std::vector<Vec3> CurvePoints(int count, Path path, const std::function<Vec3(float)>& curve);
// A round tube along points.
Mesh Tube(std::span<const Vec3> points, Path path, float radius, int sides);

// --- changes

// Turned, moved and scaled; `matrix` may not shear.
Mesh Transformed(const Mesh& mesh, const Mat4& matrix);
Mesh Moved(const Mesh& mesh, const Vec3& offset);
Mesh Rotated(const Mesh& mesh, const Vec3& degrees);  // about z, then y, then x
// Every triangle with its own normal, as cut stone.
Mesh Faceted(const Mesh& mesh);
Mesh TextureScaled(const Mesh& mesh, float u, float v);

// --- the file

class ObjModel {
  public:
    // Adds an object; names are single words. Meshes of one name become one object.
    void add(const std::string& name, const Mesh& mesh);
    // The whole file. Vertices that agree in what is printed share an index.
    std::string text() const;
    // False when the file cannot be written; `error` then names it. Makes the folder.
    bool write(const std::filesystem::path& file, std::string& error) const;

  private:
    std::vector<std::pair<std::string, Mesh>> objects_;
};

}  // namespace models
