// Node scripts at work: what reaches their shaders, and what they draw.
#include <GL/glew.h>
#include <gmock/gmock.h>

#include "core/engine.h"
#include "core/image_node_shader.h"
#include "gpu/gl_framebuffer.h"
#include "gpu/shader_program.h"
#include "platform/debug_output.h"
#include "support/gl_fixture.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Half floats store 10 bits behind the leading one, and a renderer may cut what is behind them
// instead of rounding it: an error of up to 2^-10 of the value.
constexpr float kHalfFloat = 1.0f / 1024;

// An image node that shows pictures of one colour each.
class ColourNode : public ImageNode {
  public:
    ColourNode(Engine* owner, const std::string& nodeId) : ImageNode(owner, nodeId) {}
    bool canConnect(int, const Node*) const override { return false; }
    bool process() override { return true; }

    // A picture of `attachments` textures, each of its own colour.
    static std::shared_ptr<GL_Image> picture(std::vector<std::array<float, 4>> colours) {
        auto target =
            std::make_shared<GL_FrameBuffer>(4, 4, static_cast<int>(colours.size()), 16, GL_RGBA,
                                             TargetDepth::None, TargetWrap::Border);
        target->Bind();
        target->SelectDrawBuffers();
        for (std::size_t i = 0; i < colours.size(); ++i) {
            glClearBufferfv(GL_COLOR, static_cast<GLint>(i), colours[i].data());
        }
        GL_FrameBuffer::Unbind();
        return target;
    }
};

class ShaderNodeTest : public GlTest {
  protected:
    static NodeScript script(const std::string& declarations, const std::string& body) {
        NodeScript result;
        parseScript("Name \"Test\", \"t\"\n" + declarations +
                        "\nSource\n#version 330 core\nin vec2 texcoord;\n"
                        "in vec2 texcoord_Input[8];\nout vec4 frag[1];\n" +
                        body,
                    "test.node", result);
        return result;
    }
    ImageNode_Shader& add(const std::string& id, const NodeScript& nodeScript) {
        engine_.addNode(id, std::make_unique<ImageNode_Shader>(&engine_, id, nodeScript));
        return dynamic_cast<ImageNode_Shader&>(*engine_.findNode(id));
    }
    ColourNode& addColour(const std::string& id, std::array<float, 4> colour) {
        engine_.addNode(id, std::make_unique<ColourNode>(&engine_, id));
        auto& node = dynamic_cast<ColourNode&>(*engine_.findNode(id));
        node.images[0] = ColourNode::picture({colour});
        return node;
    }
    // The colour at a place of the node's product, counted from its first row and column.
    static std::vector<float> pixel(const ImageNode& node, int x = 0, int y = 0) {
        const auto* target = dynamic_cast<const GL_FrameBuffer*>(node.images[0].get());
        if (target == nullptr) return {};
        std::vector<float> rgba(4);
        glBindFramebuffer(GL_READ_FRAMEBUFFER, target->framebuffer);
        glReadBuffer(GL_COLOR_ATTACHMENT0);
        glReadPixels(x, y, 1, 1, GL_RGBA, GL_FLOAT, rgba.data());
        glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
        return rgba;
    }
    static void expectPixel(const ImageNode& node, std::vector<float> wanted, int x = 0,
                            int y = 0) {
        const std::vector<float> got = pixel(node, x, y);
        ASSERT_EQ(got.size(), 4u);
        for (std::size_t i = 0; i < 4; ++i) {
            EXPECT_NEAR(got[i], wanted[i], std::abs(wanted[i]) * kHalfFloat)
                << "channel " << i << " at " << x << ", " << y;
        }
    }
    void runAt(Node& node, float time) {
        engine_.update(time);
        node.pull();
    }

    Engine engine_{{}, nullptr};
};

