// Gathers the objects of up to six geometry nodes into one list, under one more transform. Ten
// parameters are numbers as text, which rescale and offset the animated ones. Type name "Combine
// Geometry". Main thread, with the OpenGL context.
#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "core/geometry_node.h"

class GeometryNode_CombineGeometry : public GeometryNode {
  public:
    static constexpr int kInputs = 6;
    // As many as six rains of models hold. Nodes that feed each other on many ports would multiply
    // their objects without end.
    static constexpr std::size_t kMaxObjects = 600000;

    GeometryNode_CombineGeometry(Engine* owner, const std::string& nodeId);

    bool canConnect(int port, const Node* source) const override;
    // Rebuilds the list, but for the pass after a load, in which the product stays as it is.
    bool process() override;

    Vec3 translate;
    Vec3 rotate;  // degrees
    float scale;
    std::array<std::string, 3> rotateFactor;     // "mrx", "mry", "mrz"
    std::array<std::string, 3> rotateOffset;     // "rx", "ry", "rz", degrees
    std::array<std::string, 3> translateOffset;  // "tx", "ty", "tz"
    std::string translateFactor;                 // "tsc"

  private:
    void takeObjects(const GeometryNode& input);
    void composeTransform();
};
