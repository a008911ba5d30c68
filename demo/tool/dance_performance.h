// Makes a body follow the choreography: feet stand where they are put, the weight travels over
// them, legs and arms are solved by inverse kinematics, and hands lag behind as hands do. Bones
// keep their lengths in every frame. Depends on the plan and the skeleton's joint numbers; any
// thread.
#pragma once

#include <vector>

#include "demo/tool/dance_plan.h"
#include "geometry/skeleton_capture.h"

namespace dance {

inline constexpr double kFramesPerSecond = 30;

// Lengths of bones, in metres.
namespace bones {
inline constexpr double kHipWidth = 0.10;  // from the spine's base to the side, and a little down
inline constexpr double kHipDrop = 0.03;
inline constexpr double kThigh = 0.43, kShin = 0.42;
inline constexpr double kAnkleHeight = 0.085;
inline constexpr double kFootAhead = 0.155, kFootDown = 0.045;
inline constexpr double kLowerSpine = 0.21, kUpperSpine = 0.25;
inline constexpr double kNeckLength = 0.08, kHeadLength = 0.155;
inline constexpr double kShoulderWidth = 0.175, kShoulderDrop = 0.02;
inline constexpr double kUpperArm = 0.28, kForearm = 0.255;
inline constexpr double kPalm = 0.075, kFingers = 0.09;
inline constexpr double kHandMiddle = kPalm + kFingers / 2;  // from the wrist
}  // namespace bones

using Pose = std::array<Point, kJointCount>;

// One pose for each frame, from second 0 to kDanceSeconds, both included.
std::vector<Pose> PerformDance(const DancePlan& plan);

}  // namespace dance
