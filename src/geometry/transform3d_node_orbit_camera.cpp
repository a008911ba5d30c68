#include "geometry/transform3d_node_orbit_camera.h"

#include <cmath>

#include "core/engine.h"

namespace {

constexpr float kPi = 3.1415927f;
constexpr float kTargetDelaySeconds = 0.5f;  // the target wiggles behind the eye
constexpr float kTargetAmplitude = 0.2f;     // of the eye's

float Wave(float x) {
    return std::sin(std::cos(x * 0.25f) + x - std::sin(x * 0.05f) * 10.0f);
}

// Away from the place of rest, up and to the side.
Vec3 WiggleOffset(const Vec3& side, float phase, float amplitude) {
    const float sideways = Wave(phase) * amplitude;
    const float upwards = std::cos(phase) * amplitude;
    return {side.x * sideways, upwards + side.y * sideways, side.z * sideways};
}

}  // namespace

Transform3DNode_OrbitCamera::Transform3DNode_OrbitCamera(Engine* owner, const std::string& nodeId)
    : Transform3DNode(owner, nodeId) {
    engine->declareFloat(this, "Height", height, -3.0f, 3.0f, 2, 0.0f, true);
    engine->declareFloat(this, "Radius", radius, 0.0f, 20.0f, 2, 2.0f, true);
    engine->declareFloat(this, "Time Offset", timeOffset, -3.0f, 3.0f, 2, 0.0f, false);
    engine->declareFloat(this, "Target Height", targetHeight, -3.0f, 3.0f, 2, 0.0f, true);
    engine->declareFloat(this, "Global Speed", globalSpeed, -3.0f, 3.0f, 2, 0.0f, false);
    engine->declareFloat(this, "Wiggle", wiggle, -1.0f, 1.0f, 2, 0.0f, true);
    engine->declareFloat(this, "WiggleSpeed", wiggleSpeed, -3.0f, 3.0f, 2, 0.0f, true);
    engine->declareFloat(this, "Pan", pan, -4.0f, 4.0f, 2, 0.0f, true);
}

bool Transform3DNode_OrbitCamera::canConnect(int, const Node*) const {
    return false;
}

bool Transform3DNode_OrbitCamera::process() {
    const float angle = globalSpeed * engine->time + timeOffset * kPi;
    const Vec3 onCircle = {std::sin(angle) * radius, height, std::cos(angle) * radius};
    const Vec3 ahead = Vec3Normalise({-onCircle.x, targetHeight - onCircle.y, -onCircle.z});
    const Vec3 up = {0, 1, 0};
    const Vec3 side = Vec3Normalise(Vec3Cross(up, ahead));

    const Vec3 eyeOffset = WiggleOffset(side, wiggleSpeed * engine->time, wiggle);
    const Vec3 targetOffset =
        WiggleOffset(side, (engine->time - kTargetDelaySeconds) * wiggleSpeed, wiggle);
    const Vec3 eye = {onCircle.x + side.x * pan + eyeOffset.x,
                      onCircle.y + side.y * pan + eyeOffset.y,
                      onCircle.z + side.z * pan + eyeOffset.z};
    const Vec3 target = {side.x * pan + targetOffset.x * kTargetAmplitude,
                         targetHeight + side.y * pan + targetOffset.y * kTargetAmplitude,
                         side.z * pan + targetOffset.z * kTargetAmplitude};
    Mat4LookAt(matrix, eye, target, up);
    return true;
}
