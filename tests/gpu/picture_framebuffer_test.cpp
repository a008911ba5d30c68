#include <GL/glew.h>
#include <gmock/gmock.h>

#include "gpu/full_screen_quad.h"
#include "gpu/gl_framebuffer.h"
#include "gpu/gl_mem_texture.h"
#include "gpu/shader_program.h"
#include "platform/debug_output.h"
#include "support/gl_fixture.h"

namespace {

class FrameBufferTest : public GlTest {
  protected:
    // Fills `target` with what a shader reads from `image` at place * 3 - 1: the image lies in the
    // middle third, and what is outside of it around that.
    static void drawWithSurroundings(const GL_FrameBuffer& target, const GL_Image& image) {
        const char* vertex = R"(
#version 330 core
in vec4 vertex;
in vec2 uv;
out vec2 texcoord;
void main() { texcoord = uv * 3.0 - 1.0; gl_Position = vertex; }
)";
        const char* fragment = R"(
#version 330 core
uniform sampler2D image;
in vec2 texcoord;
out vec4 frag[1];
void main() { frag[0] = texture(image, texcoord); }
)";
        const ShaderProgram program("surroundings", vertex, nullptr, fragment, QuadAttributes(), 1);
        program.Use();
        glUniform1i(program.UniformLocation("image"), 0);
        image.BindTextures(GL_TEXTURE0);
        target.Fill();
        image.UnbindTextures(GL_TEXTURE0);
        ShaderProgram::Unuse();
    }
};

void ClearToOne(const GL_FrameBuffer& target) {
    target.Bind();
    target.SelectDrawBuffers();
    glClearColor(1, 1, 1, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    GL_FrameBuffer::Unbind();
}

GLint AttachmentName(const GL_FrameBuffer& target, GLenum attachment) {
    GLint name = 0;
    target.Bind();
    glGetFramebufferAttachmentParameteriv(GL_FRAMEBUFFER, attachment,
                                          GL_FRAMEBUFFER_ATTACHMENT_OBJECT_NAME, &name);
    GL_FrameBuffer::Unbind();
    return name;
}

}  // namespace

TEST_F(FrameBufferTest, HasTextureIAtAttachmentI) {
    const GL_FrameBuffer target(8, 4, 5, 16, GL_RGBA, TargetDepth::Depth32, TargetWrap::Border);
    EXPECT_TRUE(target.complete);
    EXPECT_EQ(target.textureCount, 5);
    for (int i = 0; i < 5; ++i) {
        const GLint name = AttachmentName(target, GL_COLOR_ATTACHMENT0 + static_cast<GLenum>(i));
        EXPECT_EQ(static_cast<std::uint32_t>(name), target.textures[static_cast<std::size_t>(i)]);
    }
    EXPECT_EQ(static_cast<std::uint32_t>(AttachmentName(target, GL_DEPTH_ATTACHMENT)),
              target.depthBuffer);
}

TEST_F(FrameBufferTest, SelectsAllOfItsDrawBuffers) {
    const GL_FrameBuffer target(8, 4, 5, 16, GL_RGBA, TargetDepth::None, TargetWrap::Border);
    target.Bind();
    target.SelectDrawBuffers();
    for (GLenum i = 0; i < 8; ++i) {
        GLint buffer = 0;
        glGetIntegerv(GL_DRAW_BUFFER0 + i, &buffer);
        const GLenum expected = i < 5 ? GL_COLOR_ATTACHMENT0 + i : GLenum{GL_NONE};
        EXPECT_EQ(static_cast<GLenum>(buffer), expected) << "draw buffer " << i;
    }
    GL_FrameBuffer::Unbind();
}

TEST_F(FrameBufferTest, TellsWhenItIsIncompleteAndStays) {
    const DebugCapture capture;
    const GL_FrameBuffer target(8, 4, 1, 12, GL_RGBA, TargetDepth::None, TargetWrap::Border);
    EXPECT_THAT(capture.messages(), testing::ElementsAre("Unable to create frame buffer\n"));
    EXPECT_FALSE(target.complete);
    EXPECT_EQ(target.bitsPerChannel, 12u);
    EXPECT_NE(target.framebuffer, 0u);
}

TEST_F(FrameBufferTest, IsUnboundAfterItsMaking) {
    const GL_FrameBuffer target(8, 4, 1, 8, GL_RGBA, TargetDepth::Depth32, TargetWrap::Border);
    GLint bound = -1;
    glGetIntegerv(GL_FRAMEBUFFER_BINDING, &bound);
    EXPECT_EQ(bound, 0);
    glGetIntegerv(GL_RENDERBUFFER_BINDING, &bound);
    EXPECT_EQ(bound, 0);
}

