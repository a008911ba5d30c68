#include "geometry/geometry_node_particle_mesher.h"

#include "core/engine.h"
#include "geometry/material_node.h"
#include "geometry/particle_surface.h"

namespace {

// Two charges of 1 in one place: a sphere of radius sqrt(2).
constexpr Particle kParticles[] = {{0, 0, 0, 1}, {0, 0, 0, 1}};

}  // namespace

GeometryNode_ParticleMesher::GeometryNode_ParticleMesher(Engine* owner, const std::string& nodeId)
    : GeometryNode(owner, nodeId) {
    setInputCount(1);
    inputNames[0] = "Material";
    engine->declareString(this, "Filename", filename, "");
    engine->declareVec3(this, "Translate", &translate.x, -20.0f, 20.0f, 2, {0, 0, 0});
    engine->declareVec3(this, "Rotate", &rotate.x, 0.0f, 360.0f, 2, {0, 0, 0});
    engine->declareFloat(this, "Scale", scale, 0.0f, 10.0f, 2, 1.0f, true);
}

bool GeometryNode_ParticleMesher::canConnect(int, const Node* source) const {
    return source != nullptr && source->getType() == kMaterialNode;
}

void GeometryNode_ParticleMesher::rebuild() {
    lastFilename = filename;
    built_ = true;
    Mat4Identity(transform);
    ClearObjects();
    GeometryObject blob;
    blob.name = "Blob";
    CreateMeshBuffers(blob, ParticleSurface(kParticles));
    AppendObject(blob);
}

bool GeometryNode_ParticleMesher::process() {
    if (!built_ || filename != lastFilename) rebuild();
    Mat4ComposeTRS(transform, translate, rotate, scale);
    material = MaterialInput(*this, 0);
    return true;
}
