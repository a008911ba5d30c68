#include "geometry/geometry_node_screen_effect_kinect.h"

#include "core/engine.h"
#include "core/image_node.h"
#include "geometry/material_node.h"

GeometryNode_ScreenEffectKinect::GeometryNode_ScreenEffectKinect(Engine* owner,
                                                                 const std::string& nodeId)
    : GeometryNode(owner, nodeId), handMaterial(std::make_shared<MaterialData>()) {
    for (auto& entry : materials) entry = std::make_shared<MaterialData>();
    materialTemplate.illumination = 1.0f;
    materialTemplate.reflection = 1.0f;
    materialTemplate.refFresnel = 2.5f;

    setInputCount(3);
    inputNames = {"Puppet", "Light Mask", "Diffuse"};
    engine->declareFloat(this, "Illumination", illumination, 0.0f, 10.0f, 2, 1.0f, true);
    engine->declareFloat(this, "Reflection", reflection, 0.0f, 10.0f, 2, 1.0f, true);
    engine->declareFloat(this, "Fresnel", fresnel, 0.1f, 15.0f, 2, 1.0f, true);
    engine->declareVec4(this, "Illum Color", materialTemplate.illumColor, {0, 0, 0, 1});
    engine->declareFloat(this, "Saturation", variation.saturation, 0.0f, 3.0f, 2, 1.0f, true);
    engine->declareFloat(this, "Handlight", handlight, 0.0f, 10.0f, 2, 0.0f, true);
    engine->declareFloat(this, "Randomize", variation.randomize, 0.0f, 1.0f, 2, 0.0f, true);
    engine->declareFloat(this, "Random Phase", variation.phase, 0.0f, 200.0f, 2, 0.0f, true);
    engine->declareFloat(this, "Random Seed", randomSeed, 0.0f, 10000.0f, 2, 5000.0f, true);
}

bool GeometryNode_ScreenEffectKinect::canConnect(int port, const Node* source) const {
    if (port == 0) return isGeometrySource(source);
    return (port == 1 || port == 2) && ImageNode::isImageSource(source);
}

void GeometryNode_ScreenEffectKinect::takeImages() {
    TakeMaterialImage(*this, 1, materialTemplate.illuminationImage);
    TakeMaterialImage(*this, 2, materialTemplate.diffuseImage);
}

void GeometryNode_ScreenEffectKinect::fillMaterials() {
    SeedMaterials(randomSeed);
    for (const auto& entry : materials) {
        *entry = materialTemplate;
        VaryColour(*entry, variation);
        entry->illumination *= illumination;
        entry->refFresnel *= fresnel;
        entry->reflection *= reflection;
    }
}

void GeometryNode_ScreenEffectKinect::dress(const GeometryNode& source) {
    *handMaterial = *materials[0];
    if (handlight > 0) handMaterial->illumination = handlight;
    objects = source.objects;
    for (std::size_t i = 0; i < objects.size(); ++i) {
        const bool glows = handlight > 0 && objects[i].name.find("RIGHT_HAND") != std::string::npos;
        objects[i].material = glows ? handMaterial : materials[i % count];
    }
    transform = source.transform;
}

bool GeometryNode_ScreenEffectKinect::process() {
    if (engine->renderEnabled == 0) return true;
    takeImages();
    fillMaterials();
    const GeometryNode* source = geometryInput(0);
    if (source != nullptr && source != this) dress(*source);
    return true;
}
