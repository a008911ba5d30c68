#include "geometry/geometry_node_combine_geometry.h"

#include <cstdlib>
#include <utility>

#include "core/engine.h"

namespace {

double Number(const std::string& text) {
    return std::atof(text.c_str());
}

// In double precision, rounded once.
float Rescaled(const std::string& factor, float value, const std::string& offset) {
    return static_cast<float>(Number(factor) * static_cast<double>(value) + Number(offset));
}

}  // namespace

GeometryNode_CombineGeometry::GeometryNode_CombineGeometry(Engine* owner, const std::string& nodeId)
    : GeometryNode(owner, nodeId) {
    setInputCount(kInputs);
    for (std::string& name : inputNames) name = "Geo";
    engine->declareVec3(this, "Translate", &translate.x, -20.0f, 20.0f, 2, {0, 0, 0});
    engine->declareVec3(this, "Rotate", &rotate.x, 0.0f, 360.0f, 2, {0, 0, 0});
    engine->declareFloat(this, "Scale", scale, 0.0f, 10.0f, 2, 1.0f, true);
    engine->declareString(this, "mrx", rotateFactor[0], "1");
    engine->declareString(this, "mry", rotateFactor[1], "1");
    engine->declareString(this, "mrz", rotateFactor[2], "1");
    engine->declareString(this, "rx", rotateOffset[0], "0");
    engine->declareString(this, "ry", rotateOffset[1], "0");
    engine->declareString(this, "rz", rotateOffset[2], "0");
    engine->declareString(this, "tx", translateOffset[0], "0");
    engine->declareString(this, "ty", translateOffset[1], "0");
    engine->declareString(this, "tz", translateOffset[2], "0");
    engine->declareString(this, "tsc", translateFactor, "1");
}

bool GeometryNode_CombineGeometry::canConnect(int, const Node* source) const {
    return isGeometrySource(source);
}

bool GeometryNode_CombineGeometry::process() {
    if (engine->renderEnabled == 0) return true;
    ClearObjects();
    material = nullptr;
    for (int port = 0; port < kInputs; ++port) {
        const GeometryNode* input = geometryInput(port);
        // In a cycle an input may hold the objects that this node gave it: they would be taken
        // again in every frame.
        if (input == nullptr || input == this || input->isRunning()) continue;
        takeObjects(*input);
        if (material == nullptr) material = input->material;
    }
    composeTransform();
    return true;
}

void GeometryNode_CombineGeometry::takeObjects(const GeometryNode& input) {
    for (const GeometryObject& object : input.objects) {
        if (objects.size() == kMaxObjects) return;
        AppendObject(object);
        GeometryObject& copy = objects.back();
        Mat4Multiply(input.transform, copy.transform, object.transform);
        if (copy.material == nullptr) copy.material = input.material;
    }
}

void GeometryNode_CombineGeometry::composeTransform() {
    const Vec3 translation = {Rescaled(translateFactor, translate.x, translateOffset[0]),
                              Rescaled(translateFactor, translate.y, translateOffset[1]),
                              Rescaled(translateFactor, translate.z, translateOffset[2])};
    const Vec3 rotation = {Rescaled(rotateFactor[0], rotate.x, rotateOffset[0]),
                           Rescaled(rotateFactor[1], rotate.y, rotateOffset[1]),
                           Rescaled(rotateFactor[2], rotate.z, rotateOffset[2])};
    Mat4ComposeTRS(transform, translation, rotation, scale);
}
