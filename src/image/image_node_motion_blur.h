// Blurs in time: runs what hangs on its input several times within one frame, each time a little
// earlier, and shows the mean of the pictures. The one node that moves the engine's clock. Main
// thread, with the OpenGL context.
#pragma once

#include <cstdint>
#include <memory>

#include "core/image_node.h"
#include "core/node_target.h"

class ShaderProgram;

class ImageNode_MotionBlur : public ImageNode {
  public:
    ImageNode_MotionBlur(Engine* owner, const std::string& nodeId);
    ~ImageNode_MotionBlur() override;

    bool canConnect(int port, const Node* source) const override;
    bool process() override { return true; }
    // Afterwards the engine's clock is as it was, but the tracks hold the values of the earliest
    // moment, and nodes that ran are marked as the last run left them: nodes that run later in the
    // frame see that.
    bool update() override;

    // How many pictures are taken.
    int sampleCount() const;

    std::int32_t samples;  // a place in the list 4, 6, 8, 10, 12, 14, 16, 24, 32, 64
    float shutter;         // seconds from the frame's time back
    std::unique_ptr<ShaderProgram> program;

  private:
    bool runAt(float timeSeconds);
    void blendIn(int index);

    int matrixLocation_ = -1;
    NodeTarget target_;
};
