#include <gmock/gmock.h>

#include <array>
#include <cmath>

#include "geometry/geometry_node_combine_geometry.h"
#include "geometry/material_node.h"
#include "support/geometry_fixture.h"

namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Matrix = std::array<double, 16>;

Matrix Product(const Matrix& a, const Matrix& b) {
    Matrix result{};
    for (std::size_t c = 0; c < 4; ++c) {
        for (std::size_t r = 0; r < 4; ++r) {
            for (std::size_t k = 0; k < 4; ++k) result[c * 4 + r] += a[k * 4 + r] * b[c * 4 + k];
        }
    }
    return result;
}

// T * Rx * Ry * Rz * S, rotations in degrees.
Matrix Composed(std::array<double, 3> t, std::array<double, 3> degrees, double s) {
    const double x = degrees[0] * M_PI / 180, y = degrees[1] * M_PI / 180,
                 z = degrees[2] * M_PI / 180;
    const Matrix move = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, t[0], t[1], t[2], 1};
    const Matrix rx = {1, 0, 0, 0, 0, cos(x), sin(x), 0, 0, -sin(x), cos(x), 0, 0, 0, 0, 1};
    const Matrix ry = {cos(y), 0, -sin(y), 0, 0, 1, 0, 0, sin(y), 0, cos(y), 0, 0, 0, 0, 1};
    const Matrix rz = {cos(z), sin(z), 0, 0, -sin(z), cos(z), 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    const Matrix scale = {s, 0, 0, 0, 0, s, 0, 0, 0, 0, s, 0, 0, 0, 0, 1};
    return Product(Product(Product(Product(move, rx), ry), rz), scale);
}

void ExpectMatrix(const Mat4& actual, const Matrix& expected) {
    for (int i = 0; i < 16; ++i) {
        const double value = expected[static_cast<std::size_t>(i)];
        // Angles below 800 degrees lose 1e-6 radians to single precision.
        EXPECT_NEAR(static_cast<double>(actual[i]), value, 3e-6 * (1 + std::fabs(value))) << i;
    }
}

void Fill(Mat4& matrix, float first) {
    for (int i = 0; i < 16; ++i) matrix[i] = first + static_cast<float>(i % 5);
}

class CombineGeometryTest : public GeometryTest {
  protected:
    GeometryNode_CombineGeometry& node = add<GeometryNode_CombineGeometry>("all");
    GeometrySource& first = add<GeometrySource>("first");
    GeometrySource& second = add<GeometrySource>("second");
};

TEST_F(CombineGeometryTest, DeclaresItsParameters) {
    EXPECT_THAT(
        ParameterTable(engine, node),
        ElementsAre("Translate.X float -20 to 20, 2 decimals, 0, animatable",
                    "Translate.Y float -20 to 20, 2 decimals, 0, animatable",
                    "Translate.Z float -20 to 20, 2 decimals, 0, animatable",
                    "Rotate.X float 0 to 360, 2 decimals, 0, animatable",
                    "Rotate.Y float 0 to 360, 2 decimals, 0, animatable",
                    "Rotate.Z float 0 to 360, 2 decimals, 0, animatable",
                    "Scale float 0 to 10, 2 decimals, 1, animatable", "mrx text '1'",
                    "mry text '1'", "mrz text '1'", "rx text '0'", "ry text '0'", "rz text '0'",
                    "tx text '0'", "ty text '0'", "tz text '0'", "tsc text '1'"));
}

TEST_F(CombineGeometryTest, HasSixPortsForGeometry) {
    EXPECT_EQ(node.inputCount, 6);
    EXPECT_THAT(node.inputNames, Each(std::string("Geo")));
    EXPECT_TRUE(node.canConnect(0, &first));
    EXPECT_TRUE(node.canConnect(5, &first));
    EXPECT_FALSE(node.canConnect(0, nullptr));
    EXPECT_FALSE(node.canConnect(0, &add<MaterialNode>("m")));
    EXPECT_FALSE(node.canConnect(0, &add<ImageSource>("i")));
}

