// One textured plane of two units in x and y, its only object. Type name "3DPrimitive". Main
// thread, with the OpenGL context.
#pragma once

#include <string>

#include "core/geometry_node.h"

class GeometryNode_Primitives : public GeometryNode {
  public:
    GeometryNode_Primitives(Engine* owner, const std::string& nodeId);

    bool canConnect(int port, const Node* source) const override;
    // The connected material goes to the object; the node's own stays null.
    bool process() override;

    Vec3 translate;
    Vec3 rotate;  // degrees
    float scaleX;
    float scaleY;
};
