#include "demo/tool/dance_figures.h"
#include "demo/tool/dance_sections.h"

namespace dance {

using namespace arm_poses;
using Load = DanceWriter::Load;

namespace {

// Where the dancer stands to draw a figure, seen from its middle: the drawing arm's shoulder is
// close behind it.
constexpr double kStandAside = 0.20;

double standFor(std::size_t figure) {
    return kDrawnFigures[figure].x + kStandAside;
}

// While the left hand draws, the other rests and the body goes with the hand.
void drawing(DanceWriter& w, std::size_t figure, const ArmPose& freeArm) {
    const DrawnFigure& drawn = kDrawnFigures[figure];
    w.begin(drawn.startSeconds);
    w.arm(-0.8, kRight, freeArm, 8);
    w.bounce(0.012);
    w.nod(0.08);
    w.weight(-0.6, 0.45);
    w.twist(-0.6, -0.06);
    w.begin(drawn.stopSeconds);
    w.bounce(0.045);
    w.nod(0.22);
    w.twist(0.2, 0);
}

void travelTo(DanceWriter& w, std::size_t figure, double startSeconds, double stopSeconds,
              int pairs) {
    w.begin(startSeconds);
    const double beats = (stopSeconds - startSeconds) / kBeatSeconds;
    w.travel(0, beats, standFor(figure) - w.homeX(), pairs);
}

// Between the two rows of figures: a turn, a hop and a point to the ceiling.
void interlude(DanceWriter& w) {
    w.begin(185);
    w.spin(kRight);
    w.arms(0, kSide);
    w.arms(1.8, kOverhead);
    w.arms(3.4, kChest);
    w.begin(187);
    w.hop(1, 0.30, 0.11);
    w.arms(0.6, kHighOut, 14);
    w.hop(2, 0.12, 0.08);
    w.arms(1.9, kBent);
}

}  // namespace

void WriteClimax(DanceWriter& w) {
    w.begin(160);
    w.bounce(0.05);
    w.nod(0.22);
    w.sway(1.2);
    w.crouch(-0.6, 0);
    w.calm(0);
    w.jumpingJack();
    for (int beat = 0; beat < 4; ++beat) w.arms(beat - 0.35, beat % 2 == 0 ? kHighOut : kBent, 14);
    w.begin(162);
    w.twoStep(kLeft, 0.28);
    for (int beat = 0; beat < 4; ++beat) {
        w.arm(beat - 0.3, beat % 2 == 0 ? kLeft : kRight, kPunchUp, 14);
        w.arm(beat - 0.3, beat % 2 == 0 ? kRight : kLeft, kBent, 12);
    }
    w.begin(164);
    w.jumpingJack();
    for (int beat = 0; beat < 4; ++beat) w.arms(beat - 0.35, beat % 2 == 0 ? kSide : kClapHigh, 13);
    w.begin(166);
    w.kickSteps(kRight);
    for (int beat = 0; beat < 4; ++beat) w.arms(beat - 0.3, beat % 2 == 0 ? kGoal : kGoalDown, 14);
    travelTo(w, 0, 168, 169.5, 3);
    w.begin(168);
    for (int beat = 0; beat < 4; ++beat) {
        w.arm(beat - 0.3, kLeft, beat % 2 == 0 ? kAcross : kSide, 11);
        w.arm(beat - 0.3, kRight, beat % 2 == 0 ? kSide : kAcross, 11);
    }
}

void WriteDrawing(DanceWriter& w) {
    w.begin(170);
    w.step(0, kRight, 0.26, 0);
    w.step(1, kLeft, 0.08, 0.02, Load::None);
    w.stepHome(2, kLeft);
    w.stepHome(2.65, kRight, Load::Half);
    w.arm(0, kRight, kGoal, 11);
    w.arm(0, kLeft, kBent, 11);
    drawing(w, 0, kHip);
    travelTo(w, 1, 173.5, 175.5, 2);
    w.arms(0, kBent);
    w.arm(1, kRight, kSide);
    drawing(w, 1, kSideLow);
    travelTo(w, 2, 177.5, 179, 2);
    w.arm(0, kRight, kHighOut);
    drawing(w, 2, kHip);
    travelTo(w, 3, 181.75, 183, 2);
    w.arm(0, kRight, kBent);
    drawing(w, 3, kSideLow);
    interlude(w);
    drawing(w, 4, kHip);
    travelTo(w, 5, 190.5, 191.5, 2);
    drawing(w, 5, kSideLow);
    travelTo(w, 6, 193, 194, 2);
    drawing(w, 6, kHip);
    travelTo(w, 7, 195.25, 197, 2);
    w.arm(0, kRight, kSide);
    drawing(w, 7, kSideLow);
    // Aside, so that the last figure is seen, and the pose.
    w.begin(198.75);
    w.travel(0, 1, 0.42, 1);
    w.begin(199.75);
    w.step(0, kRight, 0.44, 0, Load::Half, 0.7);
    w.crouch(0, 0.06);
    w.arms(-0.5, kHighOut, 11);
    w.headLean(-0.4, -0.25);
}

void WriteEnding(DanceWriter& w) {
    w.begin(201);
    w.headLean(0, 0);
    w.crouch(0, 0);
    w.stepHome(1, kRight, Load::Half);
    w.begin(202);
    w.spin(kRight);
    w.arms(-0.3, kSide);
    w.arms(1.6, kOverhead);
    w.arms(3.6, kBent);
    // Back to the middle of the stage.
    w.begin(203.75);
    w.travel(0, 6, -w.homeX(), 4);
    for (int beat = 0; beat < 6; ++beat) w.arms(beat + 0.2, beat % 2 == 0 ? kClapHigh : kGoal, 13);
    w.begin(207.25);
    w.step(0, kLeft, -0.30, 0, Load::Half, 0.8);
    w.arms(-0.3, kHighOut, 9);
    // The bow, and standing until the light goes out.
    w.begin(208);
    w.bounce(0);
    w.nod(0);
    w.sway(0.7);
    w.calm(0.6);
    w.stepHome(4, kLeft, Load::Half);
    w.arm(3, kRight, kChest, 4);
    w.arm(3, kLeft, kSideLow, 4);
    w.lean(5, 0.75);
    w.headLean(5, 0.5);
    w.lean(10, 0);
    w.headLean(10.5, 0.05);
    w.arms(10, kRest, 4);
    w.begin(215);
    w.calm(1);
    w.stand();
    for (int wave = 0; wave < 4; ++wave) {
        w.arm(2 + wave * 2, kLeft, wave % 2 == 0 ? kHighOut : kPunchUp, 7);
    }
    w.arm(10, kLeft, kRest, 4);
    w.begin(221);
    w.stand();
    w.headLean(4, 0.5);
    w.lean(4, 0.1);
}

}  // namespace dance