TEST_F(CombineGeometryTest, WithoutInputsItIsEmptyAndHasItsTransform) {
    node.translate = {1, 2, 3};
    node.rotate = {30, 200, 90};
    node.scale = 1.5f;
    EXPECT_TRUE(run(node));
    EXPECT_THAT(node.objects, IsEmpty());
    EXPECT_EQ(node.material, nullptr);
    EXPECT_FALSE(node.hasError);
    ExpectMatrix(node.transform, Composed({1, 2, 3}, {30, 200, 90}, 1.5));
}

TEST_F(CombineGeometryTest, GathersObjectsInTheOrderOfPortsAndObjects) {
    first.append("a", 11);
    first.append("b", 12);
    second.append("c", 13);
    link(second, node, 1);
    link(first, node, 4);
    run(node);
    EXPECT_THAT(NamesOf(node), ElementsAre("c", "a", "b"));
    EXPECT_EQ(node.objects[1].vertexArray, 11u);
    EXPECT_THAT(NamesOf(first), ElementsAre("a", "b"));
    run(node);
    EXPECT_EQ(node.objects.size(), 3u) << "the list is made anew";
}

TEST_F(CombineGeometryTest, OneNodeOnTwoPortsGivesItsObjectsTwice) {
    first.append("a");
    link(first, node, 0);
    link(first, node, 1);
    run(node);
    EXPECT_THAT(NamesOf(node), ElementsAre("a", "a"));
    EXPECT_EQ(first.processed, 1);
}

TEST_F(CombineGeometryTest, PutsTheInputsTransformToTheLeftOfTheObjects) {
    GeometryObject& object = first.append("a");
    Fill(object.transform, 2);
    Fill(first.transform, -3);
    Matrix left{}, right{};
    for (int i = 0; i < 16; ++i) {
        left[static_cast<std::size_t>(i)] = static_cast<double>(first.transform[i]);
        right[static_cast<std::size_t>(i)] = static_cast<double>(object.transform[i]);
    }
    link(first, node, 0);
    run(node);
    const Matrix expected = Product(left, right);
    for (int i = 0; i < 16; ++i) {
        // Small whole numbers: exact.
        EXPECT_EQ(static_cast<double>(node.objects[0].transform[i]),
                  expected[static_cast<std::size_t>(i)]);
    }
    EXPECT_EQ(node.transform[0], 1.0f) << "the node's own transform is not in the objects";
}

TEST_F(CombineGeometryTest, ObjectsKeepTheirMaterialOrTakeTheirInputs) {
    const auto own = std::make_shared<MaterialData>();
    first.material = std::make_shared<MaterialData>();
    second.material = std::make_shared<MaterialData>();
    first.append("a").material = own;
    first.append("b");
    second.append("c");
    add<GeometrySource>("bare").append("d");
    link(*engine.findNode("bare"), node, 0);
    link(first, node, 1);
    link(second, node, 2);
    run(node);
    EXPECT_EQ(node.objects[0].material, nullptr);
    EXPECT_EQ(node.objects[1].material, own);
    EXPECT_EQ(node.objects[2].material, first.material);
    EXPECT_EQ(node.objects[3].material, second.material);
    EXPECT_EQ(node.material, first.material) << "the first that there is";
    EXPECT_EQ(first.objects[1].material, nullptr) << "the source is not changed";
}

TEST_F(CombineGeometryTest, AnInputWithoutObjectsStillGivesItsMaterial) {
    first.material = std::make_shared<MaterialData>();
    link(first, node, 3);
    run(node);
    EXPECT_EQ(node.material, first.material);
    EXPECT_TRUE(engine.disconnect("all", 3));
    run(node);
    EXPECT_EQ(node.material, nullptr);
}

