#include <gmock/gmock.h>

#include <array>
#include <cmath>

#include "image/image_node_reader.h"
#include "image/image_node_transform2d.h"
#include "platform/debug_output.h"
#include "support/graph_fixture.h"
#include "support/picture_files.h"
#include "support/temp_folder.h"

namespace {

using testing::ElementsAre;

using Matrix = std::array<double, 16>;

Matrix Product(const Matrix& left, const Matrix& right) {
    Matrix result{};
    for (std::size_t column = 0; column < 4; ++column) {
        for (std::size_t row = 0; row < 4; ++row) {
            for (std::size_t k = 0; k < 4; ++k) {
                result[column * 4 + row] += left[k * 4 + row] * right[column * 4 + k];
            }
        }
    }
    return result;
}

Matrix Scaled(double x, double y) {
    return {x, 0, 0, 0, 0, y, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
}

Matrix Moved(double x, double y) {
    return {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, x, y, 0, 1};
}

Matrix Widened(const Mat4& matrix) {
    Matrix result{};
    for (int i = 0; i < 16; ++i) {
        result[static_cast<std::size_t>(i)] = static_cast<double>(matrix[i]);
    }
    return result;
}

class Transform2DTest : public GraphTest {
  protected:
    struct Step {
        double x, y, scale;
    };

    ImageNode_Transform2D& addStep(const std::string& id, const ImageNode& source,
                                   const Step& step) {
        auto& node = add<ImageNode_Transform2D>(id);
        link(source, node, 0);
        setStep(node, step);
        return node;
    }
    void setStep(const Node& node, const Step& step) {
        set(node, "Position", {static_cast<float>(step.x), static_cast<float>(step.y)});
        set(node, "Scale", {static_cast<float>(step.scale)});
    }
    static Matrix matrixOf(const Step& step) {
        const auto moved = Moved(0.5 - static_cast<double>(static_cast<float>(step.x)),
                                 0.5 - static_cast<double>(static_cast<float>(step.y)));
        const auto scale = static_cast<double>(static_cast<float>(step.scale));
        return Product(Scaled(scale, scale), moved);
    }

    // Every product and sum of a chain rounds once to 24 bits.
    static void expectMatrix(const Mat4& actual, const Matrix& expected) {
        for (int i = 0; i < 16; ++i) {
            const double value = expected[static_cast<std::size_t>(i)];
            EXPECT_NEAR(static_cast<double>(actual[i]), value, 1e-6 * (1 + std::fabs(value)))
                << "element " << i;
        }
    }

    PictureNode& addPicture(const Matrix& matrix) {
        auto& node = add<PictureNode>("picture", ReferencePicture::Waves(8, 4, 1).upload());
        for (int i = 0; i < 16; ++i) {
            node.textureMatrix[i] = static_cast<float>(matrix[static_cast<std::size_t>(i)]);
        }
        return node;
    }
};

}  // namespace

TEST_F(Transform2DTest, DeclaresItsInputAndParameters) {
    auto& node = add<ImageNode_Transform2D>("node");
    EXPECT_THAT(node.inputNames, ElementsAre("Image"));
    const auto values = engine.valuesOf(&node);
    ASSERT_EQ(values.size(), 2u);
    EXPECT_EQ(values[0]->name, "Position");
    const auto& scale = dynamic_cast<const ValueFloat&>(*values[1]);
    EXPECT_EQ(scale.name, "Scale");
    EXPECT_EQ(scale.min, 0.0001f);
    EXPECT_EQ(scale.max, 10.0f);
    EXPECT_EQ(scale.decimals, 4);
    EXPECT_THAT(node.position, ElementsAre(0.5f, 0.5f));
    EXPECT_EQ(node.scale, 1.0f);
    EXPECT_TRUE(node.canConnect(3, &node));
    EXPECT_FALSE(node.canConnect(0, nullptr));
}

TEST_F(Transform2DTest, ReproducesItsInputsMatrixByDefault) {
    PictureNode& picture = addPicture(Product(Scaled(0.3, 0.7), Moved(0.21, -0.4)));
    auto& node = addStep("node", picture, {0.5, 0.5, 1});
    node.pull();
    EXPECT_EQ(Widened(node.textureMatrix), Widened(picture.textureMatrix));
    EXPECT_EQ(node.images, picture.images);
}

TEST_F(Transform2DTest, TranslatesThenScalesThenUsesTheInputsMatrix) {
    const Matrix input = Product(Scaled(0.5, 2), Moved(0.25, -0.125));
    auto& node = addStep("node", addPicture(input), {0.2, 0.9, 1.7});
    node.pull();
    expectMatrix(node.textureMatrix, Product(input, matrixOf({0.2, 0.9, 1.7})));
}

TEST_F(Transform2DTest, ChainsOfTwoAndThreeMultiplyInTheirOrder) {
    const Matrix input = Product(Scaled(1.25, 0.5), Moved(-0.3, 0.1));
    const Step steps[3] = {{0.1, 0.7, 0.6}, {0.9, 0.4, 2.3}, {0.55, -1.5, 0.01}};
    auto& first = addStep("first", addPicture(input), steps[0]);
    auto& second = addStep("second", first, steps[1]);
    auto& third = addStep("third", second, steps[2]);
    third.pull();
    const Matrix two = Product(Product(input, matrixOf(steps[0])), matrixOf(steps[1]));
    expectMatrix(second.textureMatrix, two);
    expectMatrix(third.textureMatrix, Product(two, matrixOf(steps[2])));
}

TEST_F(Transform2DTest, PassesAllPicturesOnAndRunsWithTheGpuOff) {
    PictureNode& picture = addPicture(Scaled(1, 1));
    for (std::size_t i = 1; i < 4; ++i) {
        picture.images[i] = ReferencePicture::Waves(4, 4, static_cast<int>(i)).upload();
    }
    auto& node = addStep("node", picture, {0.5, 0.5, 2});
    engine.renderEnabled = 0;
    node.pull();
    EXPECT_EQ(node.images, picture.images);
    EXPECT_EQ(node.textureMatrix[0], 2.0f);
}

TEST_F(Transform2DTest, KeepsTheLastPictureAfterTheLinkIsCut) {
    PictureNode& picture = addPicture(Product(Scaled(0.5, 0.5), Moved(1, 1)));
    auto& node = addStep("node", picture, {0.25, 0.5, 3});
    node.pull();
    const auto shown = node.images[0];
    EXPECT_TRUE(engine.disconnect("node", 0));
    node.pull();
    EXPECT_EQ(node.images[0], shown);
    expectMatrix(node.textureMatrix, matrixOf({0.25, 0.5, 3}));
}

TEST_F(Transform2DTest, KeepsThePictureOfAReaderThatIsGone) {
    const TempFolder folder;
    const std::vector<std::uint8_t> pixels(4 * 2 * 3, 200);
    const FileContent png = MakePng(4, 2, {}, pixels);
    folder.write("a.png", std::string(png.begin(), png.end()));
    const DebugCapture silent;
    auto& reader = add<ImageNode_Reader>("reader");
    reader.filename = folder.file("a.png");
    auto& node = addStep("node", reader, {0.5, 0.5, 1});
    node.pull();
    ASSERT_NE(node.images[0], nullptr);
    EXPECT_TRUE(engine.deleteNode("reader"));
    node.pull();
    ASSERT_NE(node.images[0], nullptr);

    std::vector<std::uint8_t> back(4 * 2 * 3);
    node.images[0]->BindTexture(0, GL_TEXTURE0);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGB, GL_UNSIGNED_BYTE, back.data());
    node.images[0]->UnbindTextures(GL_TEXTURE0);
    EXPECT_EQ(back, pixels);
}
