#include <GL/glew.h>
#include <gmock/gmock.h>

#include "gpu/full_screen_quad.h"
#include "gpu/gl_framebuffer.h"
#include "gpu/shader_program.h"
#include "platform/debug_output.h"
#include "support/gl_fixture.h"

namespace {

constexpr const char* kVertex = R"(
#version 330 core
in vec4 vertex;
in vec2 uv;
out vec2 texcoord;
void main() {
    texcoord = uv;
    gl_Position = vertex;
}
)";
constexpr const char* kFragment = R"(
#version 330 core
uniform vec4 color;
in vec2 texcoord;
out vec4 frag[1];
void main() { frag[0] = color + vec4(texcoord, 0.0, 0.0); }
)";
constexpr const char* kBroken = "\n#version 330 core\nvoid main() { broken_word = 1.0; }\n";

class ShaderProgramTest : public GlTest {};

void ClearTo(const GL_FrameBuffer& target, float value) {
    target.Bind();
    target.SelectDrawBuffers();
    glClearColor(value, value, value, value);
    glClear(GL_COLOR_BUFFER_BIT);
    GL_FrameBuffer::Unbind();
}

}  // namespace

TEST_F(ShaderProgramTest, TellsItsNameAndItsLinkInTwoMessages) {
    const DebugCapture capture;
    const ShaderProgram program("grey", kVertex, nullptr, kFragment, QuadAttributes(), 1);
    EXPECT_TRUE(program.linked);
    EXPECT_TRUE(program.errorLog().empty());
    EXPECT_THAT(capture.messages(), testing::ElementsAre("grey", " Successfully linked.\n"));
}

TEST_F(ShaderProgramTest, LinksWithoutAFragmentStage) {
    const DebugCapture capture;
    const ShaderProgram program("vertexOnly", kVertex, nullptr, nullptr, QuadAttributes(), 1);
    EXPECT_TRUE(program.linked);
    EXPECT_EQ(capture.messages().size(), 2u);
}

TEST_F(ShaderProgramTest, GivesAttributesTheirPlaceInTheListAsLocation) {
    const char* vertex = R"(
#version 330 core
in vec2 texcoord;
in vec3 normal;
in vec3 vertex;
void main() { gl_Position = vec4(vertex + normal + vec3(texcoord, 0.0), 1.0); }
)";
    const ShaderProgram program("mesh", vertex, nullptr, nullptr, {"vertex", "normal", "texcoord"},
                                0);
    EXPECT_EQ(glGetAttribLocation(program.program, "vertex"), 0);
    EXPECT_EQ(glGetAttribLocation(program.program, "normal"), 1);
    EXPECT_EQ(glGetAttribLocation(program.program, "texcoord"), 2);
}

TEST_F(ShaderProgramTest, DrawsEveryFragmentOutputIntoItsAttachment) {
    const char* fragment = R"(
#version 330 core
out vec4 frag[5];
void main() {
    frag[0] = vec4(0.0); frag[1] = vec4(1.0); frag[2] = vec4(2.0); frag[3] = vec4(3.0);
    frag[4] = vec4(4.0);
}
)";
    const ShaderProgram program("five", kVertex, nullptr, fragment, QuadAttributes(), 5);
    ASSERT_TRUE(program.linked) << program.errorLog();
    const GL_FrameBuffer target(4, 4, 5, 16, GL_RGBA, TargetDepth::None, TargetWrap::Border);
    program.Use();
    target.Fill();
    ShaderProgram::Unuse();
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(ReadTarget(target, i).front(), static_cast<float>(i)) << "attachment " << i;
    }
}

TEST_F(ShaderProgramTest, TellsAFailedStageOnceWithTheDriversWords) {
    const DebugCapture capture;
    const ShaderProgram program("broken", kBroken, nullptr, kFragment, QuadAttributes(), 1);
    EXPECT_FALSE(program.linked);
    const std::vector<std::string> messages = capture.messages();
    ASSERT_EQ(messages.size(), 2u) << "the link is not tried";
    EXPECT_EQ(messages[0], "broken");
    EXPECT_EQ(messages[1], program.errorLog());
    EXPECT_NE(messages[1].find("broken_word"), std::string::npos) << messages[1];
    EXPECT_EQ(messages[1].find('\0'), std::string::npos);
}

