// A camera that circles a point of the y axis and wiggles like one that is held by hand. Type name
// "OrbitCamera". Main thread.
#pragma once

#include <string>

#include "core/transform3d_node.h"

class Transform3DNode_OrbitCamera : public Transform3DNode {
  public:
    Transform3DNode_OrbitCamera(Engine* owner, const std::string& nodeId);

    bool canConnect(int port, const Node* source) const override;
    bool process() override;

    float height;
    float globalSpeed;  // radians a second
    float radius;
    float pan;  // along the side axis, eye and target together
    float targetHeight;
    float wiggle;
    float wiggleSpeed;
    float timeOffset;  // half turns
};
