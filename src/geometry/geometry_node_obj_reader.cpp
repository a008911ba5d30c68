#include "geometry/geometry_node_obj_reader.h"

#include "core/engine.h"
#include "geometry/material_node.h"
#include "platform/debug_output.h"
#include "platform/task_pool.h"

GeometryNode_ObjReader::GeometryNode_ObjReader(Engine* owner, const std::string& nodeId)
    : GeometryNode(owner, nodeId) {
    setInputCount(1);
    inputNames[0] = "Material";
    engine->declareString(this, "Filename", filename, "");
    engine->declareVec3(this, "Translate", &translate.x, -20.0f, 20.0f, 2, {0, 0, 0});
    engine->declareVec3(this, "Rotate", &rotate.x, 0.0f, 360.0f, 2, {0, 0, 0});
    engine->declareFloat(this, "Scale", scale, 0.0f, 10.0f, 2, 1.0f, true);
    engine->declareBool(this, "Center", center, false);
    engine->declareBool(this, "Normalize", normalize, false);
    engine->declareBool(this, "Unwrap Def.", unwrap, false);
}

bool GeometryNode_ObjReader::canConnect(int, const Node* source) const {
    return IsMaterialSource(source);
}

std::uint32_t GeometryNode_ObjReader::flags() const {
    return (center ? kObjCentre : 0u) | (normalize ? kObjNormalise : 0u) |
           (unwrap ? kObjUnwrap : 0u);
}

bool GeometryNode_ObjReader::needsLoad() const {
    return filename != loadedFilename || flags() != loadedFlags;
}

GeometryNode_ObjReader::Model GeometryNode_ObjReader::readModel(const std::string& name,
                                                                std::uint32_t flags) {
    Model model{name, flags, std::make_unique<ObjObjects>(), {}};
    ReadObjFile(name, *model.objects, flags, &model.fault);
    return model;
}

void GeometryNode_ObjReader::prepareLoad(TaskPool& pool) {
    if (!needsLoad()) return;
    ahead_ = pool.run([name = filename, wanted = flags()] { return readModel(name, wanted); });
}

// The model that was read ahead if it is the one that is wanted now, else read here.
GeometryNode_ObjReader::Model GeometryNode_ObjReader::takeModel() {
    if (ahead_.valid()) {
        Model model = ahead_.get();
        if (model.name == filename && model.flags == flags()) return model;
    }
    return readModel(filename, flags());
}

void GeometryNode_ObjReader::rebuild() {
    loadedFlags = flags();
    loadedFilename = filename;
    ClearObjects();
    const Model model = takeModel();
    if (!model.fault.empty()) ReportBadFile(model.name, model.fault);
    objects.reserve(model.objects->size());
    for (const auto& [name, vertices] : *model.objects) {
        GeometryObject object;
        CreateMeshBuffers(object, vertices);
        object.name = name;
        AppendObject(object);
    }
}

bool GeometryNode_ObjReader::process() {
    if (needsLoad()) rebuild();
    Mat4ComposeTRS(transform, translate, rotate, scale);
    material = MaterialInput(*this, 0);
    return true;
}
