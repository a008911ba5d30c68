#include <GL/glew.h>
#include <gmock/gmock.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "geometry/geometry_node_particle_mesher.h"
#include "geometry/material_node.h"
#include "geometry/particle_surface.h"
#include "support/graph_fixture.h"

namespace {

using testing::ElementsAre;

class ParticleMesherTest : public GraphTest {
  protected:
    // The mesh as the GPU has it.
    std::vector<MeshVertex> uploaded() const {
        const GeometryObject& blob = mesher.objects.at(0);
        std::vector<MeshVertex> mesh(static_cast<std::size_t>(blob.vertexCount));
        glBindBuffer(GL_ARRAY_BUFFER, blob.vertexBuffer);
        glGetBufferSubData(GL_ARRAY_BUFFER, 0,
                           static_cast<GLsizeiptr>(mesh.size() * sizeof(MeshVertex)), mesh.data());
        glBindBuffer(GL_ARRAY_BUFFER, 0);
        return mesh;
    }

    GeometryNode_ParticleMesher& mesher = add<GeometryNode_ParticleMesher>("mesher");
};

bool SameBytes(const std::vector<MeshVertex>& a, const std::vector<MeshVertex>& b) {
    return a.size() == b.size() &&
           std::memcmp(a.data(), b.data(), a.size() * sizeof(MeshVertex)) == 0;
}

}  // namespace

TEST_F(ParticleMesherTest, DeclaresItsParametersInOrder) {
    const auto values = engine.valuesOf(&mesher);
    std::vector<std::string> names;
    for (const Value_Object* value : values) names.push_back(value->name);
    EXPECT_THAT(names, ElementsAre("Filename", "Translate.X", "Translate.Y", "Translate.Z",
                                   "Rotate.X", "Rotate.Y", "Rotate.Z", "Scale"));
    EXPECT_EQ(dynamic_cast<const ValueString&>(*values[0]).defaultValue, "");
    EXPECT_EQ(dynamic_cast<const ValueString&>(*values[0]).data, &mesher.filename);
    struct Range {
        float min, max, defaultValue;
        const float* data;
    };
    const Range ranges[] = {{-20, 20, 0, &mesher.translate.x}, {-20, 20, 0, &mesher.translate.y},
                            {-20, 20, 0, &mesher.translate.z}, {0, 360, 0, &mesher.rotate.x},
                            {0, 360, 0, &mesher.rotate.y},     {0, 360, 0, &mesher.rotate.z},
                            {0, 10, 1, &mesher.scale}};
    for (std::size_t i = 0; i < std::size(ranges); ++i) {
        const auto& value = dynamic_cast<const ValueFloat&>(*values[i + 1]);
        EXPECT_EQ(value.min, ranges[i].min) << value.name;
        EXPECT_EQ(value.max, ranges[i].max) << value.name;
        EXPECT_EQ(value.defaultValue, ranges[i].defaultValue) << value.name;
        EXPECT_EQ(value.data, ranges[i].data) << value.name;
        EXPECT_EQ(*value.data, ranges[i].defaultValue) << value.name;
        EXPECT_EQ(value.decimals, 2) << value.name;
        EXPECT_TRUE(value.animatable) << value.name;
    }
}

TEST_F(ParticleMesherTest, TakesAMaterialOnly) {
    EXPECT_EQ(mesher.getType(), kGeometryNode);
    EXPECT_EQ(mesher.inputCount, 1);
    EXPECT_EQ(mesher.getInputName(0), "Material");
    EXPECT_TRUE(mesher.canConnect(0, &add<MaterialNode>("material")));
    EXPECT_FALSE(mesher.canConnect(0, &mesher));
    EXPECT_FALSE(mesher.canConnect(0, nullptr));
}

TEST_F(ParticleMesherTest, OffersOneBlobWithTheSurfaceOfTwoCharges) {
    EXPECT_TRUE(mesher.objects.empty());
    EXPECT_TRUE(mesher.process());
    ASSERT_EQ(mesher.objects.size(), 1u);
    const GeometryObject& blob = mesher.objects[0];
    EXPECT_EQ(blob.name, "Blob");
    EXPECT_EQ(blob.material, nullptr);
    EXPECT_FALSE(mesher.hasError);
    const Mat4 identity;
    for (int e = 0; e < 16; ++e) EXPECT_EQ(blob.transform[e], identity[e]);
    const Particle charges[] = {{0, 0, 0, 1}, {0, 0, 0, 1}};
    EXPECT_TRUE(SameBytes(uploaded(), ParticleSurface(charges)));
    for (const MeshVertex& vertex : uploaded()) {
        const auto& p = vertex.position;
        // The straight line between grid values lies up to this far outside of the sphere.
        EXPECT_NEAR(std::hypot(p.x, p.y, p.z), std::sqrt(2.0), 0.035);
    }
}