TEST_F(ShaderProgramTest, TellsBothFailedStages) {
    const DebugCapture capture;
    const ShaderProgram program("both", kBroken, nullptr, kBroken, QuadAttributes(), 1);
    const std::vector<std::string> messages = capture.messages();
    ASSERT_EQ(messages.size(), 4u);
    EXPECT_EQ(messages[0], "both");
    EXPECT_EQ(messages[2], "both");
    EXPECT_EQ(program.errorLog(), messages[1] + messages[3]);
}

TEST_F(ShaderProgramTest, TellsAFailedLink) {
    const char* fragment = R"(
#version 330 core
in vec3 texcoord;
out vec4 frag[1];
void main() { frag[0] = vec4(texcoord, 1.0); }
)";
    const DebugCapture capture;
    const ShaderProgram program("unlinkable", kVertex, nullptr, fragment, QuadAttributes(), 1);
    EXPECT_FALSE(program.linked);
    const std::vector<std::string> messages = capture.messages();
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_EQ(messages[0], "unlinkable");
    EXPECT_NE(messages[1].find("texcoord"), std::string::npos) << messages[1];
    EXPECT_NE(program.program, 0u);
    EXPECT_FALSE(glIsProgram(program.program));
}

TEST_F(ShaderProgramTest, LeavesTheTargetAloneWhenItFailed) {
    const DebugCapture silent;
    const ShaderProgram program("broken", kVertex, nullptr, kBroken, QuadAttributes(), 1);
    const GL_FrameBuffer target(4, 4, 1, 16, GL_RGBA, TargetDepth::None, TargetWrap::Border);
    ClearTo(target, 0.25f);
    program.Use();
    glUniform4f(program.UniformLocation("color"), 1, 1, 1, 1);
    target.Fill();
    ShaderProgram::Unuse();
    for (const float value : ReadTarget(target)) ASSERT_EQ(value, 0.25f);
}

TEST_F(ShaderProgramTest, FindsUniformsAndKeepsTheirLocations) {
    const ShaderProgram program("grey", kVertex, nullptr, kFragment, QuadAttributes(), 1);
    const int location = program.UniformLocation("color");
    EXPECT_EQ(location, glGetUniformLocation(program.program, "color"));
    EXPECT_GE(location, 0);
    EXPECT_EQ(program.UniformLocation("color"), location);
    EXPECT_EQ(program.UniformLocation("nothing"), -1);
    EXPECT_EQ(program.UniformLocation("nothing"), -1);
}

TEST_F(ShaderProgramTest, BecomesCurrentAndNotCurrent) {
    const ShaderProgram program("grey", kVertex, nullptr, kFragment, QuadAttributes(), 1);
    GLint current = 0;
    program.Use();
    glGetIntegerv(GL_CURRENT_PROGRAM, &current);
    EXPECT_EQ(static_cast<std::uint32_t>(current), program.program);
    ShaderProgram::Unuse();
    glGetIntegerv(GL_CURRENT_PROGRAM, &current);
    EXPECT_EQ(current, 0);
}

TEST_F(ShaderProgramTest, ReleasesItsProgramAndShaders) {
    std::uint32_t name = 0;
    GLuint shaders[4] = {};
    GLsizei count = 0;
    {
        const ShaderProgram program("grey", kVertex, nullptr, kFragment, QuadAttributes(), 1);
        name = program.program;
        glGetAttachedShaders(name, 4, &count, shaders);
        EXPECT_TRUE(glIsProgram(name));
    }
    EXPECT_EQ(count, 0) << "shaders go with the link";
    EXPECT_FALSE(glIsProgram(name));
}
