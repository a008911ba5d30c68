#include "geometry/material_node.h"

#include "core/engine.h"
#include "core/image_node.h"

MaterialNode::MaterialNode(Engine* owner, const std::string& nodeId)
    : Node(owner, nodeId), data(std::make_shared<MaterialData>()) {
    setInputCount(2);
    inputNames = {"Diffuse", "Illumination"};
    engine->declareFloat(this, "Diffuse", data->diffuse, 0.0f, 5.0f, 2, 1.0f, true);
    engine->declareFloat(this, "Illumination", data->illumination, 0.0f, 5.0f, 2, 0.0f, true);
    engine->declareVec4(this, "Illum Color", data->illumColor, {1, 1, 1, 1});
    engine->declareFloat(this, "Reflection", data->reflection, 0.0f, 5.0f, 2, 0.0f, true);
    engine->declareFloat(this, "Ref. Fresnel", data->refFresnel, 0.1f, 15.0f, 2, 1.0f, true);
    engine->declareInt(this, "Blend", data->blend, MaterialData::kNormal, {"Normal", "Add"});
}

bool MaterialNode::canConnect(int port, const Node* source) const {
    return (port == 0 || port == 1) && ImageNode::isImageSource(source);
}

// A cut link leaves the picture that was there.
bool MaterialNode::process() {
    std::shared_ptr<GL_Image>* const images[2] = {&data->diffuseImage, &data->illuminationImage};
    for (int port = 0; port < 2; ++port) {
        const Node* source = getInput(port);
        if (ImageNode::isImageSource(source)) {
            *images[port] = static_cast<const ImageNode*>(source)->images[0];
        }
    }
    return true;
}

std::shared_ptr<MaterialData> MaterialInput(const Node& node, int port) {
    const Node* source = node.getInput(port);
    return IsMaterialSource(source) ? static_cast<const MaterialNode*>(source)->data : nullptr;
}
