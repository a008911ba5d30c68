#include "geometry/geometry_node_randomize_material.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>

#include "core/engine.h"
#include "core/image_node.h"
#include "core/random.h"

namespace {

enum Port { kModel = 0, kIlluminationImage = 1, kDiffuseImage = 2, kPorts = 3 };

// Truncated; what 32 bits cannot hold, and what is no number, is the smallest integer.
std::int32_t Truncated(float value) {
    constexpr float kLimit = 2147483648.0f;
    if (value >= -kLimit && value < kLimit) return static_cast<std::int32_t>(value);
    return std::numeric_limits<std::int32_t>::min();
}

void TakeImage(const Node* source, std::shared_ptr<GL_Image>& image) {
    if (!ImageNode::isImageSource(source)) return;
    image = static_cast<const ImageNode*>(source)->images[0];
}

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
    engine->declareFloat(this, "Saturation", saturation, 0.0f, 3.0f, 2, 1.0f, true);
    engine->declareFloat(this, "Randomize", randomize, 0.0f, 1.0f, 2, 0.0f, true);
    engine->declareFloat(this, "Random Phase", randomPhase, 0.0f, 200.0f, 2, 0.0f, true);
    engine->declareFloat(this, "Random Seed", randomSeed, 0.0f, 10000.0f, 2, 5000.0f, true);
}

bool GeometryNode_RandomizeMaterial::canConnect(int port, const Node* source) const {
    if (port == kModel) return source != nullptr && source->getType() == kGeometryNode;
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

// A cut link leaves the picture that was there.
void GeometryNode_RandomizeMaterial::takeImages() {
    TakeImage(getInput(kIlluminationImage), materialTemplate.illuminationImage);
    TakeImage(getInput(kDiffuseImage), materialTemplate.diffuseImage);
}

// The number of entries is text that anybody may have written.
void GeometryNode_RandomizeMaterial::resizeTable() {
    const long wanted = std::max(std::strtol(count.c_str(), nullptr, 10), 0L);
    const std::size_t size = std::min(static_cast<std::size_t>(wanted), kMostMaterials);
    const std::size_t before = materials.size();
    materials.resize(size);
    for (std::size_t i = before; i < size; ++i) materials[i] = std::make_shared<MaterialData>();
}

void GeometryNode_RandomizeMaterial::fillTable() {
    Random::seed(static_cast<std::uint32_t>(Truncated(randomSeed)));
    for (const auto& entry : materials) vary(*entry);
}

// Takes five random numbers, whatever the parameters are.
void GeometryNode_RandomizeMaterial::vary(MaterialData& entry) const {
    float drifts[3];
    for (float& value : drifts) value = drift(Random::next());
    Random::next();

    entry = materialTemplate;
    entry.diffuse = 1.0f;
    float* const color = entry.illumColor;
    for (int i = 0; i < 3; ++i) color[i] *= 1.0f - drifts[i];
    const float luma = color[0] * 0.2125f + color[1] * 0.7154f + color[2] * 0.0721f;
    for (int i = 0; i < 3; ++i) {
        color[i] = (1.0f - saturation) * luma + saturation * color[i];
    }

    const float lot = static_cast<float>(Random::next() % 1000) / 1000.0f;
    const float on = illuminatedShare > lot ? 1.0f : 0.0f;
    entry.illumination *= on * illumination;
    entry.refFresnel *= fresnel;
    entry.reflection *= reflection;
}

// A triangle wave that runs with the phase, from a value that the random number fixes; 0 to
// `randomize`.
float GeometryNode_RandomizeMaterial::drift(int random) const {
    constexpr int kHalfPeriod = 10000;
    const std::int64_t at = std::int64_t{random} + Truncated(randomPhase * 10000.0f);
    const auto wave = static_cast<int>(at % (2 * kHalfPeriod)) - kHalfPeriod;
    return static_cast<float>(kHalfPeriod - std::abs(wave)) * randomize / 10000.0f;
}

void GeometryNode_RandomizeMaterial::takeObjects(const GeometryNode& source) {
    objects = source.objects;
    for (std::size_t i = 0; i < objects.size(); ++i) {
        auto& worn = objects[i].material;
        if (!materials.empty()) {
            worn = materials[i % materials.size()];
        } else if (worn == nullptr) {
            worn = source.material;
        }
    }
    transform = source.transform;
}
