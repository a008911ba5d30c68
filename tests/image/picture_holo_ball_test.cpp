// The hologram's fields, slice by slice, and its picture, ray by ray, in double precision.
#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>

#include "core/random.h"
#include "core/transform3d_node.h"
#include "gpu/shader_program.h"
#include "image/image_node_holo_ball.h"
#include "platform/debug_output.h"
#include "support/broken_shaders.h"
#include "support/gl_state.h"
#include "support/graph_fixture.h"
#include "support/parameter_table.h"

namespace {

using testing::ElementsAre;

class CameraNode : public Transform3DNode {
  public:
    using Transform3DNode::Transform3DNode;
    bool canConnect(int, const Node*) const override { return false; }
    bool process() override { return true; }
};

using Point = std::array<double, 3>;

// A number and how far a renderer may be off.
struct Value {
    double value = 0, error = 0;
    bool decided = true;
};

class HoloBallTest : public GraphTest {
  protected:
    HoloBallTest() { glClearColor(0, 0, 0, 0); }

    static double fieldAt(const HoloFrame& frame, const Point& at) {
        double sum = 0;
        for (const HoloFrame::Ball& ball : frame.balls) {
            const double dx = static_cast<double>(ball.x) - at[0],
                         dy = static_cast<double>(ball.y) - at[1],
                         dz = static_cast<double>(ball.z) - at[2];
            const double distance = std::sqrt(dx * dx + dy * dy + dz * dz);
            sum += static_cast<double>(ball.w) / std::max(0.001, distance);
        }
        return sum;
    }

    static double lightAt(const HoloFrame& frame, double height, double u, double v) {
        const Point at = {(u * 2 - 1) * 60, height, (v * 2 - 1) * 60};
        return fieldAt(frame, at) * std::max(0.0, 1 - 2 * std::hypot(u - 0.5, v - 0.5));
    }

    void expectSlices(const HoloFrame& frame, const char* name) {
        node.setBalls(frame);
        for (const float z : {-10.0f, -3.5f, 0.0f, 1.5f, 7.0f}) {
            node.fillSlice(z, {});
            const std::vector<float> pixels = ReadTarget(node.sliceTarget());
            const int size = node.sliceTarget().width;
            int wrong = 0, undecided = 0, above = 0;
            for (int y = 0; y < size; y += 5) {
                for (int x = 0; x < size; x += 5) {
                    const double field =
                        fieldAt(frame, {((x + 0.5) / size * 2 - 1) * 20,
                                        ((y + 0.5) / size * 2 - 1) * 20, static_cast<double>(z)});
                    const float expected = field > 1 ? 1 : 0;
                    above += field > 1;
                    const float* pixel = &pixels[static_cast<std::size_t>(y * size + x) * 4];
                    if (std::fabs(field - 1) < 1e-5) {
                        ++undecided;  // single precision
                    } else {
                        wrong += std::count(pixel, pixel + 4, expected) != 4;
                    }
                }
            }
            EXPECT_EQ(wrong, 0) << name << " at " << z;
            EXPECT_LE(undecided, 5);
            EXPECT_TRUE(above > 0 || z != 0.0f) << name;
        }
    }

    // The picture as the formulas have it, for single pixels.
    class Rays {
      public:
        Rays(const ImageNode_HoloBall& holo, const Mat4& view) : node_(holo) {
            frame_ = holo.currentFrame();
            Mat4 back;
            EXPECT_TRUE(Mat4Invert(view, back));
            for (std::size_t i = 0; i < 16; ++i) {
                back_[i] = static_cast<double>(back[static_cast<int>(i)]);
            }
        }

        std::array<Value, 4> pixel(int x, int y) const {
            const double nx = (x + 0.5) / kFrameWidth * 2 - 1,
                         ny = (y + 0.5) / kFrameHeight * 2 - 1;
            const double tangent = std::tan(0.5235988);
            const Point toward = {nx * tangent * 1.777, ny * tangent, -1};
            Point direction{}, eye{};
            for (std::size_t r = 0; r < 3; ++r) {
                eye[r] = back_[12 + r];
                for (std::size_t c = 0; c < 3; ++c) direction[r] += back_[c * 4 + r] * toward[c];
            }
            std::array<Value, 4> result{};
            for (const double height : {5.0, -5.0}) addWall(result, eye, direction, height);
            for (double z = -10; z <= 10; z += 0.5) addSlice(result, eye, direction, z);
            return result;
        }

