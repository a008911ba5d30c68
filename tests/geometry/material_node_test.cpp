#include "geometry/material_node.h"

#include <gmock/gmock.h>

#include "support/geometry_fixture.h"

namespace {

using ::testing::ElementsAre;

using MaterialNodeTest = GeometryTest;

TEST_F(MaterialNodeTest, DeclaresItsParameters) {
    EXPECT_THAT(ParameterTable(engine, add<MaterialNode>("m")),
                ElementsAre("Diffuse float 0 to 5, 2 decimals, 1, animatable",
                            "Illumination float 0 to 5, 2 decimals, 0, animatable",
                            "Illum Color vec4 1 1 1 1",
                            "Reflection float 0 to 5, 2 decimals, 0, animatable",
                            "Ref. Fresnel float 0.1 to 15, 2 decimals, 1, animatable",
                            "Blend choice 'Normal' 'Add', 0"));
}

TEST_F(MaterialNodeTest, TakesPicturesOnItsTwoPortsOnly) {
    auto& node = add<MaterialNode>("m");
    auto& image = add<ImageSource>("i");
    EXPECT_EQ(node.getType(), kMaterialNode);
    EXPECT_THAT(node.inputNames, ElementsAre("Diffuse", "Illumination"));
    EXPECT_TRUE(node.canConnect(0, &image));
    EXPECT_TRUE(node.canConnect(1, &image));
    EXPECT_FALSE(node.canConnect(2, &image));
    EXPECT_FALSE(node.canConnect(-1, &image));
    EXPECT_FALSE(node.canConnect(0, nullptr));
    EXPECT_FALSE(node.canConnect(0, &node));
}

TEST_F(MaterialNodeTest, HandsOnThePicturesOfItsInputs) {
    auto& node = add<MaterialNode>("m");
    auto& diffuse = add<ImageSource>("d");
    auto& illumination = add<ImageSource>("i");
    EXPECT_TRUE(run(node));
    EXPECT_EQ(node.data->diffuseImage, nullptr);
    link(diffuse, node, 0);
    link(illumination, node, 1);
    EXPECT_TRUE(run(node));
    EXPECT_EQ(node.data->diffuseImage, diffuse.images[0]);
    EXPECT_EQ(node.data->illuminationImage, illumination.images[0]);
}

TEST_F(MaterialNodeTest, ACutLinkLeavesItsPicture) {
    auto& node = add<MaterialNode>("m");
    auto& diffuse = add<ImageSource>("d");
    link(diffuse, node, 0);
    run(node);
    const auto image = diffuse.images[0];
    EXPECT_TRUE(engine.deleteNode("d"));
    EXPECT_TRUE(run(node));
    EXPECT_EQ(node.data->diffuseImage, image);
}

TEST_F(MaterialNodeTest, RunsWithTheGpuOff) {
    auto& node = add<MaterialNode>("m");
    auto& diffuse = add<ImageSource>("d");
    link(diffuse, node, 0);
    engine.refreshNodes();
    EXPECT_EQ(node.data->diffuseImage, diffuse.images[0]);
}

TEST_F(MaterialNodeTest, IsFoundOnAPort) {
    auto& node = add<MaterialNode>("m");
    auto& image = add<ImageSource>("i");
    auto& other = add<MaterialNode>("n");
    link(image, other, 0);
    EXPECT_EQ(MaterialInput(other, 0), nullptr) << "not a material";
    EXPECT_EQ(MaterialInput(other, 1), nullptr) << "empty";
    EXPECT_EQ(MaterialInput(other, 2), nullptr) << "no such port";
    EXPECT_TRUE(IsMaterialSource(&node));
    EXPECT_FALSE(IsMaterialSource(&image));
    EXPECT_FALSE(IsMaterialSource(nullptr));
}

}  // namespace
