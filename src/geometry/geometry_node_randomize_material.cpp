#include "geometry/geometry_node_randomize_material.h"

#include <algorithm>
#include <cstdlib>

#include "core/engine.h"
#include "core/image_node.h"
#include "core/random.h"
#include "geometry/material_node.h"

namespace {

enum Port { kModel = 0, kIlluminationImage = 1, kDiffuseImage = 2, kPorts = 3 };

}  // namespace

GeometryNode_RandomizeMaterial::GeometryNode_RandomizeMaterial(Engine* owner,
                                                               const std::string& nodeId)
    : GeometryNode(owner, nodeId) {
    setInputCount(kPorts);
    inputNames = {"Model", "Illumination", "Diffuse"};
    materialTemplate.illumination = 1.0f;
    materialTemplate.reflection = 1.0f;
    materialTemplate.refFresnel = 2.5f;
    engine->declareString(this, "Count", count, "15");
    engine->declareFloat(this, "Illumination", illumination, 0.0f, 10.0f, 2, 1.0f, true);
    engine->declareFloat(this, "Reflection", reflection, 0.0f, 10.0f, 2, 1.0f, true);
    engine->declareFloat(this, "Fresnel", fresnel, 0.1f, 15.0f, 2, 1.0f, true);
    engine->declareVec4(this, "Illum Color", materialTemplate.illumColor, {0, 0, 0, 1});
    engine->declareFloat(this, "Illu%", illuminatedShare, 0.0f, 1.0f, 2, 1.0f, true);
    engine->declareFloat(this, "Saturation", variation.saturation, 0.0f, 3.0f, 2, 1.0f, true);
    engine->declareFloat(this, "Randomize", variation.randomize, 0.0f, 1.0f, 2, 0.0f, true);
    engine->declareFloat(this, "Random Phase", variation.phase, 0.0f, 200.0f, 2, 0.0f, true);
    engine->declareFloat(this, "Random Seed", randomSeed, 0.0f, 10000.0f, 2, 5000.0f, true);
}

bool GeometryNode_RandomizeMaterial::canConnect(int port, const Node* source) const {
    if (port == kModel) return isGeometrySource(source);
    return (port == kIlluminationImage || port == kDiffuseImage) &&
           ImageNode::isImageSource(source);
}

bool GeometryNode_RandomizeMaterial::process() {
    if (engine->renderEnabled == 0) return true;
    takeImages();
    resizeTable();
    fillTable();
    const GeometryNode* source = geometryInput(kModel);
    if (source != nullptr && source != this) takeObjects(*source);
    return true;
}

void GeometryNode_RandomizeMaterial::takeImages() {
    TakeMaterialImage(*this, kIlluminationImage, materialTemplate.illuminationImage);
    TakeMaterialImage(*this, kDiffuseImage, materialTemplate.diffuseImage);
}

// The number of entries is text that anybody may have written.
void GeometryNode_RandomizeMaterial::resizeTable() {
    const long wanted = std::max(std::strtol(count.c_str(), nullptr, 10), 0L);
    const std::size_t size = std::min(static_cast<std::size_t>(wanted), kMaxMaterials);
    const std::size_t before = materials.size();
    materials.resize(size);
    for (std::size_t i = before; i < size; ++i) materials[i] = std::make_shared<MaterialData>();
}

void GeometryNode_RandomizeMaterial::fillTable() {
    SeedMaterials(randomSeed);
    for (const auto& entry : materials) vary(*entry);
}

// Takes five random numbers, whatever the parameters are.
void GeometryNode_RandomizeMaterial::vary(MaterialData& entry) const {
    entry = materialTemplate;
    entry.diffuse = 1.0f;
    VaryColour(entry, variation);
    const float draw = static_cast<float>(Random::next() % 1000) / 1000.0f;
    const float on = illuminatedShare > draw ? 1.0f : 0.0f;
    entry.illumination *= on * illumination;
    entry.refFresnel *= fresnel;
    entry.reflection *= reflection;
}

void GeometryNode_RandomizeMaterial::takeObjects(const GeometryNode& source) {
    objects = source.objects;
    for (std::size_t i = 0; i < objects.size(); ++i) {
        auto& objectMaterial = objects[i].material;
        if (!materials.empty()) {
            objectMaterial = materials[i % materials.size()];
        } else if (objectMaterial == nullptr) {
            objectMaterial = source.material;
        }
    }
    transform = source.transform;
}
