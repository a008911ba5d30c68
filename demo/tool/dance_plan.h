// The choreography: where the feet stand and when, which foot bears the weight, and what arms, hips
// and head do, as marks on the music's grid. Nothing here moves yet; dance_performance.h makes a
// body follow it. Depends on nothing; any thread.
#pragma once

#include <array>
#include <vector>

#include "demo/tool/dance_math.h"

namespace dance {

inline constexpr double kDanceSeconds = 230;
inline constexpr double kBeatSeconds = 0.5;
inline constexpr double kBarSeconds = 2;

enum Side { kLeft, kRight };  // the dancer's own
constexpr Side otherSide(Side side) {
    return side == kLeft ? kRight : kLeft;
}
// Which way along the dancer's right.
constexpr double signOf(Side side) {
    return side == kLeft ? -1.0 : 1.0;
}

// A foot comes to a place and stays there until it leaves for the next one.
struct FootMark {
    double landSeconds = 0;
    double travelSeconds = 0;  // how long before it lifts off the place before
    double x = 0, front = 0;   // of the ankle on the floor, to the dancer's right and ahead
    double yaw = 0;
    double height = 0;  // above the floor: a kick or a lifted knee
    double arc = 0;     // how much higher the way there leads

    bool stands() const { return height <= 0; }
};

// A value that is wanted from a second on.
struct Mark {
    double seconds, value;
};

// Where a wrist is wanted, in metres from its shoulder, and to where the elbow points.
struct ArmPose {
    Point wrist;  // outward to the arm's own side, up, to the front
    Point elbow;  // the same directions
};

struct ArmMark {
    double seconds;
    ArmPose pose;
    double quickness;  // of the spring that pulls the wrist there, radians a second
};

struct DancePlan {
    std::array<std::vector<FootMark>, 2> feet;  // by Side, in order of time
    std::array<std::vector<ArmMark>, 2> arms;
    std::vector<Mark> weight;    // on the right foot, 0 to 1
    std::vector<Mark> crouch;    // metres that the hips sink
    std::vector<Mark> bounce;    // metres that they dip on every beat
    std::vector<Mark> sway;      // how much hips and chest go with the weight, 1 plainly
    std::vector<Mark> twist;     // of the chest to the left, radians
    std::vector<Mark> lean;      // of the chest to the front, radians
    std::vector<Mark> nod;       // of the head on every beat, radians
    std::vector<Mark> headLean;  // of the head to the front, radians
    std::vector<Mark> headTilt;  // of the head to the right, radians
    std::vector<Mark> calm;      // 0 in full motion, 1 standing and breathing
    std::vector<FootMark> hops;  // both feet off the floor: only times and arc are used
};

DancePlan PlanDance();

}  // namespace dance