      private:
        // Where the ray meets the plane on which an axis has a value; false when that is not in
        // view.
        static bool meet(const Point& eye, const Point& direction, std::size_t axis, double value,
                         Point& at) {
            const double t = (value - eye[axis]) / direction[axis];
            if (!(t > 0.5 && t < 100)) return false;
            for (std::size_t i = 0; i < 3; ++i) at[i] = eye[i] + t * direction[i];
            return true;
        }

        // src + dst * (1 - src), in half floats.
        static void blend(std::array<Value, 4>& result, const std::array<Value, 4>& source) {
            for (std::size_t c = 0; c < 4; ++c) {
                Value& to = result[c];
                const Value& from = source[c];
                to.error =
                    to.error * std::fabs(1 - from.value) + from.error * (1 + std::fabs(to.value));
                to.value = from.value + to.value * (1 - from.value);
                to.decided = to.decided && from.decided;
                if (from.value != 0) to.error += std::fabs(to.value) / 1024;
            }
        }

        void addWall(std::array<Value, 4>& result, const Point& eye, const Point& direction,
                     double height) const {
            Point at{};
            if (!meet(eye, direction, 1, height, at)) return;
            const double u = (at[0] / 15 + 1) / 2, v = (1 - at[2] / 15) / 2;
            if (u < 0 || u > 1 || v < 0 || v > 1) return;
            // Bilinear between texels, which are half floats; the field bends little between them.
            const double light = lightAt(frame_, height, u, v);
            std::array<Value, 4> source{};
            for (std::size_t c = 0; c < 4; ++c) {
                source[c].value = light * static_cast<double>(node_.color[c]);
                source[c].error = std::fabs(source[c].value) * 0.004 + 0.004;
            }
            blend(result, source);
        }

        void addSlice(std::array<Value, 4>& result, const Point& eye, const Point& direction,
                      double z) const {
            Point at{};
            if (!meet(eye, direction, 2, z * 0.2, at)) return;
            const double half = 5 * static_cast<double>(node_.scale);
            const double u = (at[0] / half + 1) / 2, v = (1 - at[1] / half) / 2;
            if (u < 0 || u > 1 || v < 0 || v > 1) return;
            const Value outline = outlineAt(u, v, z);
            std::array<Value, 4> source{};
            for (std::size_t c = 0; c < 4; ++c) {
                const double colour = c < 3 ? static_cast<double>(node_.color[c]) : 1;
                source[c] = {outline.value * colour, outline.error * colour, outline.decided};
            }
            blend(result, source);
        }

        Value outlineAt(double u, double v, double z) const {
            const double pixel = node_.resize > 0.5f ? 0.00195312 : 0.000976562;
            const double factor = z < 0 ? 1 - z / 5 : z / 20 + 1;
            const double step = factor * static_cast<double>(node_.edge) * pixel;
            static constexpr int kSobelX[3][3] = {{1, 2, 1}, {0, 0, 0}, {-1, -2, -1}};
            static constexpr int kSobelY[3][3] = {{1, 0, -1}, {2, 0, -2}, {1, 0, -1}};
            Value x, y;
            bool decided = true;
            for (int i = -1; i <= 1; ++i) {
                for (int j = -1; j <= 1; ++j) {
                    const Value tap = intensityAt(u + i * step, v + j * step, z);
                    decided = decided && tap.decided;
                    x.value += kSobelX[i + 1][j + 1] * tap.value;
                    y.value += kSobelY[i + 1][j + 1] * tap.value;
                    x.error += std::abs(kSobelX[i + 1][j + 1]) * tap.error;
                    y.error += std::abs(kSobelY[i + 1][j + 1]) * tap.error;
                }
            }
            const auto brightness = static_cast<double>(node_.brightness);
            return {std::hypot(x.value, y.value) * brightness, (x.error + y.error) * brightness,
                    decided};
        }

        Value intensityAt(double u, double v, double z) const {
            const int size = node_.sliceTarget().width;
            const double x = u * size - 0.5, y = v * size - 0.5;
            const double left = std::floor(x), low = std::floor(y);
            Value sum;
            double least = 1, most = 0;
            for (int i = 0; i < 2; ++i) {
                for (int j = 0; j < 2; ++j) {
                    const Value texel = texelAt(left + i, low + j, z);
                    const double weight =
                        (i == 0 ? 1 - (x - left) : x - left) * (j == 0 ? 1 - (y - low) : y - low);
                    sum.value += texel.value * weight;
                    sum.decided = sum.decided && texel.decided;
                    least = std::min(least, texel.value);
                    most = std::max(most, texel.value);
                }
            }
            // 8 bits of the place between two texels, and what single precision leaves of it.
            const double error = (most - least) * (1.0 / 256 + 1e-3);
            return {sum.value * std::sqrt(3.0), error * std::sqrt(3.0), sum.decided};
        }