TEST_F(ParticleMesherTest, RebuildsTheSameMeshForAnyNewName) {
    mesher.process();
    const auto first = uploaded();
    const char* const names[] = {"no such file", "", "other", "shaders/picture.frag"};
    for (const char* name : names) {
        const std::weak_ptr<const void> before = mesher.objects[0].buffers;
        const GLuint oldArray = mesher.objects[0].vertexArray;
        const GLuint oldBuffer = mesher.objects[0].vertexBuffer;
        mesher.filename = name;
        EXPECT_TRUE(mesher.process());
        EXPECT_TRUE(before.expired()) << "not rebuilt";
        ASSERT_EQ(mesher.objects.size(), 1u);
        // A name may be used again at once; then it is the new mesh that has it.
        EXPECT_TRUE(oldArray == mesher.objects[0].vertexArray || !glIsVertexArray(oldArray));
        EXPECT_TRUE(oldBuffer == mesher.objects[0].vertexBuffer || !glIsBuffer(oldBuffer));
        EXPECT_TRUE(SameBytes(uploaded(), first)) << name;
        EXPECT_EQ(mesher.objects[0].name, "Blob");
    }
}

TEST_F(ParticleMesherTest, KeepsItsMeshFromFrameToFrame) {
    mesher.process();
    const auto buffers = mesher.objects[0].buffers;
    for (int frame = 0; frame < 3; ++frame) {
        set(mesher, "Rotate.X", {static_cast<float>(frame)});
        mesher.process();
        EXPECT_EQ(mesher.objects[0].buffers, buffers);
    }
}

TEST_F(ParticleMesherTest, FollowsItsMatrixParameters) {
    set(mesher, "Translate.X", {1});
    set(mesher, "Translate.Y", {-2});
    set(mesher, "Translate.Z", {3});
    set(mesher, "Rotate.X", {10});
    set(mesher, "Rotate.Y", {20});
    set(mesher, "Rotate.Z", {30});
    set(mesher, "Scale", {1.5f});
    for (const char* name : {"", "rebuilt"}) {
        mesher.filename = name;
        mesher.process();
        Mat4 expected;
        Mat4ComposeTRS(expected, {1, -2, 3}, {10, 20, 30}, 1.5f);
        for (int e = 0; e < 16; ++e) EXPECT_EQ(mesher.transform[e], expected[e]);
    }
    constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
    set(mesher, "Scale", {kNan});
    EXPECT_TRUE(mesher.process());
    set(mesher, "Scale", {0});
    EXPECT_TRUE(mesher.process());
    EXPECT_EQ(mesher.transform[0], 0.0f);
    EXPECT_EQ(mesher.transform[12], 1.0f);
}

TEST_F(ParticleMesherTest, WearsTheMaterialOfItsPort) {
    auto& material = add<MaterialNode>("material");
    mesher.process();
    EXPECT_EQ(mesher.material, nullptr);
    link(material, mesher, 0);
    mesher.process();
    EXPECT_EQ(mesher.material, material.data);
    EXPECT_EQ(mesher.objects[0].material, nullptr) << "the node's is worn by its objects";
    engine.disconnect("mesher", 0);
    mesher.process();
    EXPECT_EQ(mesher.material, nullptr);
}

TEST_F(ParticleMesherTest, ReleasesItsBuffersWithItself) {
    mesher.process();
    const GLuint vertexArray = mesher.objects[0].vertexArray;
    const GLuint vertexBuffer = mesher.objects[0].vertexBuffer;
    EXPECT_TRUE(glIsVertexArray(vertexArray));
    EXPECT_TRUE(glIsBuffer(vertexBuffer));
    engine.deleteNode("mesher");
    EXPECT_FALSE(glIsVertexArray(vertexArray));
    EXPECT_FALSE(glIsBuffer(vertexBuffer));
}

// The load pass takes in a project's names: the mesh is there before the first frame.
TEST_F(ParticleMesherTest, BuildsItsMeshInTheLoadPass) {
    mesher.filename = "from a project";
    engine.refreshNodes();
    ASSERT_EQ(mesher.objects.size(), 1u);
    const auto buffers = mesher.objects[0].buffers;
    mesher.process();
    EXPECT_EQ(mesher.objects[0].buffers, buffers);
}
