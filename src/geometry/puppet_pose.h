// The limbs of a puppet: which objects of a model hang on which joints, and the matrices that lay
// them there. Depends on the skeleton of a capture only; any thread, without OpenGL.
//
// How a model is built: every object is a limb with its centre at its origin, y along the limb, as
// a body stands that faces z with hanging arms and legs. y leads from joint B to joint A: arms,
// hands and legs up, the head up, the feet towards the toes (a foot is modelled as if it were
// raised to stand on its heel, with the sole towards z). x leads to the side of the limbs that are
// called RIGHT, which are the ones on the right of somebody who looks at the puppet's face.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "geometry/skeleton_capture.h"
#include "gpu/math_types.h"

enum class LimbKind : int {
    kHead = 1,
    kRightHand,
    kLeftHand,
    kRightLowerArm,
    kLeftLowerArm,
    kRightUpperArm,
    kLeftUpperArm,
    kTorso,
    kTricenter,
    kRightUpperLeg,
    kLeftUpperLeg,
    kRightLowerLeg,
    kLeftLowerLeg,
    kRightFoot,
    kLeftFoot,
};

// An object of the model that hangs on the skeleton.
struct PuppetLimb {
    LimbKind kind = LimbKind::kHead;
    JointType jointA = kSpineBase, jointB = kSpineBase;  // the torso and the pelvis have none
    std::size_t object = 0;                              // index in the node's objects
    Mat4 transform;                                      // from the object to the skeleton's space
};

// What the author sets. Offsets are parts of the limb's length, from joint B towards joint A.
struct PuppetShape {
    float jointScale = 10;
    float headOffset = 0;
    float torsoOffset = 0;
    float shoulderOffset = 0;  // upper arms
    float handOffset = 0;
    float thighOffset = 0;  // upper legs
    float kneeOffset = 0;   // lower legs
};

// Appends a limb for every limb name that the object's name contains, in the order of LimbKind.
void BindLimbs(std::string_view objectName, std::size_t object, std::vector<PuppetLimb>& limbs);

// Size of the model in the skeleton's space.
float LimbScale(float jointScale);

// Sets the matrices of the limbs. Each lies along its two joints and is never mirrored. Its roll
// follows from the body: it is carried from the axes of shoulders and hips down the limbs by the
// smallest turns, so that no direction that a limb can take makes it spin.
void PoseLimbs(const Skeleton& skeleton, const PuppetShape& shape, std::span<PuppetLimb> limbs);
