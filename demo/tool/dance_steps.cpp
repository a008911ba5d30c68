#include "demo/tool/dance_steps.h"

namespace dance {

namespace {

constexpr double kHalfStance = 0.11;  // from home to either foot
constexpr double kToesOut = 0.16;     // radians

}  // namespace

DanceWriter::DanceWriter(DancePlan& plan) : plan_(plan) {
    for (const Side side : {kLeft, kRight}) {
        put(-1, side, signOf(side) * kHalfStance, 0, 0);
        arm(-8, side, arm_poses::kRest);
    }
    plan_.weight.push_back({-1, 0.5});
}

void DanceWriter::moveHome(double toRight, double ahead) {
    homeX_ += toRight * std::cos(homeYaw_) - ahead * std::sin(homeYaw_);
    homeFront_ += toRight * std::sin(homeYaw_) + ahead * std::cos(homeYaw_);
}

FootMark& DanceWriter::put(double beat, Side side, double toRight, double ahead,
                           double travelBeats) {
    FootMark mark;
    mark.landSeconds = at(beat);
    mark.travelSeconds = travelBeats * kBeatSeconds;
    mark.x = homeX_ + toRight * std::cos(homeYaw_) - ahead * std::sin(homeYaw_);
    mark.front = homeFront_ + toRight * std::sin(homeYaw_) + ahead * std::cos(homeYaw_);
    mark.yaw = homeYaw_ - signOf(side) * kToesOut;
    mark.arc = 0.06;
    auto& feet = plan_.feet[side];
    feet.push_back(mark);
    return feet.back();
}

void DanceWriter::step(double beat, Side side, double toRight, double ahead, Load load,
                       double travelBeats) {
    put(beat, side, toRight, ahead, travelBeats);
    const double onSide = load == Load::All ? 1.0 : load == Load::Half ? 0.5 : 0.06;
    weight(beat - 0.12, side == kRight ? onSide : 1 - onSide);
}

void DanceWriter::stepHome(double beat, Side side, Load load) {
    step(beat, side, signOf(side) * kHalfStance, 0, load);
}

void DanceWriter::kick(double beat, Side side, double toRight, double ahead, double height) {
    FootMark& mark = put(beat, side, toRight, ahead, 0.8);
    mark.height = height;
    mark.arc = 0.03;
    weight(beat - 1.0, side == kRight ? 0.0 : 1.0);
}

void DanceWriter::hop(double beat, double spread, double height) {
    constexpr double kAirBeats = 0.6;
    for (const Side side : {kLeft, kRight}) {
        put(beat, side, signOf(side) * spread, 0, kAirBeats).arc = height;
    }
    FootMark hop;
    hop.landSeconds = at(beat);
    hop.travelSeconds = kAirBeats * kBeatSeconds;
    hop.arc = height;
    plan_.hops.push_back(hop);
    weight(beat - 1, 0.5);
    crouch(beat - 0.9, 0.09);
    crouch(beat - 0.5, 0.01);
    crouch(beat - 0.05, 0.08);
}

void DanceWriter::weight(double beat, double onRight) {
    plan_.weight.push_back({at(beat), onRight});
}

void DanceWriter::arm(double beat, Side side, const ArmPose& pose, double quickness) {
    plan_.arms[side].push_back({at(beat), pose, quickness});
}

void DanceWriter::arms(double beat, const ArmPose& pose, double quickness) {
    arm(beat, kLeft, pose, quickness);
    arm(beat, kRight, pose, quickness);
}

void DanceWriter::stand() {
    weight(0.5, 0.75);
    weight(4.5, 0.25);
}

void DanceWriter::twoStep(Side first, double width) {
    const Side second = otherSide(first);
    const double s = signOf(first);
    step(0, first, s * (kHalfStance + width), 0);
    step(1, second, s * (width - 0.07), 0.02, Load::None);
    step(2, second, -s * (kHalfStance + width), 0);
    step(3, first, -s * (width - 0.07), 0.02, Load::None);
}

void DanceWriter::grapevine(Side first) {
    const Side second = otherSide(first);
    const double s = signOf(first);
    step(0, first, s * 0.36, 0);
    step(1, second, s * 0.52, -0.17);
    moveHome(s * 0.76, 0);
    step(2, first, s * kHalfStance, 0);
    step(3, second, -s * 0.06, 0.03, Load::None);
}

void DanceWriter::boxStep(Side first) {
    const Side second = otherSide(first);
    const double s = signOf(first);
    step(0, first, -s * 0.06, 0.26);
    step(1, second, -s * 0.10, -0.16);
    step(2, first, s * 0.30, -0.12);
    stepHome(3, second);
}

void DanceWriter::march(double kneeHeight, int knees) {
    for (int beat = 0; beat < knees; ++beat) {
        const Side side = beat % 2 == 0 ? kLeft : kRight;
        kick(beat + 0.22, side, signOf(side) * 0.10, 0.10, kneeHeight);
        plan_.feet[side].back().travelSeconds = 0.47 * kBeatSeconds;
        put(beat + 0.74, side, signOf(side) * kHalfStance, 0, 0.46).arc = 0;
    }
    weight(knees - 0.1, 0.5);
}

void DanceWriter::walk(double ahead) {
    constexpr double kStride = 0.36;
    const double s = ahead < 0 ? -1 : 1;
    step(0, kLeft, -0.09, s * kStride);
    step(1, kRight, 0.09, s * kStride * 2);
    step(2, kLeft, -0.09, s * kStride * 2.6);
    moveHome(0, s * kStride * 2.6);
    if (ahead > 0) {
        kick(2.8, kRight, 0.10, 0.42, 0.28);
        step(3.36, kRight, kHalfStance, 0, Load::Half, 0.5);
    } else {
        stepHome(3, kRight, Load::Half);
    }
}

void DanceWriter::kickSteps(Side first) {
    for (int half = 0; half < 2; ++half) {
        const Side foot = half == 0 ? first : otherSide(first);
        const double beat = half * 2;
        stepHome(beat, foot);
        kick(beat + 0.85, otherSide(foot), signOf(foot) * 0.12, 0.46, 0.30);
        plan_.feet[otherSide(foot)].back().travelSeconds = 0.75 * kBeatSeconds;
    }
    step(3.37, first, signOf(first) * kHalfStance, 0, Load::Half, 0.5);
}

void DanceWriter::lunge(Side side) {
    const double s = signOf(side);
    step(0, side, s * 0.62, 0.05, Load::All, 0.85);
    crouch(-0.3, 0.15);
    crouch(2.2, 0.02);
    step(3, side, s * kHalfStance, 0, Load::Half, 0.9);
}

void DanceWriter::spin(Side towards) {
    const double quarter = -signOf(towards) * std::numbers::pi / 2;
    Side foot = towards;
    for (const double beat : {0.0, 0.85, 1.7, 2.5}) {
        turnHome(quarter);
        step(beat, foot, signOf(foot) * (kHalfStance + 0.02), 0, Load::All, 0.7);
        foot = otherSide(foot);
    }
    step(3.1, foot, signOf(foot) * kHalfStance, 0, Load::Half, 0.5);
}

void DanceWriter::jumpingJack() {
    for (int beat = 0; beat < 4; ++beat) hop(beat, beat % 2 == 0 ? 0.34 : kHalfStance, 0.10);
}

void DanceWriter::travel(double startBeat, double stopBeat, double toRight, int pairs) {
    const Side leading = toRight > 0 ? kRight : kLeft;
    const double each = (stopBeat - startBeat) / (2 * pairs);
    for (int i = 0; i < pairs; ++i) {
        moveHome(toRight / pairs, 0);
        const double beat = startBeat + (2 * i + 1) * each;
        step(beat, leading, signOf(leading) * kHalfStance, 0, Load::All,
             std::min(0.62, 0.9 * each));
        step(beat + each, otherSide(leading), -signOf(leading) * kHalfStance, 0,
             i + 1 < pairs ? Load::All : Load::Half, std::min(0.62, 0.9 * each));
    }
}

}  // namespace dance
