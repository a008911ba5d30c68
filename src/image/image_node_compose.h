// Lays picture B over picture A with premultiplied blending, each stretched over the frame. Main
// thread, with the OpenGL context.
#pragma once

#include <memory>

#include "core/image_node.h"
#include "core/node_target.h"

class ShaderProgram;

class ImageNode_Compose : public ImageNode {
  public:
    ImageNode_Compose(Engine* owner, const std::string& nodeId);
    ~ImageNode_Compose() override;

    bool canConnect(int port, const Node* source) const override;
    bool process() override;

    std::unique_ptr<ShaderProgram> shader;

  private:
    NodeTarget target_;
};
