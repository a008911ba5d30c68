#include "gpu/gl_mem_texture.h"

#include <GL/glew.h>

#include <cstdio>

#include "platform/debug_output.h"

float textureMegabytes = 0;

namespace {

constexpr int kFloatPictureSize = 1024;

// Rows of three-byte pixels of any width lie without gaps in memory.
void BindForUpload(std::uint32_t texture) {
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, texture);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
}

bool IsBorder(std::uint32_t wrapS, std::uint32_t wrapT) {
    return wrapS == GL_CLAMP_TO_BORDER && wrapT == GL_CLAMP_TO_BORDER;
}

void SetSampling(std::uint32_t wrapS, std::uint32_t wrapT) {
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, static_cast<GLint>(wrapS));
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, static_cast<GLint>(wrapT));
}

void CountMemory(int width, int height, std::uint32_t format) {
    const float bytes =
        static_cast<float>(width) * static_cast<float>(height) * (format == GL_RGB ? 3.0f : 4.0f);
    textureMegabytes += bytes * 0.0009765625f * 0.0009765625f;
    char text[256];
    std::snprintf(text, sizeof text, "Texture Memory Consumed (non MM): %.2fMb\n",
                  static_cast<double>(textureMegabytes));
    DebugOutput(text);
}

}  // namespace

GL_MemTexture::GL_MemTexture(int imageWidth, int imageHeight, std::uint32_t format,
                             std::uint32_t wrapS, std::uint32_t wrapT, const std::uint8_t* pixels)
    : GL_Image(imageWidth, imageHeight, 1) {
    hasBorder = IsBorder(wrapS, wrapT);
    hasAlpha = format == GL_RGBA;
    hasMipmaps = true;
    BindForUpload(textures[0]);
    SetSampling(wrapS, wrapT);
    glTexImage2D(GL_TEXTURE_2D, 0, format == GL_RGB ? GL_RGB8 : GL_RGBA8, width, height, 0, format,
                 GL_UNSIGNED_BYTE, pixels);
    if (width > 0 && height > 0) glGenerateMipmap(GL_TEXTURE_2D);
    CountMemory(width, height, format);
}

GL_MemTexture::GL_MemTexture(std::uint32_t wrapS, std::uint32_t wrapT, const float* pixels)
    : GL_Image(kFloatPictureSize, kFloatPictureSize, 1) {
    uploadFloats(wrapS, wrapT, GL_FLOAT, pixels);
}

GL_MemTexture::GL_MemTexture(std::uint32_t wrapS, std::uint32_t wrapT,
                             const std::uint16_t* halfFloats)
    : GL_Image(kFloatPictureSize, kFloatPictureSize, 1) {
    uploadFloats(wrapS, wrapT, GL_HALF_FLOAT, halfFloats);
}

void GL_MemTexture::uploadFloats(std::uint32_t wrapS, std::uint32_t wrapT, std::uint32_t type,
                                 const void* pixels) {
    hasBorder = IsBorder(wrapS, wrapT);
    hasAlpha = hasMipmaps = true;
    BindForUpload(textures[0]);
    SetSampling(wrapS, wrapT);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA16F, width, height, 0, GL_RGBA, type, pixels);
    glGenerateMipmap(GL_TEXTURE_2D);
}

void GL_MemTexture::setPixels(const std::uint16_t* halfFloats) {
    BindForUpload(textures[0]);
    glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, width, height, GL_RGBA, GL_HALF_FLOAT, halfFloats);
    glGenerateMipmap(GL_TEXTURE_2D);
}
