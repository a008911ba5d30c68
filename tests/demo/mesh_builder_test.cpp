// The shapes of the models' workshop: closed where they have an inside, facing out, and read back
// from their file as they were made.
#include "mesh_builder.h"

#include <gtest/gtest.h>

#include <cmath>

#include "geometry/read_obj_file.h"
#include "support/mesh_checks.h"

namespace {

using namespace models;

struct NamedMesh {
    const char* name;
    Mesh mesh;
    float volume, tolerance;  // what round shapes lose to their corners
};

std::ostream& operator<<(std::ostream& stream, const NamedMesh& shape) {
    return stream << shape.name;
}

Mesh knot() {
    const auto curve = [](float t) {
        const float a = 2 * kPi * t, r = 1 + 0.4f * std::cos(3 * a);
        return Vec3{r * std::cos(2 * a), 0.4f * std::sin(3 * a), r * std::sin(2 * a)};
    };
    const std::vector<Vec3> points = CurvePoints(120, Path::Closed, curve);
    SweepShape shape{CircleSection(0.2f, 12), Path::Closed, 0.5f, {}};
    for (Vec2& point : shape.section) point.x *= 0.6f;
    return Sweep(points, shape);
}

std::vector<NamedMesh> shapes() {
    const std::vector<Vec3> rod = CurvePoints(5, Path::Open, [](float t) {
        return Vec3{t * 2, t, 0};
    });
    const std::vector<Vec2> can{{0, -1}, {0.5f, -1}, {0.5f, -1}, {0.5f, 1}, {0.5f, 1}, {0, 1}};
    const float rodLength = std::sqrt(5.0f);
    return {
        {"Box", Box({1, 2, 3}, 0), 48, 1e-4f},
        // Chamfers of c along edges of length l take c * c / 2 * l each, corners a little less.
        {"BevelledBox", Box({1, 1, 1}, 0.1f), 8 - 12 * 0.005f * 2, 0.02f},
        {"Sphere", Sphere(1, 48, 24), 4 * kPi / 3, 0.06f},
        {"Torus", Torus(1, 0.25f, 64, 32), 2 * kPi * kPi / 16, 0.02f},
        {"Can", Lathe(can, 64), kPi * 0.5f, 0.01f},
        {"Rod", Tube(rod, Path::Open, 0.1f, 32), kPi * 0.01f * rodLength, 0.001f},
        {"Stone", Faceted(Sphere(1, 6, 4)), 0, INFINITY},
        {"Knot", knot(), 0, INFINITY},
    };
}

class MeshShape : public testing::TestWithParam<NamedMesh> {};

}  // namespace

TEST_P(MeshShape, IsClosedAndFacesOut) {
    const auto& [name, mesh, volume, tolerance] = GetParam();
    EXPECT_EQ(OpenEdges(mesh.vertices), 0u);
    EXPECT_GT(Volume(mesh.vertices), 0);
    EXPECT_NEAR(Volume(mesh.vertices), volume, tolerance);
    EXPECT_EQ(NormalsFacingIn(mesh.vertices), 0u);
}

INSTANTIATE_TEST_SUITE_P(All, MeshShape, testing::ValuesIn(shapes()),
                         [](const auto& shape) { return std::string(shape.param.name); });

TEST(MeshBuilder, AHoleIsSeenByTheCheck) {
    Mesh box = Box({1, 1, 1}, 0.1f);
    box.vertices.resize(box.vertices.size() - 3);
    EXPECT_EQ(OpenEdges(box.vertices), 3u);
}

TEST(MeshBuilder, FacetsHaveTheNormalsOfTheirTriangles) {
    const Mesh stone = Faceted(Sphere(1, 6, 4));
    for (std::size_t i = 0; i < stone.vertices.size(); i += 3) {
        const Vec3 edge = stone.vertices[i + 1].position - stone.vertices[i].position;
        EXPECT_NEAR(dot(edge, stone.vertices[i].normal), 0, 1e-5f);  // rounding of a product
    }
}

TEST(MeshBuilder, APanelShowsItsPictureUpright) {
    for (const MeshVertex& vertex : Panel(2, 1).vertices) {
        EXPECT_EQ(vertex.uv.x, vertex.position.x > 0 ? 1 : 0);
        EXPECT_EQ(vertex.uv.y, vertex.position.y > 0 ? 1 : 0);
    }
}

TEST(MeshBuilder, ABoxShowsItsPictureUprightOnEverySide) {
    for (const MeshVertex& vertex : Box({1, 2, 3}, 0).vertices) {
        if (std::fabs(vertex.normal.y) > 0.5f) continue;
        EXPECT_FLOAT_EQ(vertex.uv.y, vertex.position.y + 2);
        const Vec3 right = Vec3Cross({0, 1, 0}, vertex.normal);
        const float half = std::fabs(vertex.normal.x) > 0.5f ? 3.0f : 1.0f;
        EXPECT_FLOAT_EQ(vertex.uv.x, dot(vertex.position, right) + half);
    }
}

TEST(MeshBuilder, WritesWhatTheReaderReads) {
    ObjModel model;
    model.add("ball", Sphere(1, 16, 8));
    model.add("box", Moved(Box({1, 1, 1}, 0.1f), {3, 0, 0}));
    ObjObjects objects;
    EXPECT_EQ(ReadObjText(model.text(), objects, 0), "");
    ASSERT_EQ(objects.size(), 2u);
    EXPECT_EQ(objects.begin()->first, "ball");
    const std::vector<MeshVertex> ball = Sphere(1, 16, 8).vertices;
    const std::vector<MeshVertex>& read = objects.begin()->second;
    ASSERT_EQ(read.size(), ball.size());
    constexpr float kPrinted = 1e-4f;  // places have five digits in the file, normals four
    for (std::size_t i = 0; i < ball.size(); ++i) {
        EXPECT_NEAR(read[i].position.x, ball[i].position.x, kPrinted);
        EXPECT_NEAR(read[i].position.y, ball[i].position.y, kPrinted);
        EXPECT_NEAR(read[i].position.z, ball[i].position.z, kPrinted);
        EXPECT_NEAR(read[i].normal.y, ball[i].normal.y, kPrinted);
        EXPECT_NEAR(read[i].uv.x, ball[i].uv.x, kPrinted);
        EXPECT_NEAR(read[i].uv.y, ball[i].uv.y, kPrinted);
    }
}

TEST(MeshBuilder, SaysWhichFileCannotBeWritten) {
    std::string error;
    EXPECT_FALSE(ObjModel().write("/dev/null/model.obj", error));
    EXPECT_NE(error.find("model.obj"), std::string::npos) << error;
}
