#include <GL/glew.h>
#include <gmock/gmock.h>

#include <cmath>

#include "geometry/geometry_node_obj_reader.h"
#include "geometry/material_node.h"
#include "platform/debug_output.h"
#include "support/graph_fixture.h"
#include "support/parameter_table.h"
#include "support/temp_folder.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string kTwoObjects =
    "v 1 2 3\nv 4 5 6\nv 7 8 9\nvn 1 0 0\nvt 0.25 0.5\n"
    "o first\nf 1/1/1 2/1/1 3/1/1\nf 3/1/1 2/1/1 1/1/1\no second\nf 3/1/1 1/1/1 2/1/1\n";

std::vector<MeshVertex> Uploaded(const GeometryObject& object) {
    std::vector<MeshVertex> vertices(static_cast<std::size_t>(object.vertexCount));
    glBindBuffer(GL_ARRAY_BUFFER, object.vertexBuffer);
    glGetBufferSubData(GL_ARRAY_BUFFER, 0, static_cast<GLsizeiptr>(vertices.size() * 32),
                       vertices.data());
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    return vertices;
}

class ObjReaderTest : public GraphTest {
  protected:
    // One frame in which only the reader is pulled.
    void runFrame() {
        engine.update(0);
        EXPECT_TRUE(node().pull());
    }
    GeometryNode_ObjReader& node() {
        if (node_ == nullptr) node_ = &add<GeometryNode_ObjReader>("obj");
        return *node_;
    }
    std::vector<std::string> names() {
        std::vector<std::string> result;
        for (const GeometryObject& object : node().objects) result.push_back(object.name);
        return result;
    }
    void load(const std::string& content) {
        folder.write("a.obj", content);
        node().filename = folder.file("a.obj");
        runFrame();
    }

    TempFolder folder;

  private:
    GeometryNode_ObjReader* node_ = nullptr;
};

TEST_F(ObjReaderTest, DeclaresItsInputAndParameters) {
    EXPECT_THAT(
        ParameterTable(engine, node()),
        ElementsAre("Filename text ''", "Translate.X float -20 to 20, 2 decimals, 0, animatable",
                    "Translate.Y float -20 to 20, 2 decimals, 0, animatable",
                    "Translate.Z float -20 to 20, 2 decimals, 0, animatable",
                    "Rotate.X float 0 to 360, 2 decimals, 0, animatable",
                    "Rotate.Y float 0 to 360, 2 decimals, 0, animatable",
                    "Rotate.Z float 0 to 360, 2 decimals, 0, animatable",
                    "Scale float 0 to 10, 2 decimals, 1, animatable", "Center bool 0",
                    "Normalize bool 0", "Unwrap Def. bool 0"));
    EXPECT_THAT(node().inputNames, ElementsAre("Material"));
    EXPECT_TRUE(node().canConnect(0, &add<MaterialNode>("m")));
    EXPECT_FALSE(node().canConnect(0, &node()));
    EXPECT_FALSE(node().canConnect(0, nullptr));
}

TEST_F(ObjReaderTest, ReadsNothingBeforeAFileIsNamed) {
    const DebugCapture debug;
    runFrame();
    EXPECT_THAT(node().objects, IsEmpty());
    EXPECT_FALSE(node().hasError);
    node().center = true;
    runFrame();
    EXPECT_EQ(debug.text(), "");
}

TEST_F(ObjReaderTest, UploadsEachObjectOfTheFile) {
    load(kTwoObjects);
    EXPECT_THAT(names(), ElementsAre("first", "second"));
    EXPECT_EQ(node().objects[0].vertexCount, 6);
    const auto vertices = Uploaded(node().objects[1]);
    ASSERT_EQ(vertices.size(), 3u);
    EXPECT_EQ(vertices[0].position.z, 9.0f);
    EXPECT_EQ(vertices[1].normal.x, 1.0f);
    EXPECT_EQ(vertices[2].uv.y, 0.5f);
    EXPECT_EQ(node().objects[0].transform[0], 1.0f);
    EXPECT_EQ(node().objects[0].material, nullptr);
}

