#include <GL/glew.h>
#include <gmock/gmock.h>

#include <cstdio>
#include <memory>

#include "gpu/gl_framebuffer.h"
#include "gpu/gl_mem_texture.h"
#include "platform/debug_output.h"
#include "support/gl_fixture.h"

namespace {

class MemTextureTest : public GlTest {};

std::vector<std::uint8_t> Ramp(int width, int height, int channels) {
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(width * height * channels));
    for (std::size_t i = 0; i < pixels.size(); ++i) pixels[i] = static_cast<std::uint8_t>(i * 7);
    return pixels;
}

std::vector<std::uint8_t> LevelBytes(const GL_Image& image, int level, GLenum format) {
    glBindTexture(GL_TEXTURE_2D, image.textures[0]);
    GLint width = 0, height = 0;
    glGetTexLevelParameteriv(GL_TEXTURE_2D, level, GL_TEXTURE_WIDTH, &width);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, level, GL_TEXTURE_HEIGHT, &height);
    std::vector<std::uint8_t> bytes(
        static_cast<std::size_t>(width * height * (format == GL_RGB ? 3 : 4)));
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glGetTexImage(GL_TEXTURE_2D, level, format, GL_UNSIGNED_BYTE, bytes.data());
    return bytes;
}

GLint TextureParameter(const GL_Image& image, GLenum name) {
    GLint value = 0;
    glBindTexture(GL_TEXTURE_2D, image.textures[0]);
    glGetTexParameteriv(GL_TEXTURE_2D, name, &value);
    return value;
}

GLuint BoundAtUnit(GLenum unit) {
    GLint name = 0;
    glActiveTexture(unit);
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &name);
    return static_cast<GLuint>(name);
}

std::string MemoryMessage(float megabytes) {
    char text[256];
    std::snprintf(text, sizeof text, "Texture Memory Consumed (non MM): %.2fMb\n",
                  static_cast<double>(megabytes));
    return text;
}

}  // namespace

TEST_F(MemTextureTest, CountsTwelveBytesForTwoByTwoRgb) {
    const std::vector<std::uint8_t> pixels = Ramp(2, 2, 3);
    const float before = textureMegabytes;
    const DebugCapture capture;
    const GL_MemTexture texture(2, 2, GL_RGB, GL_REPEAT, GL_REPEAT, pixels.data());
    EXPECT_EQ(textureMegabytes, before + 12.0f / (1024.0f * 1024.0f));
    EXPECT_THAT(capture.messages(), testing::ElementsAre(MemoryMessage(textureMegabytes)));
}

TEST_F(MemTextureTest, CountsFourBytesAPixelForRgbaAndNeverGoesDown) {
    const std::vector<std::uint8_t> pixels = Ramp(1024, 256, 4);
    const float before = textureMegabytes;
    const DebugCapture capture;
    std::make_unique<GL_MemTexture>(1024, 256, GL_RGBA, GL_REPEAT, GL_REPEAT, pixels.data());
    EXPECT_EQ(textureMegabytes, before + 1.0f);
    EXPECT_EQ(capture.text(), MemoryMessage(before + 1.0f));
}

TEST_F(MemTextureTest, KeepsRgbRowsOfAnyWidth) {
    const DebugCapture silent;
    for (const int width : {1, 2, 3, 5, 7, 10}) {
        const std::vector<std::uint8_t> pixels = Ramp(width, 3, 3);
        const GL_MemTexture texture(width, 3, GL_RGB, GL_CLAMP_TO_EDGE, GL_CLAMP_TO_EDGE,
                                    pixels.data());
        EXPECT_EQ(LevelBytes(texture, 0, GL_RGB), pixels) << "width " << width;
    }
}

TEST_F(MemTextureTest, KeepsRgbaBytes) {
    const DebugCapture silent;
    const std::vector<std::uint8_t> pixels = Ramp(5, 4, 4);
    const GL_MemTexture texture(5, 4, GL_RGBA, GL_CLAMP_TO_EDGE, GL_CLAMP_TO_EDGE, pixels.data());
    EXPECT_EQ(texture.width, 5);
    EXPECT_EQ(texture.height, 4);
    EXPECT_EQ(texture.textureCount, 1);
    EXPECT_EQ(LevelBytes(texture, 0, GL_RGBA), pixels);
}