TEST_F(ShaderNodeTest, DeclaresAValueForEachParameter) {
    const NodeScript declared = script(
        "Param 1, \"F\", float, 0, 4, 1\nParam 2, \"E\", floatEvolution, 0, 4, 2\n"
        "Param 3, \"I\", int, 1, 9, 5\nParam 4, \"O\", option, 2, \"a\", \"b\", 1\n"
        "Param 5, \"D\", direction, 1, 2\nParam 6, \"P\", position, 3, 4\n"
        "Param 7, \"C\", color, 0.5, 0.25, 0.125, 1\nParam 8, \"U\", unknown\n",
        "void main() { frag[0] = vec4(0); }");
    ImageNode_Shader& node = add("S", declared);
    std::vector<std::string> names;
    for (const Value_Object* value : engine_.valuesOf(&node)) names.push_back(value->name);
    EXPECT_THAT(names, ElementsAre("F", "E", "I", "O", "D", "P", "C"));
    const auto& f = dynamic_cast<ValueFloat&>(*engine_.findValue(&node, "F"));
    EXPECT_EQ(f.data, &node.script.params[1].value);
    EXPECT_EQ(*f.data, 1.0f);
    EXPECT_EQ(f.decimals, 3);
    EXPECT_EQ(f.max, 4.0f);
    EXPECT_TRUE(f.animatable);
    EXPECT_FALSE(dynamic_cast<ValueFloat&>(*engine_.findValue(&node, "E")).animatable);
    const auto& i = dynamic_cast<ValueFloat&>(*engine_.findValue(&node, "I"));
    EXPECT_EQ(i.decimals, 0);
    EXPECT_EQ(i.min, 1.0f);
    EXPECT_EQ(*i.data, 5.0f);
    EXPECT_TRUE(i.animatable);
    const auto& o = dynamic_cast<ValueInt&>(*engine_.findValue(&node, "O"));
    EXPECT_THAT(o.options, ElementsAre("a", "b"));
    EXPECT_EQ(*o.data, 1);
    const auto& d = dynamic_cast<ValueVec2&>(*engine_.findValue(&node, "D"));
    EXPECT_TRUE(d.animatable);
    EXPECT_EQ(d.data[1], 2.0f);
    const auto& p = dynamic_cast<ValueVec2&>(*engine_.findValue(&node, "P"));
    EXPECT_FALSE(p.animatable);
    EXPECT_EQ(p.data[1], 4.0f);
    const auto& c = dynamic_cast<ValueVec4&>(*engine_.findValue(&node, "C"));
    EXPECT_EQ(c.data[2], 0.125f);
}

TEST_F(ShaderNodeTest, TakesItsPortsFromTheScript) {
    ImageNode_Shader& node =
        add("S", script("Input 0, \"Source\", \"rgba\"\nInput 2, \"Mask\", \"rgba\"",
                        "void main() { frag[0] = vec4(0); }"));
    EXPECT_EQ(node.inputCount, 3);
    EXPECT_THAT(node.inputNames, ElementsAre("Source", "", "Mask"));
    EXPECT_FALSE(node.hasError);
    EXPECT_TRUE(node.canConnect(2, &node));
    EXPECT_FALSE(node.canConnect(0, nullptr));
}

TEST_F(ShaderNodeTest, DrawsIntoAFullFrameOfHalfFloats) {
    ImageNode_Shader& node =
        add("S", script("", "void main() { frag[0] = vec4(-3, 70, 0.5, 2); }"));
    runAt(node, 0);
    const auto& target = dynamic_cast<const GL_FrameBuffer&>(*node.images[0]);
    EXPECT_EQ(target.width, 1920);
    EXPECT_EQ(target.height, 1080);
    EXPECT_EQ(target.textureCount, 1);
    EXPECT_EQ(target.bitsPerChannel, 16u);
    EXPECT_FALSE(target.hasDepth);
    for (const auto& [x, y] : {std::pair{0, 0}, {1919, 0}, {0, 1079}, {1919, 1079}, {960, 540}}) {
        expectPixel(node, {-3, 70, 0.5f, 2}, x, y);
    }
    GLint wrap = 0;
    glBindTexture(GL_TEXTURE_2D, target.textures[0]);
    glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, &wrap);
    glBindTexture(GL_TEXTURE_2D, 0);
    EXPECT_EQ(wrap, GL_CLAMP_TO_BORDER);
}

