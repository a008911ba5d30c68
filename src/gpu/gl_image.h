// What all pictures on the GPU share: a size and an array of 2-D texture names. The thread that
// owns the OpenGL context.
#pragma once

#include <cstdint>
#include <memory>

class GL_Image {
  public:
    virtual ~GL_Image();
    GL_Image(const GL_Image&) = delete;
    GL_Image& operator=(const GL_Image&) = delete;

    // Bind all textures to consecutive units from `firstUnit` (a GL_TEXTURE0 + n enumerant).
    void BindTextures(std::uint32_t firstUnit) const;
    void UnbindTextures(std::uint32_t firstUnit) const;
    void BindTexture(int index, std::uint32_t unit) const;

    int width = 0;                              // pixels
    int height = 0;                             // pixels
    std::unique_ptr<std::uint32_t[]> textures;  // textureCount names
    int textureCount = 0;
    // How its textures are sampled. Both axes wrap to a border that is black, and transparent where
    // there is alpha.
    bool hasBorder = false;
    bool hasAlpha = false;
    bool hasMipmaps = false;

  protected:
    GL_Image(int imageWidth, int imageHeight, int count);
};
