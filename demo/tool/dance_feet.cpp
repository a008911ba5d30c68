#include "demo/tool/dance_feet.h"

#include "demo/tool/dance_performance.h"

namespace dance {

namespace {

// How far the toes point down right after the heel has left, and up before it comes back.
constexpr double kToeOff = 0.55;
constexpr double kHeelStrike = 0.16;

Point ankleOf(const FootMark& mark) {
    return {mark.x, bones::kAnkleHeight + mark.height, kSensorDistance - mark.front};
}

void standAt(FootPlace& place, const FootMark& mark) {
    place.stanceX = mark.x;
    place.stanceFront = mark.front;
    place.stanceYaw = mark.yaw;
}

// In the air the toes hang.
double restingPitch(const FootMark& mark) {
    return mark.stands() ? 0 : -std::min(0.5, mark.height * 2);
}

}  // namespace

FootPlace FootTrack::at(double seconds) {
    while (mark_ + 1 < marks_.size() && marks_[mark_ + 1].landSeconds <= seconds) ++mark_;
    const FootMark& from = marks_[mark_];
    const FootMark& to = marks_[std::min(mark_ + 1, marks_.size() - 1)];
    FootPlace place;
    place.ankle = ankleOf(from);
    place.yaw = from.yaw;
    place.pitch = restingPitch(from);
    place.planted = from.stands();
    standAt(place, from);
    const double travel = std::min(to.travelSeconds, to.landSeconds - from.landSeconds);
    const double part = travel > 0 ? 1 - (to.landSeconds - seconds) / travel : 0;
    if (part <= 0 || part > 1) return place;

    place.planted = false;
    place.ankle = mix(ankleOf(from), ankleOf(to), eased(part));
    const double rise = 4 * eased(part) * (1 - eased(part));
    place.ankle.y += to.arc * rise;
    place.yaw += (to.yaw - from.yaw) * eased(part);
    const double lift = std::sin(std::numbers::pi * part);
    const double swing = from.stands() ? -kToeOff * lift * (1 - part) : 0.0;
    const double strike = to.stands() ? kHeelStrike * lift * part : 0.0;
    place.pitch =
        restingPitch(from) + (restingPitch(to) - restingPitch(from)) * eased(part) + swing + strike;
    // The toes leave the floor last.
    if (from.stands()) place.ankle.y += bones::kFootAhead * std::sin(std::max(0.0, -swing));
    standAt(place, to);
    return place;
}

}  // namespace dance