TEST_F(ShaderNodeTest, PassesEveryKindOfParameterOnByItsType) {
    ImageNode_Shader& node =
        add("S", script("Param 0, \"F\", float, 0, 4, 0.25\nParam 1, \"I\", int, 0, 9, 5\n"
                        "Param 2, \"O\", option, 3, \"a\", \"b\", \"c\", 2\n"
                        "Param 3, \"D\", direction, 1, -2\nParam 4, \"P\", position, 0.5, 8\n"
                        "Param 5, \"C\", color, 16, 32, 64, 128\n",
                        "uniform float F; uniform int I, O; uniform vec2 D, P; uniform vec4 C;\n"
                        "void main() {\n"
                        "  int column = int(gl_FragCoord.x);\n"
                        "  if (column == 0) frag[0] = vec4(F, I, O, D.x);\n"
                        "  else if (column == 1) frag[0] = vec4(D.y, P.x, P.y, 0);\n"
                        "  else frag[0] = C;\n"
                        "}"));
    ASSERT_FALSE(node.hasError) << node.program->errorLog();
    runAt(node, 0);
    expectPixel(node, {0.25f, 5, 2, 1}, 0);
    expectPixel(node, {-2, 0.5f, 8, 0}, 1);
    expectPixel(node, {16, 32, 64, 128}, 2);
    // Live values; an integer is cut, not rounded.
    node.script.params[0].value = 7;
    node.script.params[1].value = -2.9f;
    node.script.params[2].optionValue = 1;
    node.script.params[5].color[3] = 3;
    runAt(node, 1);
    expectPixel(node, {7, -2, 1, 1}, 0);
    expectPixel(node, {16, 32, 64, 3}, 2);
}

TEST_F(ShaderNodeTest, PassesAFlagOn) {
    NodeScript flagged =
        script("", "uniform bool B; void main() { frag[0] = vec4(B ? 1.0 : 0.5); }");
    ShaderParam flag;
    flag.type = kParamBool;
    flag.label = "B";
    flag.flagDefault = true;
    flagged.params.push_back(flag);
    ImageNode_Shader& node = add("S", flagged);
    runAt(node, 0);
    expectPixel(node, {1, 1, 1, 1});
    *dynamic_cast<ValueBool&>(*engine_.findValue(&node, "B")).data = false;
    runAt(node, 0);
    expectPixel(node, {0.5f, 0.5f, 0.5f, 0.5f});
}

TEST_F(ShaderNodeTest, SurvivesAnIntegerParameterThatNoIntegerHolds) {
    ImageNode_Shader& node = add("S", script("Param 0, \"I\", int, 0, 9, 5",
                                             "uniform int I; void main() {\n"
                                             "frag[0] = vec4(I == 0, I == 2147483647,\n"
                                             "I == -2147483647 - 1, 1); }"));
    ASSERT_FALSE(node.hasError) << node.program->errorLog();
    const auto drawn = [&](float value) {
        node.script.params[0].value = value;
        runAt(node, 0);
        return pixel(node);
    };
    EXPECT_THAT(drawn(std::nanf("")), ElementsAre(1, 0, 0, 1));
    EXPECT_THAT(drawn(1e30f), ElementsAre(0, 1, 0, 1));
    EXPECT_THAT(drawn(-INFINITY), ElementsAre(0, 0, 1, 1));
}

