#include "editor/ui_batch.h"

#include <GL/glew.h>

#include <algorithm>

#include "gpu/embedded_shaders.h"

namespace {

// 65536 texels is what every driver takes in a buffer texture, and 65536 vertices are what 16-bit
// indices reach; both are 16384 quads.
constexpr std::size_t kMostQuads = 16384;
constexpr std::size_t kIndicesPerQuad = 6;

constexpr GLenum kPictureUnit = GL_TEXTURE0;
constexpr GLenum kAtlasUnit = GL_TEXTURE0 + 1;
constexpr GLenum kQuadUnit = GL_TEXTURE0 + 2;

std::vector<std::uint16_t> QuadIndices() {
    std::vector<std::uint16_t> indices;
    indices.reserve(kMostQuads * kIndicesPerQuad);
    for (std::size_t quad = 0; quad < kMostQuads; ++quad) {
        for (const std::size_t corner : {0, 1, 2, 2, 1, 3}) {
            indices.push_back(static_cast<std::uint16_t>(quad * 4 + corner));
        }
    }
    return indices;
}

void SetRectCorners(Vec2 (&corners)[4], int x, int y, int width, int height) {
    const float left = static_cast<float>(x), right = static_cast<float>(x + width);
    const float top = static_cast<float>(y), bottom = static_cast<float>(y + height);
    corners[0] = {left, top};
    corners[1] = {right, top};
    corners[2] = {left, bottom};
    corners[3] = {right, bottom};
}

}  // namespace

UiBatch::UiBatch()
    : flatProgram_("uiShader", EmbeddedShader("ui.vert").data(), nullptr,
                   EmbeddedShader("ui.frag").data(), {}, 1),
      pictureProgram_("uiTexturedShader", EmbeddedShader("ui.vert").data(), nullptr,
                      EmbeddedShader("ui_textured.frag").data(), {}, 1),
      quads_(kMostQuads) {
    const std::vector<std::uint16_t> indices = QuadIndices();
    glGenVertexArrays(1, &vertexArray_);
    glGenBuffers(1, &indexBuffer_);
    glBindVertexArray(vertexArray_);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, indexBuffer_);
    glBufferData(GL_ELEMENT_ARRAY_BUFFER,
                 static_cast<GLsizeiptr>(indices.size() * sizeof(std::uint16_t)), indices.data(),
                 GL_STATIC_DRAW);
    glBindVertexArray(0);
    glGenBuffers(1, &quadBuffer_);
    glGenTextures(1, &quadTexture_);
    glBindBuffer(GL_TEXTURE_BUFFER, quadBuffer_);
    glBindTexture(GL_TEXTURE_BUFFER, quadTexture_);
    glTexBuffer(GL_TEXTURE_BUFFER, GL_RGBA32UI, quadBuffer_);
    glBindTexture(GL_TEXTURE_BUFFER, 0);
    glBindBuffer(GL_TEXTURE_BUFFER, 0);
}

UiBatch::~UiBatch() {
    glDeleteTextures(1, &quadTexture_);
    glDeleteBuffers(1, &quadBuffer_);
    glDeleteVertexArrays(1, &vertexArray_);
    glDeleteBuffers(1, &indexBuffer_);
}

void UiBatch::beginFrame(int targetWidth, int targetHeight) {
    count_ = 0;
    drawCalls_ = 0;
    clip_ = {};
    Mat4Ortho2D(projection_, 0, static_cast<float>(targetWidth), static_cast<float>(targetHeight),
                0);
}

UiQuad& UiBatch::append(const Vec4& colour) {
    if (count_ == kMostQuads) flush();
    UiQuad& quad = quads_[count_++];
    quad.colour = colour;
    quad.clip = clip_;
    quad.textureX = quad.textureY = 0;
    quad.textureWidth = quad.textureHeight = 0;
    return quad;
}

void UiBatch::addRect(int x, int y, int width, int height, const Vec4& colour) {
    SetRectCorners(append(colour).corners, x, y, width, height);
}

void UiBatch::addQuad(const Vec2 (&corners)[4], const Vec4& colour) {
    UiQuad& quad = append(colour);
    for (int i = 0; i < 4; ++i) quad.corners[i] = corners[i];
}

void UiBatch::addBand(const Vec2 (&corners)[4], float width, const Vec4& colour) {
    constexpr float kPartsOfAPixel = 256, kMostWidth = 255;
    UiQuad& quad = append(colour);
    for (int i = 0; i < 4; ++i) quad.corners[i] = corners[i];
    const float parts = std::clamp(width, 0.0f, kMostWidth) * kPartsOfAPixel;
    quad.textureHeight = static_cast<std::uint16_t>(std::max(parts, 1.0f));
}

void UiBatch::addGlyph(int x, int y, int width, int height, AtlasSpot spot, const Vec4& colour) {
    UiQuad& quad = append(colour);
    SetRectCorners(quad.corners, x, y, width, height);
    quad.textureX = spot.x;
    quad.textureY = spot.y;
    quad.textureWidth = static_cast<std::uint16_t>(width);
    quad.textureHeight = static_cast<std::uint16_t>(height);
}

void UiBatch::drawPicture(int x, int y, int width, int height, TopOfPicture top,
                          const Vec4& colour) {
    flush();
    UiQuad& quad = append(colour);
    if (top == TopOfPicture::AtZero) {
        SetRectCorners(quad.corners, x, y, width, height);
    } else {
        SetRectCorners(quad.corners, x, y + height, width, -height);
    }
    quad.textureWidth = quad.textureHeight = 1;  // the whole picture
    submit(pictureProgram_);
}

void UiBatch::flush() {
    if (count_ == 0) return;
    glActiveTexture(kAtlasUnit);
    atlas_.bind();
    submit(flatProgram_);
    glActiveTexture(kAtlasUnit);
    glBindTexture(GL_TEXTURE_2D, 0);
    glActiveTexture(GL_TEXTURE0);
}

void UiBatch::submit(const ShaderProgram& program) {
    glBindBuffer(GL_TEXTURE_BUFFER, quadBuffer_);
    glBufferData(GL_TEXTURE_BUFFER, static_cast<GLsizeiptr>(count_ * sizeof(UiQuad)), quads_.data(),
                 GL_STREAM_DRAW);
    glActiveTexture(kQuadUnit);
    glBindTexture(GL_TEXTURE_BUFFER, quadTexture_);
    program.Use();
    glUniformMatrix4fv(program.UniformLocation("projectionMatrix"), 1, GL_FALSE, projection_.m);
    glUniform1i(program.UniformLocation("quads"), kQuadUnit - GL_TEXTURE0);
    glUniform1i(program.UniformLocation("atlas"), kAtlasUnit - GL_TEXTURE0);
    glUniform1i(program.UniformLocation("tex"), kPictureUnit - GL_TEXTURE0);
    glBindVertexArray(vertexArray_);
    glDrawElements(GL_TRIANGLES, static_cast<GLsizei>(count_ * kIndicesPerQuad), GL_UNSIGNED_SHORT,
                   nullptr);
    ++drawCalls_;
    count_ = 0;
    glBindVertexArray(0);
    ShaderProgram::Unuse();
    glBindTexture(GL_TEXTURE_BUFFER, 0);
    glBindBuffer(GL_TEXTURE_BUFFER, 0);
    glActiveTexture(GL_TEXTURE0);
}
