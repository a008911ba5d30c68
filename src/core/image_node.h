// Base of every node whose product is a picture. Main thread, with the OpenGL context.
#pragma once

#include <array>
#include <memory>

#include "core/node.h"
#include "gpu/gl_image.h"
#include "gpu/math_types.h"

class ImageNode : public Node {
  public:
    using Node::Node;
    int getType() const override { return kImageNode; }

    // True for a source that is an image node, on any port: the rule of most image nodes.
    static bool isImageSource(const Node* source) {
        return source != nullptr && source->getType() == kImageNode;
    }
    // The image node on a port, or null.
    ImageNode* imageInput(int port) const {
        Node* source = getInput(port);
        return isImageSource(source) ? static_cast<ImageNode*>(source) : nullptr;
    }

    // The first is the product. A picture stays alive while any node still shows it.
    std::array<std::shared_ptr<GL_Image>, 4> images;
    // Consumers multiply (u, v, 0, 1) by it before they sample images[0].
    Mat4 textureMatrix;
};