TEST_F(ShaderNodeTest, PassesTimeAspectRatioAndSampleSizeOn) {
    ImageNode_Shader& node =
        add("S", script("",
                        "uniform float ng_time, ng_aspectRatio; uniform vec2 ng_sampleSize;\n"
                        "void main() { frag[0] = vec4(ng_time, ng_aspectRatio,\n"
                        "ng_sampleSize.x * 1920.0, ng_sampleSize.y * 1080.0); }"));
    runAt(node, 12.5f);
    expectPixel(node, {12.5f, 1920.0f / 1080.0f, 1, 1});
}

TEST_F(ShaderNodeTest, TurnsItsCoordinatesByItsTextureMatrix) {
    ImageNode_Shader& node =
        add("S", script("", "void main() { frag[0] = vec4(texcoord, texcoord_Input[0]); }"));
    node.textureMatrix = Mat4();
    node.textureMatrix[0] = 2;    // u doubled
    node.textureMatrix[13] = 10;  // v moved
    runAt(node, 0);
    const auto u = [](int x) { return (static_cast<float>(x) + 0.5f) / 1920; };
    const auto v = [](int y) { return (static_cast<float>(y) + 0.5f) / 1080; };
    for (const auto& [x, y] : {std::pair{0, 0}, {1919, 1079}, {700, 300}}) {
        const std::vector<float> got = pixel(node, x, y);
        EXPECT_NEAR(got[0], 2 * u(x), 2 * kHalfFloat);
        EXPECT_NEAR(got[1], 10 + v(y), 11 * kHalfFloat);
    }
}

TEST_F(ShaderNodeTest, TurnsEachInputsCoordinatesByThatInputsMatrix) {
    ColourNode& first = addColour("A", {1, 0, 0, 1});
    ColourNode& second = addColour("B", {0, 1, 0, 1});
    first.textureMatrix[12] = 3;
    second.textureMatrix[0] = -2;
    ImageNode_Shader& node =
        add("S", script("Input 0, \"a\", \"geometry\"\nInput 1, \"b\", \"geometry\"\n"
                        "Input 2, \"c\", \"geometry\"",
                        "void main() { frag[0] = vec4(texcoord_Input[0].x, texcoord_Input[1].x,\n"
                        "texcoord_Input[2].x, texcoord.x); }"));
    engine_.connect("A", "S", 0);
    engine_.connect("B", "S", 1);
    runAt(node, 0);
    const float u = 960.5f / 1920;
    expectPixel(node, {3 + u, -2 * u, u, u}, 960, 7);
}

TEST_F(ShaderNodeTest, ReadsItsInputsByTheirPorts) {
    addColour("A", {0.25f, 0, 0, 1});
    addColour("B", {0.5f, 0, 0, 1});
    ImageNode_Shader& node =
        add("S", script("Input 0, \"first\", \"geometry\"\nInput 1, \"second\", \"geometry\"",
                        "uniform sampler2D first, second;\nvoid main() { frag[0] = vec4(\n"
                        "texture(first, texcoord).r, texture(second, texcoord).r, 0, 1); }"));
    engine_.connect("A", "S", 0);
    engine_.connect("B", "S", 1);
    runAt(node, 0);
    expectPixel(node, {0.25f, 0.5f, 0, 1}, 960, 540);
}

TEST_F(ShaderNodeTest, TakesThePictureOfTheInputsKind) {
    ColourNode& source = addColour("A", {0.25f, 0, 0, 1});
    source.images[1] = ColourNode::picture({{0.75f, 0, 0, 1}});
    const std::string body =
        "uniform sampler2D s;\nvoid main() { frag[0] = vec4(texture(s, texcoord).r); }";
    ImageNode_Shader& plain = add("S", script("Input 0, \"s\", \"property\"", body));
    ImageNode_Shader& rgba = add("T", script("Input 0, \"s\", \"rgba\"", body));
    engine_.connect("A", "S", 0);
    engine_.connect("A", "T", 0);
    runAt(plain, 0);
    runAt(rgba, 0);
    EXPECT_EQ(pixel(plain, 960, 540)[0], 0.25f);
    EXPECT_EQ(pixel(rgba, 960, 540)[0], 0.75f);
}

