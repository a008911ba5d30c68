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

bool MaterialNode::process() {
    TakeMaterialImage(*this, 0, data->diffuseImage);
    TakeMaterialImage(*this, 1, data->illuminationImage);
    return true;
}

void TakeMaterialImage(const Node& node, int port, std::shared_ptr<GL_Image>& image) {
    const Node* source = node.getInput(port);
    if (ImageNode::isImageSource(source)) image = static_cast<const ImageNode*>(source)->images[0];
}

std::shared_ptr<MaterialData> MaterialInput(const Node& node, int port) {
    const Node* source = node.getInput(port);
    return IsMaterialSource(source) ? static_cast<const MaterialNode*>(source)->data : nullptr;
}
