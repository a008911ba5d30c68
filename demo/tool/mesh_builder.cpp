#include "mesh_builder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <system_error>
#include <unordered_map>

namespace models {

namespace {

constexpr float kSmallest = 1e-6f;  // metres; shorter is nothing

float length(const Vec3& v) {
    return std::sqrt(dot(v, v));
}

Vec3 faceNormal(const Vec3& a, const Vec3& b, const Vec3& c) {
    return Vec3Normalise(Vec3Cross(b - a, c - a));
}

bool isNothing(const Vec3& a, const Vec3& b, const Vec3& c) {
    return length(Vec3Cross(b - a, c - a)) < kSmallest * kSmallest;
}

}  // namespace

void Mesh::addTriangle(const MeshVertex& a, const MeshVertex& b, const MeshVertex& c) {
    if (isNothing(a.position, b.position, c.position)) return;
    vertices.insert(vertices.end(), {a, b, c});
}

void Mesh::addQuad(const MeshVertex& a, const MeshVertex& b, const MeshVertex& c,
                   const MeshVertex& d) {
    addTriangle(a, b, c);
    addTriangle(a, c, d);
}

void Mesh::add(const Mesh& other) {
    vertices.insert(vertices.end(), other.vertices.begin(), other.vertices.end());
}

namespace {

// A box's corner as one of its three faces shows it: on that face's plane, moved in by the bevel
// along the two other axes.
class BoxCorners {
  public:
    BoxCorners(const Vec3& halfSize, float bevel)
        : half_{halfSize.x, halfSize.y, halfSize.z}, bevel_(bevel) {}

    MeshVertex at(int axis, std::array<int, 3> signs) const {
        std::array<float, 3> place, normal{0, 0, 0};
        for (int i = 0; i < 3; ++i) {
            const float reach = half_[i] - (i == axis ? 0 : bevel_);
            place[i] = reach * static_cast<float>(signs[i]);
        }
        normal[axis] = static_cast<float>(signs[axis]);
        // Across and up as seen from outside; a lid's up is away from the viewer.
        const int across = axis == 0 ? 2 : 0, up = axis == 1 ? 2 : 1;
        const float mirror = static_cast<float>(axis == 0 ? -signs[0] : axis == 1 ? 1 : signs[2]);
        const float flip = static_cast<float>(axis == 1 ? -signs[1] : 1);
        return {{place[0], place[1], place[2]},
                {normal[0], normal[1], normal[2]},
                {place[across] * mirror + half_[across], place[up] * flip + half_[up]}};
    }

