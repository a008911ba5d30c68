#include "geometry/geometry_node_primitives.h"

#include "core/engine.h"
#include "geometry/material_node.h"

namespace {

// v grows downward: the scene's shaders turn it over.
constexpr MeshVertex kPlane[6] = {
    {{-1, 1, 0}, {0, 0, 1}, {0, 0}}, {{1, 1, 0}, {0, 0, 1}, {1, 0}},
    {{1, -1, 0}, {0, 0, 1}, {1, 1}}, {{-1, 1, 0}, {0, 0, 1}, {0, 0}},
    {{1, -1, 0}, {0, 0, 1}, {1, 1}}, {{-1, -1, 0}, {0, 0, 1}, {0, 1}},
};

}  // namespace

GeometryNode_Primitives::GeometryNode_Primitives(Engine* owner, const std::string& nodeId)
    : GeometryNode(owner, nodeId) {
    setInputCount(1);
    inputNames[0] = "Material";
    engine->declareVec3(this, "Translate", &translate.x, -20.0f, 20.0f, 2, {0, 0, 0});
    engine->declareVec3(this, "Rotate", &rotate.x, 0.0f, 360.0f, 2, {0, 0, 0});
    engine->declareFloat(this, "Scale X", scaleX, 0.0f, 10.0f, 2, 1.0f, true);
    engine->declareFloat(this, "Scale Y", scaleY, 0.0f, 10.0f, 2, 1.0f, true);

    GeometryObject plane;
    CreateMeshBuffers(plane, kPlane);
    plane.name = "Plane";
    AppendObject(plane);
}

bool GeometryNode_Primitives::canConnect(int, const Node* source) const {
    return IsMaterialSource(source);
}

bool GeometryNode_Primitives::process() {
    Mat4 unscaled, scaling;
    Mat4ComposeTRS(unscaled, translate, rotate, 1.0f);
    Mat4Scale(scaling, {scaleX, scaleY, 1.0f});
    Mat4Multiply(unscaled, transform, scaling);
    objects[0].material = MaterialInput(*this, 0);
    return true;
}
