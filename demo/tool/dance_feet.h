// The feet of a dance, frame by frame: planted at their marks, lifted over the way in between.
// Depends on the plan; any thread.
#pragma once

#include "demo/tool/dance_plan.h"

namespace dance {

struct FootPlace {
    Point ankle;
    double yaw = 0;
    double pitch = 0;    // of the toes, upwards
    double stanceX = 0;  // of the last place that it stood at, or is about to stand at
    double stanceFront = 0;
    double stanceYaw = 0;
    bool planted = true;
};

// Follows one foot's marks; asked in order of time.
class FootTrack {
  public:
    explicit FootTrack(const std::vector<FootMark>& marks) : marks_(marks) {}
    FootPlace at(double seconds);

  private:
    const std::vector<FootMark>& marks_;
    std::size_t mark_ = 0;  // the last one that the foot has come to
};

// How far along the ground the sensor's origin lies from the dancer's home.
inline constexpr double kSensorDistance = 2.6;

}  // namespace dance
