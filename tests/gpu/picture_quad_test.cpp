#include <GL/glew.h>

#include "gpu/full_screen_quad.h"
#include "gpu/gl_framebuffer.h"
#include "gpu/mesh_buffers.h"
#include "gpu/shader_program.h"
#include "platform/debug_output.h"
#include "support/gl_fixture.h"

namespace {

constexpr const char* kVertex = R"(
#version 330 core
in vec4 vertex;
in vec2 uv;
out vec4 place;
void main() {
    place = vec4(uv, vertex.zw);
    gl_Position = vertex;
}
)";
constexpr const char* kShowPlace = R"(
#version 330 core
in vec4 place;
out vec4 frag[1];
void main() { frag[0] = place; }
)";
constexpr const char* kShowImages = R"(
#version 330 core
uniform sampler2D first;
uniform sampler2D second;
in vec4 place;
out vec4 frag[1];
void main() { frag[0] = texture(first, place.xy) + 10.0 * texture(second, place.xy); }
)";

class QuadTest : public GlTest {
  protected:
    static ShaderProgram makeProgram(const char* fragment) {
        const DebugCapture silent;
        return {"quad", kVertex, nullptr, fragment, QuadAttributes(), 1};
    }
};

GLint Get(GLenum name) {
    GLint value = -1;
    glGetIntegerv(name, &value);
    return value;
}

int LiveVertexArrays() {
    int count = 0;
    for (GLuint name = 1; name < 4096; ++name) count += glIsVertexArray(name) ? 1 : 0;
    return count;
}

int LiveBuffers() {
    int count = 0;
    for (GLuint name = 1; name < 4096; ++name) count += glIsBuffer(name) ? 1 : 0;
    return count;
}

void ClearAttachment(const GL_FrameBuffer& target, int index, float value) {
    const float colour[4] = {value, value, value, value};
    target.Bind();
    target.SelectDrawBuffers();
    glClearBufferfv(GL_COLOR, index, colour);
    GL_FrameBuffer::Unbind();
}

}  // namespace

TEST_F(QuadTest, PutsZeroUvAtTheBottomLeft) {
    const ShaderProgram program = makeProgram(kShowPlace);
    const GL_FrameBuffer target(8, 4, 1, 16, GL_RGBA, TargetDepth::None, TargetWrap::Border);
    program.Use();
    target.Fill();
    ShaderProgram::Unuse();
    const std::vector<float> pixels = ReadTarget(target);
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 8; ++x) {
            const float* pixel = &pixels[static_cast<std::size_t>((y * 8 + x) * 4)];
            // Pixel centres, interpolated and kept in 16-bit floats.
            EXPECT_NEAR(pixel[0], (x + 0.5) / 8, 1e-3);
            EXPECT_NEAR(pixel[1], (y + 0.5) / 4, 1e-3);
            EXPECT_EQ(pixel[2], 0) << "z when the quad gives none";
            EXPECT_EQ(pixel[3], 1) << "w when the quad gives none";
        }
    }
}

TEST_F(QuadTest, IsMadeOnceAndLeavesNothingBound) {
    const ShaderProgram program = makeProgram(kShowPlace);
    const GL_FrameBuffer target(4, 4, 1, 8, GL_RGBA, TargetDepth::None, TargetWrap::Border);
    ReleaseFullScreenQuad();
    const int arraysBefore = LiveVertexArrays();
    const int buffersBefore = LiveBuffers();
    target.Bind();
    program.Use();
    for (int draw = 0; draw < 3; ++draw) {
        DrawFullScreenQuad();
        EXPECT_EQ(Get(GL_VERTEX_ARRAY_BINDING), 0);
        EXPECT_EQ(Get(GL_ARRAY_BUFFER_BINDING), 0);
        EXPECT_EQ(LiveVertexArrays(), arraysBefore + 1);
        EXPECT_EQ(LiveBuffers(), buffersBefore + 1);
    }
    ShaderProgram::Unuse();
    GL_FrameBuffer::Unbind();
    ReleaseFullScreenQuad();
    EXPECT_EQ(LiveVertexArrays(), arraysBefore);
    EXPECT_EQ(LiveBuffers(), buffersBefore);
}