  private:
    std::array<float, 3> half_;
    float bevel_;
};

// Adds a quad, or a triangle of its first three corners, turned so that it faces away from the
// origin.
void addOutward(Mesh& mesh, const MeshVertex& a, const MeshVertex& b, const MeshVertex& c,
                const MeshVertex* d) {
    const Vec3 normal = Vec3Cross(b.position - a.position, c.position - a.position);
    const bool outward = dot(normal, a.position + b.position + c.position) > 0;
    if (d == nullptr) {
        outward ? mesh.addTriangle(a, b, c) : mesh.addTriangle(a, c, b);
    } else {
        outward ? mesh.addQuad(a, b, c, *d) : mesh.addQuad(a, *d, c, b);
    }
}

}  // namespace

Mesh Box(const Vec3& halfSize, float bevel) {
    const BoxCorners corners(halfSize, bevel);
    Mesh mesh;
    for (int axis = 0; axis < 3; ++axis) {
        const int first = (axis + 1) % 3, second = (axis + 2) % 3;
        const auto signs = [&](int onAxis, int onFirst, int onSecond) {
            std::array<int, 3> result{};
            result[axis] = onAxis, result[first] = onFirst, result[second] = onSecond;
            return result;
        };
        for (const int side : {-1, 1}) {
            const MeshVertex d = corners.at(axis, signs(side, -1, 1));
            addOutward(mesh, corners.at(axis, signs(side, -1, -1)),
                       corners.at(axis, signs(side, 1, -1)), corners.at(axis, signs(side, 1, 1)),
                       &d);
        }
        if (bevel <= 0) continue;
        // The four edges along this axis.
        for (const int one : {-1, 1}) {
            for (const int two : {-1, 1}) {
                const MeshVertex d = corners.at(first, signs(1, one, two));
                addOutward(mesh, corners.at(first, signs(-1, one, two)),
                           corners.at(second, signs(-1, one, two)),
                           corners.at(second, signs(1, one, two)), &d);
            }
        }
    }
    for (int corner = 0; bevel > 0 && corner < 8; ++corner) {
        const std::array<int, 3> signs{corner & 1 ? 1 : -1, corner & 2 ? 1 : -1,
                                       corner & 4 ? 1 : -1};
        addOutward(mesh, corners.at(0, signs), corners.at(1, signs), corners.at(2, signs), nullptr);
    }
    return mesh;
}

Mesh Panel(float width, float height) {
    const auto corner = [&](float u, float v) {
        return MeshVertex{{(u - 0.5f) * width, (v - 0.5f) * height, 0}, {0, 0, 1}, {u, v}};
    };
    Mesh mesh;
    mesh.addQuad(corner(0, 0), corner(1, 0), corner(1, 1), corner(0, 1));
    return mesh;
}

namespace {

// A profile's point and the outward normal (radius, height) there.
struct ProfilePoint {
    Vec2 place, normal;
    float way = 0;  // share of the profile's length
};

float distance(const Vec2& a, const Vec2& b) {
    return std::hypot(a.x - b.x, a.y - b.y);
}

Vec2 outwardNormal(const Vec2& from, const Vec2& to) {
    const float size = std::max(distance(from, to), kSmallest);
    return {(to.y - from.y) / size, (from.x - to.x) / size};
}

// The normal at point `i` is the mean of those of the two stretches that meet there, where the
// profile is not creased.
std::vector<ProfilePoint> profileWithNormals(std::span<const Vec2> profile) {
    const std::size_t last = profile.size() - 1;
    const bool loops = distance(profile[0], profile[last]) < kSmallest && profile[0].x > kSmallest;
    std::vector<ProfilePoint> points;
    float way = 0;
    for (std::size_t i = 0; i <= last; ++i) {
        const std::size_t before = i > 0 ? i - 1 : loops ? last - 1 : 0;
        const std::size_t after = i < last ? i + 1 : loops ? 1 : last;
        Vec2 normal;
        for (const auto& [from, to] : {std::pair(before, i), std::pair(i, after)}) {
            if (distance(profile[from], profile[to]) < kSmallest) continue;
            const Vec2 part = outwardNormal(profile[from], profile[to]);
            normal = {normal.x + part.x, normal.y + part.y};
        }
        // On the axis a smooth shape is square to it.
        if (profile[i].x < kSmallest) normal.x = 0;
        const float size = std::hypot(normal.x, normal.y);
        if (i > 0) way += distance(profile[i - 1], profile[i]);
        points.push_back({profile[i], {normal.x / size, normal.y / size}, way});
    }
    for (ProfilePoint& point : points) point.way /= way;
    return points;
}

}  // namespace

Mesh Lathe(std::span<const Vec2> profile, int slices) {
    const std::vector<ProfilePoint> points = profileWithNormals(profile);
    const auto vertex = [&](const ProfilePoint& point, int slice) {
        const float share = static_cast<float>(slice) / static_cast<float>(slices);
        // The last slice is the first: exactly, so that the shape is closed.
        const float angle = slice == slices ? 0 : share * 2 * kPi;
        const float s = std::sin(angle), c = std::cos(angle);
        return MeshVertex{{point.place.x * s, point.place.y, point.place.x * c},
                          {point.normal.x * s, point.normal.y, point.normal.x * c},
                          {share, point.way}};
    };
    Mesh mesh;
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        for (int slice = 0; slice < slices; ++slice) {
            mesh.addQuad(vertex(points[i], slice), vertex(points[i], slice + 1),
                         vertex(points[i + 1], slice + 1), vertex(points[i + 1], slice));
        }
    }
    return mesh;
}

Mesh Sphere(float radius, int slices, int stacks) {
    std::vector<Vec2> profile;
    for (int i = 0; i <= stacks; ++i) {
        const float angle = kPi * static_cast<float>(i) / static_cast<float>(stacks);
        const bool pole = i == 0 || i == stacks;
        profile.push_back({pole ? 0 : radius * std::sin(angle), -radius * std::cos(angle)});
    }
    return Lathe(profile, slices);
}

Mesh Torus(float radius, float tubeRadius, int slices, int sides) {
    std::vector<Vec2> profile = CircleSection(tubeRadius, sides);
    for (Vec2& point : profile) point.x += radius;
    profile.push_back(profile.front());
    return Lathe(profile, slices);
}