TEST_F(CombineGeometryTest, TextRescalesAndOffsetsTheTransform) {
    node.translate = {1.25f, -2.5f, 3.75f};
    node.rotate = {10, 20, 30};
    node.scale = 0.5f;
    node.translateFactor = "-2.5";
    node.translateOffset = {"0.125", "7", "-1e1"};
    node.rotateFactor = {"2", "-3", "0.5"};
    node.rotateOffset = {"5", "-15.5", "180"};
    run(node);
    ExpectMatrix(node.transform, Composed({1.25 * -2.5 + 0.125, 2.5 * 2.5 + 7, 3.75 * -2.5 - 10},
                                          {25, -75.5, 195}, 0.5));
}

TEST_F(CombineGeometryTest, RotationsAreRoundedOnceFromDoublePrecision) {
    // In single precision 3e7 + 1 is 3e7, and the difference would be 0 degrees.
    node.rotate = {1, 0, 0};
    node.rotateFactor[0] = "30000001";
    node.rotateOffset[0] = "-30000000";
    node.translate = {1, 0, 0};
    node.translateFactor = "1";
    run(node);
    const float angle = 1.0f * 0.017453292f;
    EXPECT_EQ(node.transform[5], std::cos(angle));
    EXPECT_EQ(node.transform[6], std::sin(angle));
}

TEST_F(CombineGeometryTest, TextThatIsNoNumberIsZero) {
    node.rotate = {90, 0, 0};
    node.rotateFactor[0] = "abc";
    node.translate = {5, 5, 5};
    node.translateFactor = "";
    node.translateOffset[1] = "3 metres";
    run(node);
    ExpectMatrix(node.transform, Composed({0, 3, 0}, {0, 0, 0}, 1));
}

TEST_F(CombineGeometryTest, TextCanChangeFromFrameToFrame) {
    node.translate = {1, 0, 0};
    run(node);
    EXPECT_EQ(node.transform[12], 1.0f);
    node.translateFactor = "4";
    run(node);
    EXPECT_EQ(node.transform[12], 4.0f);
}

TEST_F(CombineGeometryTest, LeavesItsProductAsItIsWhileRenderingIsOff) {
    first.append("a");
    link(first, node, 0);
    run(node);
    first.append("b");
    node.scale = 3;
    engine.refreshNodes();
    EXPECT_THAT(NamesOf(node), ElementsAre("a"));
    EXPECT_EQ(node.transform[0], 1.0f);
    run(node);
    EXPECT_THAT(NamesOf(node), ElementsAre("a", "b"));
    EXPECT_EQ(node.transform[0], 3.0f);
}

TEST_F(CombineGeometryTest, NodesThatFeedEachOtherDoNotMultiply) {
    auto& other = add<GeometryNode_CombineGeometry>("other");
    first.append("a");
    second.append("b");
    link(first, node, 0);
    link(second, other, 0);
    for (int port = 1; port < 4; ++port) {
        link(other, node, port);
        link(node, other, port);
    }
    link(node, node, 5);
    for (int frame = 0; frame < 20; ++frame) run(node, static_cast<float>(frame));
    EXPECT_THAT(NamesOf(node), ElementsAre("a", "b", "b", "b"));
    EXPECT_THAT(NamesOf(other), ElementsAre("b"));
    node.process();
    EXPECT_EQ(node.objects.size(), 4u) << "also when its work is called for alone";
}

TEST_F(CombineGeometryTest, ALongChainOfDoubledLinksStaysBounded) {
    first.append("a");
    const Node* last = &first;
    for (int i = 0; i < 24; ++i) {
        auto& next = add<GeometryNode_CombineGeometry>("chain" + std::to_string(i));
        link(*last, next, 0);
        link(*last, next, 1);
        last = &next;
    }
    run(*engine.findNode("chain23"));
    EXPECT_EQ(static_cast<const GeometryNode*>(last)->objects.size(),
              GeometryNode_CombineGeometry::kMaxObjects);
}

}  // namespace