        Value texelAt(double x, double y, double z) const {
            const int size = node_.sliceTarget().width;
            if (x < 0 || y < 0 || x >= size || y >= size) return {};
            const double field = fieldAt(
                frame_, {((x + 0.5) / size * 2 - 1) * 20, ((y + 0.5) / size * 2 - 1) * 20, z});
            return {field > 1 ? 1.0 : 0.0, 0, std::fabs(field - 1) > 3e-6};
        }

        const ImageNode_HoloBall& node_;
        HoloFrame frame_;
        std::array<double, 16> back_{};
    };

    void expectPicture(const Mat4& view) {
        node.updated = false;
        node.pull();
        const std::vector<float> pixels = ReadTarget(product());
        const Rays rays(node, view);
        int wrong = 0, undecided = 0, drawn = 0;
        for (int y = 5; y < kFrameHeight; y += 23) {
            for (int x = 3; x < kFrameWidth; x += 29) {
                const auto expected = rays.pixel(x, y);
                const float* pixel = &pixels[static_cast<std::size_t>(y * kFrameWidth + x) * 4];
                drawn += expected[3].value > 0.02;
                for (std::size_t c = 0; c < 4; ++c) {
                    undecided += !expected[c].decided;
                    if (!expected[c].decided) continue;
                    const double off = static_cast<double>(pixel[c]) - expected[c].value;
                    const bool bad = !(std::fabs(off) <= expected[c].error + 1e-4);
                    if (bad && ++wrong < 4) {
                        ADD_FAILURE()
                            << x << ", " << y << " channel " << c << " is " << pixel[c] << " for "
                            << expected[c].value << " within " << expected[c].error;
                    }
                }
            }
        }
        EXPECT_EQ(wrong, 0);
        EXPECT_LT(undecided, 400);
        EXPECT_GT(drawn, 300);
    }

    const GL_FrameBuffer& product() const {
        return static_cast<const GL_FrameBuffer&>(*node.images[0]);
    }
    static Mat4 ownView() {
        Mat4 view;
        Mat4LookAt(view, {0, 0, 1.5f}, {0, 0, -1}, {0, 1, 0});
        return view;
    }

    CameraNode& camera = add<CameraNode>("camera");
    ImageNode_HoloBall& node = add<ImageNode_HoloBall>("holo");
};

}  // namespace

TEST_F(HoloBallTest, HasAnErrorWithoutOneOfItsPrograms) {
    // Of the slices' field, the walls' field, the slices' lines and the walls.
    for (const char* text : {"uniform float threshold", "uniform vec4 lballs",
                             "uniform float edgeStep", "uniform vec4 color"}) {
        SCOPED_TRACE(text);
        const DebugCapture quiet;
        const BrokenShaders broken(text,
                                   text == std::string("uniform vec4 color") ? "edgeStep" : "");
        EXPECT_TRUE(add<ImageNode_HoloBall>(text).hasError);
        EXPECT_EQ(broken.count(), 1);
    }
}

TEST_F(HoloBallTest, TakesATransformOnItsOnePort) {
    EXPECT_EQ(node.inputCount, 1);
    EXPECT_THAT(node.inputNames, ElementsAre("Camera"));
    EXPECT_TRUE(node.canConnect(0, &camera));
    EXPECT_FALSE(node.canConnect(1, &camera));
    EXPECT_FALSE(node.canConnect(0, &node));
    EXPECT_FALSE(node.canConnect(0, nullptr));
    EXPECT_FALSE(node.hasError);
}

TEST_F(HoloBallTest, HasItsParametersAndTargets) {
    std::vector<std::string> expected = {"Color vec4 1 1 1 1",
                                         "Edge float 0.1 to 20, 2 decimals, 1, animatable",
                                         "Brightness float 0 to 20, 2 decimals, 0.1, animatable",
                                         "Scale float 0 to 20, 2 decimals, 1, animatable",
                                         "UV Repeat float 0 to 100, 2 decimals, 1, animatable",
                                         "MetaballFX float 0 to 1, 2 decimals, 0, animatable",
                                         "resize float 0 to 1, 2 decimals, 0, animatable"};
    for (int i = 0; i < 10; ++i) {
        expected.push_back("Anim " + std::to_string(i) +
                           " float 0 to 1, 2 decimals, 0, animatable");
    }
    EXPECT_EQ(ParameterTable(engine, node), expected);
    EXPECT_EQ(node.sliceLarge->width, 1024);
    EXPECT_EQ(node.sliceSmall->height, 512);
    EXPECT_FALSE(product().hasBorder);  // repeated
    EXPECT_EQ(product().width, 1920);
    node.resize = 0.5f;
    EXPECT_EQ(&node.sliceTarget(), node.sliceLarge.get());
    node.resize = 0.51f;
    EXPECT_EQ(&node.sliceTarget(), node.sliceSmall.get());
}