namespace {

// Where the section stands at a point of the path. `up` is right x along, with along = -front.
struct Frame {
    Vec3 centre, right, up, along;
};

Vec3 squareTo(const Vec3& v, const Vec3& along) {
    return Vec3Normalise(v - along * dot(v, along));
}

Vec3 tangentAt(std::span<const Vec3> points, Path path, std::size_t i) {
    const std::size_t count = points.size();
    const bool closed = path == Path::Closed;
    const std::size_t before = i > 0 ? i - 1 : closed ? count - 1 : 0;
    const std::size_t after = i + 1 < count ? i + 1 : closed ? 0 : i;
    return Vec3Normalise(points[after] - points[before]);
}

void rotateFrame(Frame& frame, float angle) {
    const Vec3 right = frame.right * std::cos(angle) + frame.up * std::sin(angle);
    frame.right = right;
    frame.up = Vec3Cross(frame.along, right);
}

// Each frame is the one before it, made square to the path again (parallel transport). Around a
// closed path what is left over in angle is spread over the way.
std::vector<Frame> framesAlong(std::span<const Vec3> points, Path path, float turns) {
    const std::size_t count = points.size();
    std::vector<Frame> frames;
    const Vec3 start = tangentAt(points, path, 0);
    Vec3 right = squareTo(
        std::fabs(start.y) < 0.9f ? Vec3Cross(Vec3{0, 1, 0}, start) : Vec3{1, 0, 0}, start);
    for (std::size_t i = 0; i < count; ++i) {
        const Vec3 along = tangentAt(points, path, i);
        right = squareTo(right, along);
        frames.push_back({points[i], right, Vec3Cross(along, right), along});
    }
    float left = turns * 2 * kPi;
    if (path == Path::Closed) {
        const Vec3 back = squareTo(right, start);
        left -= std::atan2(dot(back, frames[0].up), dot(back, frames[0].right));
    }
    const float steps = static_cast<float>(path == Path::Closed ? count : count - 1);
    for (std::size_t i = 0; i < count; ++i) {
        rotateFrame(frames[i], left * static_cast<float>(i) / steps);
    }
    return frames;
}

std::vector<Vec2> sectionNormals(const std::vector<Vec2>& section) {
    std::vector<Vec2> normals;
    const std::size_t count = section.size();
    for (std::size_t i = 0; i < count; ++i) {
        const Vec2& before = section[(i + count - 1) % count];
        const Vec2 a = outwardNormal(before, section[i]);
        const Vec2 b = outwardNormal(section[i], section[(i + 1) % count]);
        const float size = std::hypot(a.x + b.x, a.y + b.y);
        normals.push_back({(a.x + b.x) / size, (a.y + b.y) / size});
    }
    return normals;
}

void addEnd(Mesh& mesh, const std::vector<MeshVertex>& ring, const Vec3& centre,
            const Vec3& outward) {
    const MeshVertex middle{centre, outward, {0.5f, 0.5f}};
    for (std::size_t i = 0; i < ring.size(); ++i) {
        MeshVertex a = ring[i], b = ring[(i + 1) % ring.size()];
        a.normal = b.normal = outward;
        const Vec3 facing = Vec3Cross(a.position - centre, b.position - centre);
        dot(facing, outward) > 0 ? mesh.addTriangle(middle, a, b) : mesh.addTriangle(middle, b, a);
    }
}

}  // namespace

// A section that comes home turned by one of its symmetries joins corners of other numbers than
// its own: `turns` times its sides, for a section of even sides.
Mesh Sweep(std::span<const Vec3> points, const SweepShape& shape) {
    const std::vector<Frame> frames = framesAlong(points, shape.path, shape.turns);
    const std::vector<Vec2> normals = sectionNormals(shape.section);
    const std::size_t sides = shape.section.size(), count = frames.size();
    const bool closed = shape.path == Path::Closed;
    const auto shift = static_cast<std::size_t>(
        closed ? std::lround((shape.turns - std::floor(shape.turns)) * static_cast<float>(sides))
               : 0);
    const auto vertex = [&](std::size_t ring, std::size_t side) {
        const bool home = closed && ring == count;
        const std::size_t place = home ? 0 : ring;
        const std::size_t corner = (side + (home ? shift : 0)) % sides;
        const float way = static_cast<float>(ring) / static_cast<float>(closed ? count : count - 1);
        const float scale = shape.scaleAt ? shape.scaleAt(home ? 0 : way) : 1;
        const Frame& frame = frames[place];
        const auto inFrame = [&](const Vec2& v) { return frame.right * v.x + frame.up * v.y; };
        return MeshVertex{frame.centre + inFrame(shape.section[corner]) * scale,
                          inFrame(normals[corner]),
                          {way, static_cast<float>(side) / static_cast<float>(sides)}};
    };
    Mesh mesh;
    for (std::size_t ring = 0; ring + (closed ? 0 : 1) < count; ++ring) {
        for (std::size_t side = 0; side < sides; ++side) {
            mesh.addQuad(vertex(ring, side), vertex(ring, side + 1), vertex(ring + 1, side + 1),
                         vertex(ring + 1, side));
        }
    }
    if (closed) return mesh;
    for (const std::size_t ring : {std::size_t{0}, count - 1}) {
        std::vector<MeshVertex> rim;
        for (std::size_t side = 0; side < sides; ++side) rim.push_back(vertex(ring, side));
        addEnd(mesh, rim, frames[ring].centre, frames[ring].along * (ring == 0 ? -1.0f : 1.0f));
    }
    return mesh;
}

