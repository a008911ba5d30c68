// A picture uploaded from memory, with mipmaps. The thread that owns the OpenGL context.
#pragma once

#include "gpu/gl_image.h"

class GL_MemTexture : public GL_Image {
  public:
    // `format` GL_RGB or GL_RGBA, `pixels` width * height * (3 or 4) bytes; row 0 lies at v = 0.
    // Linear magnification, trilinear minification.
    GL_MemTexture(int imageWidth, int imageHeight, std::uint32_t format, std::uint32_t wrapS,
                  std::uint32_t wrapT, const std::uint8_t* pixels);
    // `pixels`: 1024 * 1024 RGBA floats, kept as 16-bit floats.
    GL_MemTexture(std::uint32_t wrapS, std::uint32_t wrapT, const float* pixels);
    // The same from 16-bit floats: nothing to convert, and no driver's own rounding.
    GL_MemTexture(std::uint32_t wrapS, std::uint32_t wrapT, const std::uint16_t* halfFloats);

    // Other pixels for a picture made from 16-bit floats, in the storage that it has.
    void setPixels(const std::uint16_t* halfFloats);

  private:
    void uploadFloats(std::uint32_t wrapS, std::uint32_t wrapT, std::uint32_t type,
                      const void* pixels);
};

// Megabytes of byte pictures uploaded since the start, mipmaps not counted; never goes down.
extern float textureMegabytes;
