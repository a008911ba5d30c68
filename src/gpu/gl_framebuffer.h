// A render target: colour attachment i is texture i of the image. The thread that owns the OpenGL
// context.
#pragma once

#include "gpu/gl_image.h"

enum class TargetDepth { None, Depth32 };
enum class TargetWrap { Border, Repeat };

class GL_FrameBuffer : public GL_Image {
  public:
    // `bitsPerChannelWanted` 8 or 16 (16-bit float); any other value leaves the target without
    // storage and incomplete. An incomplete target is told on the debug channel and kept.
    GL_FrameBuffer(int imageWidth, int imageHeight, int attachmentCount, int bitsPerChannelWanted,
                   std::uint32_t formatWanted, TargetDepth depth, TargetWrap wrap);
    ~GL_FrameBuffer() override;

    void Bind() const;
    static void Unbind();
    void SelectDrawBuffers() const;
    void SetViewport() const;  // the whole target
    // Draws the shared quad over the whole target with the program and textures that are current.
    void Fill() const;

    std::uint32_t bitsPerChannel;
    std::uint32_t format;
    bool hasDepth;
    std::uint32_t framebuffer = 0;
    std::uint32_t depthBuffer = 0;
    bool complete = false;

  private:
    bool tryOtherDepthFormats() const;
};

// The standard target of image nodes: 1920 by 1080, one 16-bit float RGBA attachment, no depth,
// transparent black outside.
constexpr int kFrameWidth = 1920;
constexpr int kFrameHeight = 1080;
std::unique_ptr<GL_FrameBuffer> MakeFrameTarget();