TEST_F(ShaderNodeTest, SpillsAPictureOfSeveralTexturesIntoPortsThatAreBoundAfterIt) {
    ColourNode& many = addColour("A", {0, 0, 0, 0});
    many.images[0] = ColourNode::picture({{0.25f, 0, 0, 1}, {0.5f, 0, 0, 1}, {0.75f, 0, 0, 1}});
    addColour("B", {0.125f, 0, 0, 1});
    ImageNode_Shader& node =
        add("S", script("Input 0, \"a\", \"geometry\"\nInput 1, \"b\", \"geometry\"",
                        "uniform sampler2D a, b;\nvoid main() { frag[0] = vec4(\n"
                        "texture(a, texcoord).r, texture(b, texcoord).r, 0, 1); }"));
    engine_.connect("A", "S", 0);
    engine_.connect("B", "S", 1);
    runAt(node, 0);
    expectPixel(node, {0.25f, 0.125f, 0, 1}, 960, 540);
}

TEST_F(ShaderNodeTest, ReadsBlackFromAnEmptyPortAndFromASourceWithoutAPicture) {
    ImageNode_Shader& node =
        add("S", script("Input 0, \"s\", \"geometry\"",
                        "uniform sampler2D s;\nvoid main() {\n"
                        "frag[0] = vec4(texture(s, texcoord).rgb, 0) + vec4(0, 0, 0, 0.5); }"));
    // Something else is left on the unit.
    ColourNode& other = addColour("A", {1, 1, 1, 1});
    other.images[0]->BindTextures(GL_TEXTURE0);
    runAt(node, 0);
    expectPixel(node, {0, 0, 0, 0.5f}, 960, 540);
    other.images[0]->BindTextures(GL_TEXTURE0);
    addColour("B", {1, 1, 1, 1}).images[0] = nullptr;
    engine_.connect("B", "S", 0);
    runAt(node, 0);
    expectPixel(node, {0, 0, 0, 0.5f}, 960, 540);
}

TEST_F(ShaderNodeTest, KeepsItsValuesApartFromOtherNodesOfTheScript) {
    const NodeScript shared = script("Param 0, \"F\", float, 0, 4, 1",
                                     "uniform float F; void main() { frag[0] = vec4(F); }");
    ImageNode_Shader& first = add("S", shared);
    ImageNode_Shader& second = add("T", shared);
    *dynamic_cast<ValueFloat&>(*engine_.findValue(&first, "F")).data = 3;
    runAt(first, 0);
    runAt(second, 0);
    EXPECT_EQ(pixel(first)[0], 3.0f);
    EXPECT_EQ(pixel(second)[0], 1.0f);
}

TEST_F(ShaderNodeTest, TakesDeclarationsThatTheShaderLacks) {
    ImageNode_Shader& node =
        add("S", script("Input 0, \"missing\", \"rgba\"\nParam 0, \"Missing\", color, 1, 1, 1, 1\n"
                        "Param 1, \"\", float, 0, 1, 1",
                        "void main() { frag[0] = vec4(0.5); }"));
    EXPECT_FALSE(node.hasError);
    runAt(node, 0);
    EXPECT_EQ(pixel(node)[0], 0.5f);
}

TEST_F(ShaderNodeTest, MarksAScriptThatDoesNotCompileAndLeavesItsTargetAlone) {
    for (const char* source : {"void main() { nonsense }", ""}) {
        NodeScript bad = script("Param 0, \"F\", float, 0, 4, 1\nInput 0, \"s\", \"rgba\"", source);
        if (*source == 0) bad.source.clear();
        const std::string id = *source == 0 ? "empty" : "bad";
        const DebugCapture debug;
        ImageNode_Shader& node = add(id, bad);
        EXPECT_TRUE(node.hasError);
        EXPECT_THAT(debug.text(), ::testing::HasSubstr("Test"));
        const auto& target = dynamic_cast<const GL_FrameBuffer&>(*node.images[0]);
        target.Bind();
        glClearColor(0.5f, 0.25f, 0.75f, 1);
        glClear(GL_COLOR_BUFFER_BIT);
        GL_FrameBuffer::Unbind();
        runAt(node, 1);
        EXPECT_TRUE(node.updated) << "the node runs all the same";
        EXPECT_THAT(pixel(node, 960, 540), ElementsAre(0.5f, 0.25f, 0.75f, 1));
    }
}