TEST_F(FrameBufferTest, StoresEightOrSixteenBits) {
    for (const int bits : {8, 16}) {
        const GL_FrameBuffer target(4, 4, 1, bits, GL_RGBA, TargetDepth::None, TargetWrap::Border);
        glBindTexture(GL_TEXTURE_2D, target.textures[0]);
        GLint redBits = 0;
        glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_RED_SIZE, &redBits);
        EXPECT_EQ(redBits, bits);
        glBindTexture(GL_TEXTURE_2D, 0);
    }
}

TEST_F(FrameBufferTest, ReadsAsTransparentBlackOutside) {
    const GL_FrameBuffer image(2, 2, 1, 16, GL_RGBA, TargetDepth::None, TargetWrap::Border);
    const GL_FrameBuffer target(6, 6, 1, 16, GL_RGBA, TargetDepth::None, TargetWrap::Border);
    ClearToOne(image);
    drawWithSurroundings(target, image);
    const std::vector<float> pixels = ReadTarget(target);
    for (int y = 0; y < 6; ++y) {
        for (int x = 0; x < 6; ++x) {
            const bool inside = x >= 2 && x < 4 && y >= 2 && y < 4;
            for (int channel = 0; channel < 4; ++channel) {
                EXPECT_EQ(pixels[static_cast<std::size_t>((y * 6 + x) * 4 + channel)],
                          inside ? 1.0f : 0.0f)
                    << x << ", " << y;
            }
        }
    }
}

TEST_F(FrameBufferTest, RepeatsWhenAsked) {
    const GL_FrameBuffer image(2, 2, 1, 8, GL_RGBA, TargetDepth::None, TargetWrap::Repeat);
    const GL_FrameBuffer target(6, 6, 1, 16, GL_RGBA, TargetDepth::None, TargetWrap::Border);
    ClearToOne(image);
    drawWithSurroundings(target, image);
    for (const float value : ReadTarget(target)) ASSERT_EQ(value, 1.0f);
}

TEST_F(FrameBufferTest, FillsTheWholeTargetWhateverTheViewportWas) {
    const DebugCapture silent;
    const std::uint8_t white[4] = {255, 255, 255, 255};
    const GL_MemTexture picture(1, 1, GL_RGBA, GL_REPEAT, GL_REPEAT, white);
    const GL_FrameBuffer target(6, 6, 1, 8, GL_RGBA, TargetDepth::None, TargetWrap::Border);
    glViewport(1, 1, 2, 2);
    drawWithSurroundings(target, picture);
    for (const float value : ReadTarget(target)) ASSERT_EQ(value, 1.0f);
    GLint bound = -1;
    glGetIntegerv(GL_FRAMEBUFFER_BINDING, &bound);
    EXPECT_EQ(bound, 0);
}

TEST_F(FrameBufferTest, HidesWhatLiesBehindWithDepth) {
    const GL_FrameBuffer target(2, 2, 1, 8, GL_RGBA, TargetDepth::Depth32, TargetWrap::Border);
    const char* vertex = R"(
#version 330 core
in vec4 vertex;
uniform float depth;
void main() { gl_Position = vec4(vertex.xy, depth, 1.0); }
)";
    const char* fragment = R"(
#version 330 core
uniform float depth;
out vec4 frag[1];
void main() { frag[0] = vec4(depth); }
)";
    const DebugCapture silent;
    const ShaderProgram program("depth", vertex, nullptr, fragment, QuadAttributes(), 1);
    target.Bind();
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glEnable(GL_DEPTH_TEST);
    program.Use();
    for (const float depth : {0.2f, 0.8f}) {
        glUniform1f(program.UniformLocation("depth"), depth);
        target.Fill();
    }
    ShaderProgram::Unuse();
    glDisable(GL_DEPTH_TEST);
    EXPECT_NEAR(ReadTarget(target).front(), 0.2, 1.0 / 255) << "eight bits a channel";
}

TEST_F(FrameBufferTest, ReleasesItsObjects) {
    std::uint32_t framebuffer = 0, depth = 0, texture = 0;
    {
        const GL_FrameBuffer target(4, 4, 2, 8, GL_RGBA, TargetDepth::Depth32, TargetWrap::Border);
        framebuffer = target.framebuffer;
        depth = target.depthBuffer;
        texture = target.textures[1];
        EXPECT_TRUE(glIsFramebuffer(framebuffer) && glIsRenderbuffer(depth) &&
                    glIsTexture(texture));
    }
    EXPECT_FALSE(glIsFramebuffer(framebuffer));
    EXPECT_FALSE(glIsRenderbuffer(depth));
    EXPECT_FALSE(glIsTexture(texture));
}

TEST_F(FrameBufferTest, IsAWholeFrameOfHalfFloatsForImageNodes) {
    const std::unique_ptr<GL_FrameBuffer> target = MakeFrameTarget();
    EXPECT_TRUE(target->complete);
    EXPECT_EQ(target->width, 1920);
    EXPECT_EQ(target->height, 1080);
    EXPECT_EQ(target->textureCount, 1);
    EXPECT_EQ(target->bitsPerChannel, 16u);
    EXPECT_FALSE(target->hasDepth);
}
