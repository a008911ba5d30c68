// Describes a surface. Type name "Material". Main thread.
#pragma once

#include <memory>

#include "core/material_data.h"
#include "core/node.h"

class MaterialNode : public Node {
  public:
    MaterialNode(Engine* owner, const std::string& nodeId);

    int getType() const override { return kMaterialNode; }
    bool canConnect(int port, const Node* source) const override;
    bool process() override;

    // The parameters are members of it. Never null.
    std::shared_ptr<MaterialData> data;
};

inline bool IsMaterialSource(const Node* source) {
    return source != nullptr && source->getType() == kMaterialNode;
}

// The surface that is connected to a node's port, or null.
std::shared_ptr<MaterialData> MaterialInput(const Node& node, int port);

// Stores the picture that is connected to a node's port. A cut link leaves the one that was there.
void TakeMaterialImage(const Node& node, int port, std::shared_ptr<GL_Image>& image);
