#include <GL/glew.h>
#include <gmock/gmock.h>

#include <cmath>

#include "geometry/geometry_node_primitives.h"
#include "geometry/material_node.h"
#include "support/graph_fixture.h"
#include "support/parameter_table.h"

namespace {

using ::testing::ElementsAre;

class PrimitivesTest : public GraphTest {
  protected:
    GeometryNode_Primitives& node() {
        if (node_ == nullptr) node_ = &add<GeometryNode_Primitives>("plane");
        return *node_;
    }
    void runFrame() {
        engine.update(0);
        EXPECT_TRUE(node().pull());
    }

  private:
    GeometryNode_Primitives* node_ = nullptr;
};

TEST_F(PrimitivesTest, DeclaresItsInputAndParameters) {
    EXPECT_THAT(ParameterTable(engine, node()),
                ElementsAre("Translate.X float -20 to 20, 2 decimals, 0, animatable",
                            "Translate.Y float -20 to 20, 2 decimals, 0, animatable",
                            "Translate.Z float -20 to 20, 2 decimals, 0, animatable",
                            "Rotate.X float 0 to 360, 2 decimals, 0, animatable",
                            "Rotate.Y float 0 to 360, 2 decimals, 0, animatable",
                            "Rotate.Z float 0 to 360, 2 decimals, 0, animatable",
                            "Scale X float 0 to 10, 2 decimals, 1, animatable",
                            "Scale Y float 0 to 10, 2 decimals, 1, animatable"));
    EXPECT_THAT(node().inputNames, ElementsAre("Material"));
    EXPECT_TRUE(node().canConnect(0, &add<MaterialNode>("m")));
    EXPECT_FALSE(node().canConnect(0, &node()));
    EXPECT_FALSE(node().canConnect(0, nullptr));
}

TEST_F(PrimitivesTest, IsOnePlaneOfSixVertices) {
    ASSERT_EQ(node().objects.size(), 1u);
    const GeometryObject& plane = node().objects[0];
    EXPECT_EQ(plane.name, "Plane");
    ASSERT_EQ(plane.vertexCount, 6);
    float floats[48];
    glBindBuffer(GL_ARRAY_BUFFER, plane.vertexBuffer);
    glGetBufferSubData(GL_ARRAY_BUFFER, 0, sizeof floats, floats);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    EXPECT_THAT(floats, ElementsAre(-1, 1, 0, 0, 0, 1, 0, 0,  //
                                    1, 1, 0, 0, 0, 1, 1, 0,   //
                                    1, -1, 0, 0, 0, 1, 1, 1,  //
                                    -1, 1, 0, 0, 0, 1, 0, 0,  //
                                    1, -1, 0, 0, 0, 1, 1, 1,  //
                                    -1, -1, 0, 0, 0, 1, 0, 1));
}

TEST_F(PrimitivesTest, TheMaterialGoesToTheObject) {
    auto& material = add<MaterialNode>("m");
    runFrame();
    EXPECT_EQ(node().objects[0].material, nullptr);
    link(material, node(), 0);
    runFrame();
    EXPECT_EQ(node().objects[0].material, material.data);
    EXPECT_EQ(node().material, nullptr);
    EXPECT_TRUE(engine.disconnect("plane", 0));
    runFrame();
    EXPECT_EQ(node().objects[0].material, nullptr);
}

// A corner goes through the scale first, then the turns about z, y and x, then the move.
TEST_F(PrimitivesTest, IsScaledTurnedAndMoved) {
    node().translate = {0.5f, -7, 2};
    node().rotate = {25, 130, 290};
    node().scaleX = 3;
    node().scaleY = 0.25f;
    runFrame();
    const Vec3 corners[] = {{-1, 1, 0}, {1, -1, 0}, {1, 1, 1}};
    for (const Vec3& corner : corners) {
        const double radians = M_PI / 180;
        const auto turn = [](double& a, double& b, double angle) {
            const double oldA = a;
            a = oldA * std::cos(angle) - b * std::sin(angle);
            b = oldA * std::sin(angle) + b * std::cos(angle);
        };
        double x = 3 * static_cast<double>(corner.x), y = 0.25 * static_cast<double>(corner.y),
               z = static_cast<double>(corner.z);
        turn(x, y, 290 * radians);
        turn(z, x, 130 * radians);
        turn(y, z, 25 * radians);
        const Vec3 p = Mat4TransformPoint(node().transform, corner);
        // Angles below 7 radians and places below 8, in single precision.
        EXPECT_NEAR(static_cast<double>(p.x), x + 0.5, 5e-6);
        EXPECT_NEAR(static_cast<double>(p.y), y - 7, 5e-6);
        EXPECT_NEAR(static_cast<double>(p.z), z + 2, 5e-6);
    }
}

TEST_F(PrimitivesTest, AScaleOfZeroIsNoFault) {
    node().scaleX = 0;
    runFrame();
    const Vec3 p = Mat4TransformPoint(node().transform, {1, 1, 0});
    EXPECT_EQ(p.x, 0.0f);
    EXPECT_EQ(p.y, 1.0f);
}

}  // namespace
