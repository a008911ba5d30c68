// Moves and scales a picture without touching a pixel: passes its input's pictures on with a
// changed texture matrix. A larger scale shows more of the picture. Main thread.
#pragma once

#include "core/image_node.h"

class ImageNode_Transform2D : public ImageNode {
  public:
    ImageNode_Transform2D(Engine* owner, const std::string& nodeId);

    bool canConnect(int port, const Node* source) const override;
    bool process() override;

    float position[2];
    float scale;
};