std::vector<Vec2> CircleSection(float radius, int sides) {
    std::vector<Vec2> section;
    for (int i = 0; i < sides; ++i) {
        const float angle = 2 * kPi * static_cast<float>(i) / static_cast<float>(sides);
        section.push_back({radius * std::cos(angle), radius * std::sin(angle)});
    }
    return section;
}

std::vector<Vec3> CurvePoints(int count, Path path, const std::function<Vec3(float)>& curve) {
    std::vector<Vec3> points;
    const auto steps = static_cast<float>(path == Path::Closed ? count : count - 1);
    for (int i = 0; i < count; ++i) points.push_back(curve(static_cast<float>(i) / steps));
    return points;
}

Mesh Tube(std::span<const Vec3> points, Path path, float radius, int sides) {
    return Sweep(points, {CircleSection(radius, sides), path, 0, {}});
}

Mesh Transformed(const Mesh& mesh, const Mat4& matrix) {
    const Vec3 origin = Mat4TransformPoint(matrix, {0, 0, 0});
    Mesh result = mesh;
    for (MeshVertex& vertex : result.vertices) {
        vertex.position = Mat4TransformPoint(matrix, vertex.position);
        vertex.normal = Vec3Normalise(Mat4TransformPoint(matrix, vertex.normal) - origin);
    }
    return result;
}

Mesh Moved(const Mesh& mesh, const Vec3& offset) {
    Mat4 matrix;
    Mat4Translation(matrix, offset);
    return Transformed(mesh, matrix);
}

Mesh Rotated(const Mesh& mesh, const Vec3& degrees) {
    Mat4 matrix;
    Mat4ComposeTRS(matrix, {0, 0, 0}, degrees, 1);
    return Transformed(mesh, matrix);
}

Mesh Faceted(const Mesh& mesh) {
    Mesh result = mesh;
    for (std::size_t i = 0; i + 2 < result.vertices.size(); i += 3) {
        MeshVertex* corners = &result.vertices[i];
        const Vec3 normal =
            faceNormal(corners[0].position, corners[1].position, corners[2].position);
        for (int corner = 0; corner < 3; ++corner) corners[corner].normal = normal;
    }
    return result;
}

Mesh TextureScaled(const Mesh& mesh, float u, float v) {
    Mesh result = mesh;
    for (MeshVertex& vertex : result.vertices) vertex.uv = {vertex.uv.x * u, vertex.uv.y * v};
    return result;
}

void ObjModel::add(const std::string& name, const Mesh& mesh) {
    objects_.emplace_back(name, mesh);
}

namespace {

// The lines of one kind, each once, numbered from 1.
class NumberedLines {
  public:
    template <typename... Floats>
    std::size_t number(std::string& text, const char* form, Floats... values) {
        char line[96];
        // Adding 0 turns -0 into 0, which would print as another number.
        std::snprintf(line, sizeof(line), form, static_cast<double>(values + 0.0f)...);
        const auto [place, isNew] = numbers_.try_emplace(line, numbers_.size() + 1);
        if (isNew) text += line;
        return place->second;
    }

  private:
    std::unordered_map<std::string, std::size_t> numbers_;
};

}  // namespace

std::string ObjModel::text() const {
    std::string text;
    NumberedLines positions, normals, places;
    for (const auto& [name, mesh] : objects_) {
        std::string faces;
        for (std::size_t i = 0; i < mesh.vertices.size(); ++i) {
            const auto& [p, n, uv] = mesh.vertices[i];
            char corner[64];
            std::snprintf(corner, sizeof(corner), "%s %zu/%zu/%zu", i % 3 == 0 ? "f" : "",
                          positions.number(text, "v %.5f %.5f %.5f\n", p.x, p.y, p.z),
                          places.number(text, "vt %.5f %.5f\n", uv.x, uv.y),
                          normals.number(text, "vn %.4f %.4f %.4f\n", n.x, n.y, n.z));
            faces += corner;
            if (i % 3 == 2) faces += '\n';
        }
        text += "o " + name + "\n" + faces;
    }
    return text;
}

bool ObjModel::write(const std::filesystem::path& file, std::string& error) const {
    std::error_code failure;
    std::filesystem::create_directories(file.parent_path(), failure);
    std::ofstream stream(file, std::ios::binary);
    stream << text();
    stream.close();
    if (stream) return true;
    error = file.string() + ": cannot be written";
    return false;
}

}  // namespace models
