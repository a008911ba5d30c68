// Adds a soft halo to its picture: a blur across and down at half size, weighted by a mask, added
// back at full size. Main thread, with the OpenGL context.
#pragma once

#include <memory>

#include "core/image_node.h"
#include "core/node_target.h"
#include "image/directional_blur.h"

class ShaderProgram;

class ImageNode_Glow : public ImageNode {
  public:
    enum Port { kInputPort, kMaskPort };

    ImageNode_Glow(Engine* owner, const std::string& nodeId);
    ~ImageNode_Glow() override;

    bool canConnect(int port, const Node* source) const override;
    bool process() override;

    float radius;
    float intensity;
    float maskAmount;

    std::unique_ptr<GL_FrameBuffer> blurTargetX, blurTargetY;  // 960 by 540
    std::unique_ptr<ShaderProgram> composeProgram;
    DirectionalBlur blur;

  private:
    DirectionalBlur::Input inputOn(Port port) const;
    void blurBothWays(const DirectionalBlur::Input& source);
    void compose(const DirectionalBlur::Input& source);

    // Of the last picture on the input, also when there is none any more: the halo of a missing
    // picture is black, but the edges of its alpha lie as this says. All zeros before the first.
    Mat4 inputMatrix_ = {{}};
    int matrixLocation_ = -1;
    int intensityLocation_ = -1;
    NodeTarget target_;
};
