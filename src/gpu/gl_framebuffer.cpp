#include "gpu/gl_framebuffer.h"

#include <GL/glew.h>

#include <algorithm>

#include "gpu/full_screen_quad.h"
#include "platform/debug_output.h"

namespace {

constexpr int kMaxAttachments = 16;

void MakeAttachment(int index, std::uint32_t texture, const GL_FrameBuffer& target,
                    TargetWrap wrap) {
    const GLint wrapMode = wrap == TargetWrap::Repeat ? GL_REPEAT : GL_CLAMP_TO_BORDER;
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, wrapMode);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, wrapMode);
    if (target.bitsPerChannel == 8 || target.bitsPerChannel == 16) {
        const GLint internalFormat = target.bitsPerChannel == 8 ? GL_RGBA8 : GL_RGBA16F;
        glTexImage2D(GL_TEXTURE_2D, 0, internalFormat, target.width, target.height, 0, GL_RGBA,
                     GL_FLOAT, nullptr);
    }
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0 + static_cast<GLenum>(index),
                           GL_TEXTURE_2D, texture, 0);
}

bool IsBoundTargetComplete() {
    return glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
}

void StoreDepth(const GL_FrameBuffer& target, GLenum format) {
    glBindRenderbuffer(GL_RENDERBUFFER, target.depthBuffer);
    glRenderbufferStorage(GL_RENDERBUFFER, format, target.width, target.height);
    glBindRenderbuffer(GL_RENDERBUFFER, 0);
}

}  // namespace

GL_FrameBuffer::GL_FrameBuffer(int imageWidth, int imageHeight, int attachmentCount,
                               int bitsPerChannelWanted, std::uint32_t formatWanted,
                               TargetDepth depth, TargetWrap wrap)
    : GL_Image(imageWidth, imageHeight, attachmentCount),
      bitsPerChannel(static_cast<std::uint32_t>(bitsPerChannelWanted)),
      format(formatWanted),
      hasDepth(depth == TargetDepth::Depth32) {
    hasBorder = wrap == TargetWrap::Border;
    hasAlpha = true;
    glGenFramebuffers(1, &framebuffer);
    Bind();
    if (hasDepth) {
        glGenRenderbuffers(1, &depthBuffer);
        StoreDepth(*this, GL_DEPTH_COMPONENT32);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER,
                                  depthBuffer);
    }
    for (int i = 0; i < textureCount; ++i) {
        MakeAttachment(i, textures[static_cast<std::size_t>(i)], *this, wrap);
    }
    complete = IsBoundTargetComplete();
    if (!complete && hasDepth) complete = tryOtherDepthFormats();
    if (!complete) DebugFault("Unable to create frame buffer\n");
    Unbind();
}

// Not every driver renders to 32-bit integer depth.
bool GL_FrameBuffer::tryOtherDepthFormats() const {
    for (const GLenum depthFormat : {GL_DEPTH_COMPONENT32F, GL_DEPTH_COMPONENT24}) {
        StoreDepth(*this, depthFormat);
        if (IsBoundTargetComplete()) return true;
    }
    return false;
}

GL_FrameBuffer::~GL_FrameBuffer() {
    glDeleteFramebuffers(1, &framebuffer);
    if (hasDepth) glDeleteRenderbuffers(1, &depthBuffer);
}

void GL_FrameBuffer::Bind() const {
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
}

void GL_FrameBuffer::Unbind() {
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
}

void GL_FrameBuffer::SelectDrawBuffers() const {
    GLenum attachments[kMaxAttachments];
    for (int i = 0; i < kMaxAttachments; ++i) {
        attachments[i] = GL_COLOR_ATTACHMENT0 + static_cast<GLenum>(i);
    }
    glDrawBuffers(std::min(textureCount, kMaxAttachments), attachments);
}

void GL_FrameBuffer::SetViewport() const {
    glViewport(0, 0, width, height);
}

void GL_FrameBuffer::Fill() const {
    Bind();
    SelectDrawBuffers();
    SetViewport();
    DrawFullScreenQuad();
    Unbind();
}

std::unique_ptr<GL_FrameBuffer> MakeFrameTarget() {
    return std::make_unique<GL_FrameBuffer>(kFrameWidth, kFrameHeight, 1, 16, GL_RGBA,
                                            TargetDepth::None, TargetWrap::Border);
}
