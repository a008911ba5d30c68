// Base of nodes whose product is a list of drawable objects, one material and one matrix. Readers
// take them straight from the node: an object's model matrix is the node's `transform` times the
// object's, and its material is its own or else the node's. Main thread, with the OpenGL context.
#pragma once

#include <memory>
#include <vector>

#include "core/material_data.h"
#include "core/node.h"
#include "gpu/mesh_buffers.h"

class GeometryNode : public Node {
  public:
    using Node::Node;
    int getType() const override { return kGeometryNode; }

    static bool isGeometrySource(const Node* source) {
        return source != nullptr && source->getType() == kGeometryNode;
    }
    // The geometry node on a port, or null.
    const GeometryNode* geometryInput(int port) const {
        const Node* source = getInput(port);
        return isGeometrySource(source) ? static_cast<const GeometryNode*>(source) : nullptr;
    }
    void AppendObject(const GeometryObject& object) { objects.push_back(object); }
    void ClearObjects() { objects.clear(); }

    std::vector<GeometryObject> objects;
    std::shared_ptr<MaterialData> material;  // null when none is connected
    Mat4 transform;
};
