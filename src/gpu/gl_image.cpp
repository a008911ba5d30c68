#include "gpu/gl_image.h"

#include <GL/glew.h>

GL_Image::GL_Image(int imageWidth, int imageHeight, int count)
    : width(imageWidth),
      height(imageHeight),
      textures(std::make_unique<std::uint32_t[]>(static_cast<std::size_t>(count))),
      textureCount(count) {
    if (count > 0) glGenTextures(count, textures.get());
}

GL_Image::~GL_Image() {
    if (textureCount > 0) glDeleteTextures(textureCount, textures.get());
}

void GL_Image::BindTextures(std::uint32_t firstUnit) const {
    for (int i = 0; i < textureCount; ++i) {
        BindTexture(i, firstUnit + static_cast<std::uint32_t>(i));
    }
}

void GL_Image::UnbindTextures(std::uint32_t firstUnit) const {
    for (int i = 0; i < textureCount; ++i) {
        glActiveTexture(firstUnit + static_cast<std::uint32_t>(i));
        glBindTexture(GL_TEXTURE_2D, 0);
    }
}

void GL_Image::BindTexture(int index, std::uint32_t unit) const {
    glActiveTexture(unit);
    glBindTexture(GL_TEXTURE_2D, textures[static_cast<std::size_t>(index)]);
}