TEST_F(QuadTest, DrawsAnImageWithAllItsTexturesAndUnbindsThem) {
    const ShaderProgram program = makeProgram(kShowImages);
    const GL_FrameBuffer image(2, 2, 2, 16, GL_RGBA, TargetDepth::None, TargetWrap::Border);
    ClearAttachment(image, 0, 0.5f);
    ClearAttachment(image, 1, 0.25f);
    const GL_FrameBuffer target(4, 4, 1, 16, GL_RGBA, TargetDepth::None, TargetWrap::Repeat);
    target.Bind();
    target.SetViewport();
    program.Use();
    glUniform1i(program.UniformLocation("first"), 0);
    glUniform1i(program.UniformLocation("second"), 1);
    DrawFullScreenQuad();
    const int arraysBefore = LiveVertexArrays();
    DrawImageQuad(image);
    DrawImageQuad(image);
    ShaderProgram::Unuse();
    GL_FrameBuffer::Unbind();
    EXPECT_EQ(LiveVertexArrays(), arraysBefore);
    EXPECT_EQ(Get(GL_VERTEX_ARRAY_BINDING), 0);
    EXPECT_EQ(Get(GL_ARRAY_BUFFER_BINDING), 0);
    for (const GLenum unit : {GL_TEXTURE0, GL_TEXTURE1}) {
        glActiveTexture(unit);
        EXPECT_EQ(Get(GL_TEXTURE_BINDING_2D), 0);
    }
    // The middle of the image; the border blends into the outermost texels.
    EXPECT_EQ(ReadTarget(target)[(1 * 4 + 1) * 4], 3.0f);
}

TEST_F(QuadTest, MeshOfNothingDrawsNothing) {
    GeometryObject object;
    object.transform[12] = 7;
    CreateMeshBuffers(object, {});
    EXPECT_TRUE(glIsVertexArray(object.vertexArray));
    EXPECT_EQ(object.vertexCount, 0);
    EXPECT_EQ(object.transform[12], 0);
    glBindBuffer(GL_ARRAY_BUFFER, object.vertexBuffer);
    GLint size = -1;
    glGetBufferParameteriv(GL_ARRAY_BUFFER, GL_BUFFER_SIZE, &size);
    EXPECT_EQ(size, 0);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    object = {};
}

TEST_F(QuadTest, MeshHandsOverPositionNormalAndUv) {
    const char* vertex = R"(
#version 330 core
in vec3 vertex;
in vec3 normal;
in vec2 texcoord;
out vec4 place;
void main() {
    place = vec4(normal.xy, texcoord);
    gl_Position = vec4(vertex, 1.0);
}
)";
    const DebugCapture silent;
    const ShaderProgram program("mesh", vertex, nullptr, kShowPlace,
                                {"vertex", "normal", "texcoord"}, 1);
    const MeshVertex corners[] = {{{-1, -1, 0}, {1, 2, 3}, {4, 5}},
                                  {{3, -1, 0}, {1, 2, 3}, {4, 5}},
                                  {{-1, 3, 0}, {1, 2, 3}, {4, 5}}};
    GeometryObject object;
    CreateMeshBuffers(object, corners);
    EXPECT_EQ(object.vertexCount, 3);
    EXPECT_EQ(Get(GL_VERTEX_ARRAY_BINDING), 0);
    EXPECT_EQ(Get(GL_ARRAY_BUFFER_BINDING), 0);
    const GL_FrameBuffer target(2, 2, 1, 16, GL_RGBA, TargetDepth::None, TargetWrap::Border);
    target.Bind();
    target.SetViewport();
    program.Use();
    glBindVertexArray(object.vertexArray);
    glDrawArrays(GL_TRIANGLES, 0, object.vertexCount);
    glBindVertexArray(0);
    ShaderProgram::Unuse();
    GL_FrameBuffer::Unbind();
    const std::vector<float> pixels = ReadTarget(target);
    for (std::size_t i = 0; i < pixels.size(); i += 4) {
        // Equal corners; interpolation may cost the last bits of a 16-bit float.
        EXPECT_NEAR(pixels[i], 1, 1e-2);
        EXPECT_NEAR(pixels[i + 1], 2, 1e-2);
        EXPECT_NEAR(pixels[i + 2], 4, 1e-2);
        EXPECT_NEAR(pixels[i + 3], 5, 1e-2);
    }
    object = {};
    EXPECT_EQ(object.vertexArray, 0u);
}

TEST_F(QuadTest, MeshReleasesBothOfItsObjects) {
    GeometryObject object;
    const MeshVertex corners[3] = {};
    CreateMeshBuffers(object, corners);
    const GLuint array = object.vertexArray, buffer = object.vertexBuffer;
    EXPECT_TRUE(glIsVertexArray(array) && glIsBuffer(buffer));
    object = {};
    EXPECT_FALSE(glIsVertexArray(array));
    EXPECT_FALSE(glIsBuffer(buffer));
    object = {};
}