TEST_F(MemTextureTest, HasMipmapsDownToOneAverageTexel) {
    const DebugCapture silent;
    std::vector<std::uint8_t> pixels(4 * 4 * 4, 0);
    for (std::size_t i = 0; i < pixels.size() / 2; ++i) pixels[i] = 200;
    const GL_MemTexture texture(4, 4, GL_RGBA, GL_REPEAT, GL_REPEAT, pixels.data());
    const std::vector<std::uint8_t> last = LevelBytes(texture, 2, GL_RGBA);
    ASSERT_EQ(last.size(), 4u);
    EXPECT_NEAR(last[0], 100, 1) << "the driver may round each level";
}

TEST_F(MemTextureTest, FiltersAndWrapsAsAsked) {
    const DebugCapture silent;
    const std::vector<std::uint8_t> pixels = Ramp(2, 2, 4);
    const GL_MemTexture texture(2, 2, GL_RGBA, GL_REPEAT, GL_CLAMP_TO_BORDER, pixels.data());
    EXPECT_EQ(BoundAtUnit(GL_TEXTURE0), texture.textures[0]) << "stays bound to unit 0";
    EXPECT_EQ(TextureParameter(texture, GL_TEXTURE_WRAP_S), GL_REPEAT);
    EXPECT_EQ(TextureParameter(texture, GL_TEXTURE_WRAP_T), GL_CLAMP_TO_BORDER);
    EXPECT_EQ(TextureParameter(texture, GL_TEXTURE_MAG_FILTER), GL_LINEAR);
    EXPECT_EQ(TextureParameter(texture, GL_TEXTURE_MIN_FILTER), GL_LINEAR_MIPMAP_LINEAR);
}

TEST_F(MemTextureTest, KeepsFloatPicturesAsHalfFloatsWithoutCounting) {
    constexpr std::size_t kSide = 1024;
    std::vector<float> pixels(kSide * kSide * 4);
    for (std::size_t i = 0; i < pixels.size(); ++i) pixels[i] = static_cast<float>(i % 2048) - 99;
    const float before = textureMegabytes;
    const DebugCapture capture;
    const GL_MemTexture texture(GL_REPEAT, GL_CLAMP_TO_EDGE, pixels.data());
    EXPECT_EQ(texture.width, 1024);
    EXPECT_EQ(texture.height, 1024);
    EXPECT_EQ(textureMegabytes, before);
    EXPECT_TRUE(capture.messages().empty());
    EXPECT_EQ(TextureParameter(texture, GL_TEXTURE_MAG_FILTER), GL_LINEAR);
    EXPECT_EQ(TextureParameter(texture, GL_TEXTURE_MIN_FILTER), GL_LINEAR_MIPMAP_LINEAR);
    std::vector<float> read(pixels.size());
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_FLOAT, read.data());
    EXPECT_EQ(read, pixels) << "whole numbers below 2048 are exact in 16-bit floats";
}

TEST_F(MemTextureTest, ReleasesItsTexture) {
    const DebugCapture silent;
    const std::vector<std::uint8_t> pixels = Ramp(2, 2, 4);
    auto texture =
        std::make_unique<GL_MemTexture>(2, 2, GL_RGBA, GL_REPEAT, GL_REPEAT, pixels.data());
    const std::uint32_t name = texture->textures[0];
    EXPECT_TRUE(glIsTexture(name));
    texture.reset();
    EXPECT_FALSE(glIsTexture(name));
}

TEST_F(MemTextureTest, BindsImagesToConsecutiveUnits) {
    const GL_FrameBuffer image(2, 2, 2, 8, GL_RGBA, TargetDepth::None, TargetWrap::Border);
    image.BindTextures(GL_TEXTURE0 + 3);
    EXPECT_EQ(BoundAtUnit(GL_TEXTURE0 + 3), image.textures[0]);
    EXPECT_EQ(BoundAtUnit(GL_TEXTURE0 + 4), image.textures[1]);
    image.UnbindTextures(GL_TEXTURE0 + 3);
    EXPECT_EQ(BoundAtUnit(GL_TEXTURE0 + 3), 0u);
    EXPECT_EQ(BoundAtUnit(GL_TEXTURE0 + 4), 0u);
    image.BindTexture(1, GL_TEXTURE0 + 5);
    EXPECT_EQ(BoundAtUnit(GL_TEXTURE0 + 5), image.textures[1]);
    glBindTexture(GL_TEXTURE_2D, 0);
}
