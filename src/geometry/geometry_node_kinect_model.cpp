#include "geometry/geometry_node_kinect_model.h"

#include <cstdlib>

#include "core/engine.h"

namespace {

float Number(const std::string& text) {
    return static_cast<float>(std::atof(text.c_str()));
}

std::uint64_t NextLoadId() {
    static std::uint64_t last = 0;
    return ++last;
}

}  // namespace

GeometryNode_KinectModel::GeometryNode_KinectModel(Engine* owner, const std::string& nodeId)
    : GeometryNode(owner, nodeId), loadId(NextLoadId()) {
    engine->declareString(this, "Kinect File", kinectFile, "");
    engine->declareString(this, "Model File", modelFile, "");
    engine->declareFloat(this, "Time Offset", timeOffset, -10.0f, 10.0f, 3, 0.0f, true);
    engine->declareFloat(this, "Player Speed", playerSpeed, 0.0f, 3.0f, 2, 1.0f, true);
    engine->declareVec3(this, "Translate", &translate.x, -10.0f, 10.0f, 2, {0, 0, 0});
    engine->declareVec3(this, "Rotat-e", &rotate.x, 0.0f, 360.0f, 2, {0, 0, 0});
    engine->declareFloat(this, "Scale", scale, 0.0f, 10.0f, 2, 1.0f, true);
    engine->declareFloat(this, "Joint Scale", shape.jointScale, 0.0f, 20.0f, 2, 10.0f, true);
    engine->declareString(this, "Smoothing", smoothing, "0.9");
    engine->declareString(this, "Start Time", startTime, "0.0");
    engine->declareFloat(this, "off. Head", shape.headOffset, -2.0f, 2.0f, 2, 0.0f, true);
    engine->declareFloat(this, "off. Torso", shape.torsoOffset, -2.0f, 2.0f, 2, -0.1f, true);
    engine->declareFloat(this, "off. Shoulder", shape.shoulderOffset, -2.0f, 2.0f, 2, 0.0f, true);
    engine->declareFloat(this, "off. Hand", shape.handOffset, -2.0f, 2.0f, 2, 0.0f, true);
    engine->declareFloat(this, "off. Thigh", shape.thighOffset, -2.0f, 2.0f, 2, 0.0f, true);
    engine->declareFloat(this, "off. Knee", shape.kneeOffset, -2.0f, 2.0f, 2, 0.0f, true);
    loadedStartTime_ = startTime;
    loadedSmoothing_ = smoothing;
}

bool GeometryNode_KinectModel::canConnect(int, const Node*) const {
    return false;
}

float GeometryNode_KinectModel::startSeconds() const {
    return Number(startTime);
}

Mat4 GeometryNode_KinectModel::placement() const {
    Mat4 matrix;
    Mat4ComposeTRS(matrix, translate, rotate, scale);
    return matrix;
}

void GeometryNode_KinectModel::loadCapture() {
    loadedKinectFile_ = kinectFile;
    loadedStartTime_ = startTime;
    loadedSmoothing_ = smoothing;
    loadId = NextLoadId();
    ReadCaptureFile(kinectFile, frames_);
    PrepareCapture(frames_, Number(smoothing));
}

void GeometryNode_KinectModel::loadModel() {
    loadedModelFile_ = modelFile;
    loadId = NextLoadId();
    ClearObjects();
    limbs.clear();
    ObjObjects model;
    ReadObjFile(modelFile, model, kObjRecentreObjects | kObjUnwrap);
    for (const auto& [name, vertices] : model) {
        GeometryObject object;
        CreateMeshBuffers(object, vertices);
        object.name = name;
        BindLimbs(name, objects.size(), limbs);
        AppendObject(object);
    }
    lineModel.clear();
    std::string unheard;  // few machines have this file
    ReadObjFile("c:\\temp\\cubeline2.obj", lineModel, kObjRecentreObjects, &unheard);
}

void GeometryNode_KinectModel::pose(float demoTimeSeconds,
                                    std::span<PuppetLimb> limbsToPose) const {
    const float captureSeconds = demoTimeSeconds * playerSpeed + timeOffset + startSeconds();
    Skeleton skeleton;
    if (SampleCapture(frames_, captureSeconds, skeleton)) PoseLimbs(skeleton, shape, limbsToPose);
}

bool GeometryNode_KinectModel::process() {
    if (kinectFile != loadedKinectFile_ || startTime != loadedStartTime_ ||
        smoothing != loadedSmoothing_) {
        loadCapture();
        for (PuppetLimb& limb : limbs) limb.transform = Mat4{};
    }
    if (modelFile != loadedModelFile_) loadModel();
    setError((!kinectFile.empty() && frames_.empty()) || (!modelFile.empty() && objects.empty()));

    pose(engine->time, limbs);
    for (const PuppetLimb& limb : limbs) objects[limb.object].transform = limb.transform;
    transform = placement();
    return true;
}