TEST_F(ObjReaderTest, ReadsTheFileAgainWhenItsNameOrAFlagChanges) {
    load(kTwoObjects);
    const auto kept = node().objects[0].vertexArray;
    folder.write("a.obj", kTwoObjects + "o third\nf 1/1/1 1/1/1 1/1/1\n");
    runFrame();
    EXPECT_EQ(node().objects[0].vertexArray, kept) << "nothing asked for it";
    node().normalize = true;
    runFrame();
    EXPECT_THAT(names(), ElementsAre("first", "second", "third"));
    folder.write("b.obj", "v 0 0 0\nvn 0 0 1\nf 1/1/1 1/1/1 1/1/1\n");
    node().filename = folder.file("b.obj");
    runFrame();
    EXPECT_THAT(names(), ElementsAre("default"));
    node().filename = "";
    runFrame();
    EXPECT_THAT(node().objects, IsEmpty());
}

TEST_F(ObjReaderTest, ItsFlagsCentreNormaliseAndUnwrap) {
    node().center = true;
    load(kTwoObjects);
    EXPECT_EQ(node().loadedFlags, 1u);
    EXPECT_EQ(Uploaded(node().objects[0])[0].position.x, -3.0f);
    node().center = false;
    node().normalize = true;
    runFrame();
    EXPECT_EQ(node().loadedFlags, 2u);
    EXPECT_EQ(Uploaded(node().objects[0])[0].position.x, 3.5f);
    node().center = true;
    node().unwrap = true;
    runFrame();
    EXPECT_EQ(node().loadedFlags, 11u);
    const auto vertices = Uploaded(node().objects[0]);
    EXPECT_EQ(vertices[0].position.x, -0.5f);
    EXPECT_EQ(vertices[2].uv.x, 0.5f);
    EXPECT_EQ(vertices[2].uv.y, 1.0f);
}

TEST_F(ObjReaderTest, IsMovedTurnedAndScaled) {
    node().translate = {1, 2, 3};
    node().rotate = {90, 0, 0};
    node().scale = 2;
    runFrame();
    const Vec3 p = Mat4TransformPoint(node().transform, {0, 1, 0});
    // The cosine of 90 degrees in single precision is 4e-8.
    EXPECT_NEAR(static_cast<double>(p.x), 1, 1e-6);
    EXPECT_NEAR(static_cast<double>(p.y), 2, 1e-6);
    EXPECT_NEAR(static_cast<double>(p.z), 5, 1e-6);
}

TEST_F(ObjReaderTest, TakesItsMaterialFromTheInput) {
    auto& material = add<MaterialNode>("m");
    link(material, node(), 0);
    runFrame();
    EXPECT_EQ(node().material, material.data);
    EXPECT_TRUE(engine.disconnect("obj", 0));
    runFrame();
    EXPECT_EQ(node().material, nullptr);
}

TEST_F(ObjReaderTest, AMissingFileIsReportedOnceAndGivesNoObjects) {
    load(kTwoObjects);
    const DebugCapture debug;
    node().filename = "nowhere.obj";
    runFrame();
    runFrame();
    EXPECT_EQ(debug.text(), "nowhere.obj: the file cannot be read\n");
    EXPECT_THAT(node().objects, IsEmpty());
    EXPECT_FALSE(node().hasError);
}

TEST_F(ObjReaderTest, LoadsItsFileInThePassAfterALoad) {
    const DebugCapture debug;
    folder.write("a.obj", kTwoObjects + "f 1/1/1 2/2/2 3/3/3\n");
    node().filename = folder.file("a.obj");
    node().center = true;
    engine.refreshNodes();
    EXPECT_THAT(names(), ElementsAre("first", "second"));
    EXPECT_EQ(node().loadedFlags, 1u);
    EXPECT_EQ(debug.text(),
              node().filename + ": 1 of its 4 triangles are left out: an index is out of range\n");
    const auto kept = node().objects[0].vertexArray;
    runFrame();
    EXPECT_EQ(node().objects[0].vertexArray, kept);
}

TEST_F(ObjReaderTest, ReleasesTheBuffersOfTheLastCopyOnly) {
    load(kTwoObjects);
    GeometryObject copy = node().objects[0];
    const GLuint gone = node().objects[1].vertexArray;
    EXPECT_TRUE(engine.deleteNode("obj"));
    EXPECT_TRUE(glIsVertexArray(copy.vertexArray));
    EXPECT_TRUE(glIsBuffer(copy.vertexBuffer));
    EXPECT_FALSE(glIsVertexArray(gone));
    const GLuint last = copy.vertexArray;
    copy = {};
    EXPECT_FALSE(glIsVertexArray(last));
}

}  // namespace
