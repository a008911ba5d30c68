// Base of nodes whose product is a 4 by 4 matrix, such as a camera. Main thread.
#pragma once

#include "core/node.h"
#include "gpu/math_types.h"

class Transform3DNode : public Node {
  public:
    using Node::Node;
    int getType() const override { return kTransform3DNode; }

    Mat4 matrix;
};