TEST_F(HoloBallTest, HasNothingOutsideOfItsSlicesAndRepeatsItsPicture) {
    struct Case {
        const GL_FrameBuffer& target;
        int width, height, wrap;
    };
    for (const Case& one : {Case{*node.sliceLarge, 1024, 1024, GL_CLAMP_TO_BORDER},
                            {*node.sliceSmall, 512, 512, GL_CLAMP_TO_BORDER},
                            {product(), 1920, 1080, GL_REPEAT}}) {
        SCOPED_TRACE(one.width);
        const GL_FrameBuffer& target = one.target;
        EXPECT_EQ(TextureLevelParameter(target, GL_TEXTURE_WIDTH), one.width);
        EXPECT_EQ(TextureLevelParameter(target, GL_TEXTURE_HEIGHT), one.height);
        EXPECT_EQ(TextureLevelParameter(target, GL_TEXTURE_INTERNAL_FORMAT), GL_RGBA16F);
        EXPECT_EQ(TextureParameter(target, GL_TEXTURE_WRAP_S), one.wrap);
        EXPECT_EQ(TextureParameter(target, GL_TEXTURE_WRAP_T), one.wrap);
        EXPECT_EQ(TextureParameter(target, GL_TEXTURE_MIN_FILTER), GL_LINEAR);
        EXPECT_EQ(TextureParameter(target, GL_TEXTURE_MAG_FILTER), GL_LINEAR);
        EXPECT_EQ(target.textureCount, 1);
        EXPECT_FALSE(target.hasDepth);
    }
}

TEST_F(HoloBallTest, IsTheRestingShapeWithoutWeights) {
    const HoloFrame frame = node.currentFrame();
    for (const HoloFrame::Ball& ball : frame.balls) {
        EXPECT_EQ(ball.x, 0);
        EXPECT_EQ(ball.w, 0.05f);
    }
}

TEST_F(HoloBallTest, ShowsTheLastPresetAtFullWeightWhateverTheEarlierOnesHold) {
    for (std::size_t k = 0; k < 10; ++k) {
        node.anim[k] = 1;
        const HoloFrame frame = node.currentFrame();
        EXPECT_EQ(std::memcmp(&frame, &node.frames[k + 1], sizeof frame), 0) << k;
    }
    std::fill(std::begin(node.anim), std::end(node.anim), 0.0f);
    node.anim[3] = 1;
    node.anim[0] = 0.3f;
    const HoloFrame frame = node.currentFrame();
    EXPECT_EQ(std::memcmp(&frame, &node.frames[4], sizeof frame), 0);
}

TEST_F(HoloBallTest, GoesIntoTheFreeOrbitLast) {
    node.anim[5] = 1;
    node.metaballFX = 1;
    engine.time = 12;
    const HoloFrame frame = node.currentFrame(), again = node.currentFrame();
    const HoloFrame orbit = HoloOrbit(12, 1);
    EXPECT_EQ(std::memcmp(&frame, &orbit, sizeof frame), 0);
    EXPECT_EQ(std::memcmp(&frame, &again, sizeof frame), 0);
    node.metaballFX = 0.5f;
    HoloFrame half;
    Morph(half, node.frames[6], HoloOrbit(12, 0.5f), 0.5f);
    const HoloFrame between = node.currentFrame();
    EXPECT_EQ(std::memcmp(&between, &half, sizeof half), 0);
}

TEST_F(HoloBallTest, SlicesEveryShape) {
    set(node, "resize", {1});
    for (std::size_t i = 0; i < node.frames.size(); ++i) {
        expectSlices(node.frames[i], ("shape " + std::to_string(i)).c_str());
    }
    expectSlices(HoloOrbit(4, 0), "orbit");
    set(node, "resize", {0});
    HoloFrame between;
    Morph(between, node.frames[4], node.frames[7], 0.45f);
    expectSlices(between, "between");
}

TEST_F(HoloBallTest, LightsItsWalls) {
    for (const HoloFrame& frame : {node.frames[3], node.frames[9], HoloOrbit(2, 1)}) {
        node.setBalls(frame);
        for (const double height : {5.0, -5.0}) {
            node.fillLight({0, static_cast<float>(height), 0});
            const std::vector<float> pixels = ReadTarget(node.sliceTarget());
            int wrong = 0;
            for (int y = 0; y < 1024; y += 7) {
                for (int x = 0; x < 1024; x += 7) {
                    const double expected =
                        lightAt(frame, height, (x + 0.5) / 1024, (y + 0.5) / 1024);
                    // A half float of 11 bits, cut or rounded; single precision inside.
                    const double off =
                        static_cast<double>(pixels[static_cast<std::size_t>(y * 1024 + x) * 4]) -
                        expected;
                    wrong += !(std::fabs(off) <= expected / 900 + 1e-5);
                }
            }
            EXPECT_EQ(wrong, 0);
        }
    }
}