TEST_F(ShaderNodeTest, DoesNoWorkInTheLoadPass) {
    ImageNode_Shader& node = add("S", script("", "void main() { frag[0] = vec4(1); }"));
    runAt(node, 0);
    const auto& target = dynamic_cast<const GL_FrameBuffer&>(*node.images[0]);
    target.Bind();
    glClearColor(0, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT);
    GL_FrameBuffer::Unbind();
    engine_.refreshNodes();
    EXPECT_EQ(pixel(node)[0], 0.0f);
}

// A node that adds 1 to the red of its first input and shows its second in green.
NodeScript Counter(NodeScript (*make)(const std::string&, const std::string&)) {
    return make("Input 0, \"a\", \"geometry\"\nInput 1, \"b\", \"geometry\"",
                "uniform sampler2D a, b;\nvoid main() { frag[0] = vec4(\n"
                "texture(a, texcoord).r + 1.0, texture(b, texcoord).r, 0, 1); }");
}

TEST_F(ShaderNodeTest, SeesItsPictureOfTheLastFrameWhenFedByItself) {
    addColour("B", {0.25f, 0, 0, 1});
    ImageNode_Shader& node = add("S", Counter(&script));
    engine_.connect("S", "S", 0);
    engine_.connect("B", "S", 1);
    const auto& target = dynamic_cast<const GL_FrameBuffer&>(*node.images[0]);
    target.Bind();
    glClearColor(0, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT);
    GL_FrameBuffer::Unbind();
    for (int frame = 1; frame <= 5; ++frame) {
        runAt(node, static_cast<float>(frame));
        expectPixel(node, {static_cast<float>(frame), 0.25f, 0, 1}, 960, 540);
    }
}

TEST_F(ShaderNodeTest, ReadsItsLastPictureInItsFirstFrameOnTheLastPortToo) {
    ImageNode_Shader& node = add("S", Counter(&script));
    engine_.connect("S", "S", 1);
    const auto& target = dynamic_cast<const GL_FrameBuffer&>(*node.images[0]);
    target.Bind();
    glClearColor(0.5f, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT);
    GL_FrameBuffer::Unbind();
    runAt(node, 1);
    expectPixel(node, {1, 0.5f, 0, 1}, 960, 540);
    runAt(node, 2);
    expectPixel(node, {1, 1, 0, 1}, 960, 540);
}

TEST_F(ShaderNodeTest, RunsInACycleOfTwo) {
    ImageNode_Shader& a = add("A", Counter(&script));
    ImageNode_Shader& b = add("B", Counter(&script));
    engine_.connect("B", "A", 0);
    engine_.connect("A", "B", 0);
    for (ImageNode_Shader* node : {&a, &b}) {
        const auto& target = dynamic_cast<const GL_FrameBuffer&>(*node->images[0]);
        target.Bind();
        glClearColor(0, 0, 0, 0);
        glClear(GL_COLOR_BUFFER_BIT);
        GL_FrameBuffer::Unbind();
    }
    for (int frame = 1; frame <= 4; ++frame) {
        runAt(a, static_cast<float>(frame));
        expectPixel(a, {2.0f * static_cast<float>(frame), 0, 0, 1}, 960, 540);
        expectPixel(b, {2.0f * static_cast<float>(frame) - 1, 0, 0, 1}, 960, 540);
    }
}

}  // namespace
