// The render target that an image node draws its product into. Where an input of the node shows the
// node's own picture (a cycle that closes without another target between), the node draws into a
// second target and the two change places: what it reads is its picture of the last time. Main
// thread, with the OpenGL context.
#pragma once

#include <memory>

#include "gpu/gl_framebuffer.h"

class ImageNode;

class NodeTarget {
  public:
    // Makes a standard target and offers it as the node's images[0].
    explicit NodeTarget(ImageNode& node);

    // The target for this frame, bound, with its draw buffers and viewport set. The inputs must
    // hold what the pass is going to read.
    void begin();
    // The target that is not on offer, for a node whose inputs run again while it draws: they go on
    // reading the picture of the last time until the end.
    void beginAside();
    // The same target bound again, for a node that draws into it several times in a frame.
    void resume() const;
    // Unbinds it and offers it as the product.
    void end();
    const GL_FrameBuffer& front() const { return *front_; }

  private:
    bool isRead(const std::shared_ptr<GL_FrameBuffer>& picture) const;
    void swapTargets();
    void makeBack();

    ImageNode& node_;
    std::shared_ptr<GL_FrameBuffer> front_;  // images[0]
    std::shared_ptr<GL_FrameBuffer> back_;   // made when first needed
};