TEST_F(HoloBallTest, LaysOutlinesInSpaceInItsOwnView) {
    node.anim[0] = 1;
    expectPicture(ownView());
}

TEST_F(HoloBallTest, IsSeenByTheCameraThatIsConnected) {
    link(camera, node, 0);
    Mat4LookAt(camera.matrix, {2.5f, 3, 7}, {0.2f, 0, 0}, {0, 1, 0});
    engine.time = 5;
    node.metaballFX = 1;
    set(node, "Color", {0.5f, 0.9f, 1, 0.75f});
    set(node, "Brightness", {0.06f});
    set(node, "Edge", {1.75f});
    set(node, "Scale", {1.25f});
    expectPicture(camera.matrix);
    set(node, "resize", {1});
    node.metaballFX = 0;
    node.anim[7] = 1;
    expectPicture(camera.matrix);
}

// Leaving out what cannot be seen moves no pixel: places between texels are rounded a little
// differently, that is all.
TEST_F(HoloBallTest, LeavesOutOnlyWhatIsNotSeen) {
    link(camera, node, 0);
    Mat4LookAt(camera.matrix, {1, 0.5f, 2}, {0.2f, 0, 0}, {0, 1, 0});
    set(node, "resize", {1});
    set(node, "Brightness", {0.05f});
    set(node, "Edge", {3});
    engine.time = 9;
    node.metaballFX = 0.7f;
    node.pull();
    const std::vector<float> bounded = ReadTarget(product());
    node.skipUnseen = false;
    node.updated = false;
    node.pull();
    const std::vector<float> whole = ReadTarget(product());
    int wrong = 0;
    for (std::size_t i = 0; i < whole.size(); ++i)
        wrong += std::fabs(whole[i] - bounded[i]) > 0.01f;
    EXPECT_EQ(wrong, 0);
    EXPECT_GT(std::count_if(whole.begin(), whole.end(), [](float v) { return v > 0.1f; }), 10000);
}

TEST_F(HoloBallTest, RepeatsThroughItsTextureMatrix) {
    set(node, "UV Repeat", {3});
    node.pull();
    EXPECT_EQ(node.textureMatrix[0], 3);
    EXPECT_EQ(node.textureMatrix[5], 3);
    EXPECT_EQ(node.textureMatrix[10], 1);
    EXPECT_EQ(node.textureMatrix[12], 0);
}

TEST_F(HoloBallTest, StartsFromTheClearColourThatStands) {
    link(camera, node, 0);
    Mat4LookAt(camera.matrix, {0, 0, 300}, {0, 0, 301}, {0, 1, 0});  // nothing in view
    glClearColor(0.25f, 0.5f, 0, 1);
    node.pull();
    const RegionPixels pixels = read(product(), {600, 300, 1, 1});
    EXPECT_THAT(pixels.rgba, ElementsAre(0.25f, 0.5f, 0, 1));
}

TEST_F(HoloBallTest, ResetsTheRandomNumbersInEveryFrame) {
    Random::seed(1234);
    node.pull();
    const int next = Random::next();
    Random::seed(0);
    EXPECT_EQ(next, Random::next());
    EXPECT_EQ(glIsEnabled(GL_BLEND), GL_FALSE);
}

TEST_F(HoloBallTest, LeavesItsPictureWhileNothingIsRendered) {
    node.anim[0] = 1;
    node.pull();
    const std::vector<float> before = ReadTarget(product());
    node.anim[0] = 0;
    engine.renderEnabled = 0;
    EXPECT_TRUE(node.pull());
    EXPECT_EQ(ReadTarget(product()), before);
}

TEST_F(HoloBallTest, EndsForParametersThatAreNoNumbers) {
    link(camera, node, 0);
    Mat4LookAt(camera.matrix, {2.5f, 3, 30}, {0.2f, 0, 0}, {0, 1, 0});
    set(node, "resize", {1});
    for (const char* name : {"Edge", "Scale", "MetaballFX", "Anim 4", "Brightness"}) {
        set(node, name, {std::numeric_limits<float>::quiet_NaN()});
        EXPECT_TRUE(node.pull()) << name;
    }
}
