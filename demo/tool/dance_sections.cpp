#include "demo/tool/dance_sections.h"

#include <functional>

namespace dance {

using namespace arm_poses;

namespace {

// --- arms for one bar

// Opposite to the legs of a two-step, which leads with `first`.
void swingArms(DanceWriter& w, Side first) {
    for (int beat = 0; beat < 4; ++beat) {
        const Side front = (beat < 2) == (first == kLeft) ? kRight : kLeft;
        w.arm(beat - 0.2, front, beat % 2 == 0 ? kSwingFront : kBent);
        w.arm(beat - 0.2, otherSide(front), beat % 2 == 0 ? kSwingBack : kRest);
    }
}

void clapArms(DanceWriter& w) {
    w.arms(-0.3, kBent);
    w.arms(0.6, kClap, 15);
    w.arms(1.3, kGoalDown);
    w.arms(2.6, kClap, 15);
    w.arms(3.3, kBent);
}

// A finger to the ceiling, then to the floor on the other side.
void pointArms(DanceWriter& w, Side side) {
    w.arm(-0.3, otherSide(side), kHip);
    for (int half = 0; half < 2; ++half) {
        w.arm(half * 2 - 0.3, side, kHighOut, 12);
        w.arm(half * 2 + 0.7, side, kAcrossLow, 12);
    }
}

void punchArms(DanceWriter& w) {
    for (int beat = 0; beat < 4; ++beat) {
        const Side side = beat % 2 == 0 ? kRight : kLeft;
        w.arm(beat - 0.3, side, beat < 2 ? kFront : kPunchUp, 15);
        w.arm(beat - 0.3, otherSide(side), kBent, 13);
        w.twist(beat - 0.2, signOf(side) * 0.28);
    }
    w.twist(3.8, 0);
}

// Elbows at shoulder height, forearms up and down in turn.
void hingeArms(DanceWriter& w) {
    for (int beat = 0; beat < 4; ++beat) {
        w.arm(beat - 0.25, kLeft, beat % 2 == 0 ? kGoal : kGoalDown, 16);
        w.arm(beat - 0.25, kRight, beat % 2 == 0 ? kGoalDown : kGoal, 16);
    }
}

// Both arms from the chest to the sides and overhead.
void openArms(DanceWriter& w) {
    w.arms(-0.3, kChest);
    w.arms(0.7, kSide);
    w.arms(1.7, kHighOut);
    w.arms(2.7, kSide);
}

// One long arc of both arms, from one side overhead to the other, over two bars.
void sweepArms(DanceWriter& w, Side from) {
    const Side to = otherSide(from);
    w.arm(-0.4, from, kSide, 4);
    w.arm(-0.4, to, kAcross, 4);
    w.arms(1.8, kHigh, 4);
    w.arm(3.8, from, kAcross, 4);
    w.arm(3.8, to, kSide, 4);
    w.arms(6, kRest, 4);
    w.headTilt(-0.4, signOf(from) * 0.18);
    w.headTilt(3.6, signOf(to) * 0.18);
    w.headTilt(6.5, 0);
}

void hold(DanceWriter& w, double bounce, double sway, double nod, double calm) {
    w.bounce(bounce);
    w.sway(sway);
    w.nod(nod);
    w.calm(calm);
}

// --- bars with feet and arms

using Bar = std::function<void(DanceWriter&)>;

void bars(DanceWriter& w, double startSeconds, double stopSeconds,
          const std::vector<Bar>& figures) {
    std::size_t next = 0;
    for (double bar = startSeconds; bar < stopSeconds; bar += kBarSeconds) {
        w.begin(bar);
        figures[next++ % figures.size()](w);
    }
}

void sideBar(DanceWriter& w, double width) {
    w.twoStep(kLeft, width);
    swingArms(w, kLeft);
}

void vineBar(DanceWriter& w, Side side) {
    w.grapevine(side);
    w.arms(-0.3, kChest);
    w.arms(0.7, kSideLow);
    w.arms(1.7, kChest);
    w.arm(2.6, side, kHighOut);
    w.arm(2.6, otherSide(side), kHip);
}

void sectionIntro(DanceWriter& w) {
    w.begin(0);
    hold(w, 0, 0.7, 0, 1);
    w.headLean(0, 0.55);
    w.lean(0, 0.10);
    for (double bar = 0; bar < 16; bar += 4) {
        w.begin(bar);
        w.stand();
    }
    w.begin(7);
    w.headLean(0, 0.05);
    w.lean(0, 0);
    w.begin(8);
    w.arms(0, kSideLow, 2.5);
    w.arms(6, kOffer, 2.5);
    w.arms(10, kHigh, 2.5);
    w.headLean(9, -0.25);
    w.arms(13.5, kRest, 5);
    w.headLean(13.5, 0.05);
    w.weight(13, 0.5);
}

void sectionBuild(DanceWriter& w) {
    w.begin(16);
    hold(w, 0.025, 1, 0.14, 0.2);
    bars(w, 16, 24, {[](DanceWriter& b) { sideBar(b, 0.12); }});
    w.begin(24);
    hold(w, 0.035, 1, 0.2, 0);
    bars(w, 24, 30,
         {[](DanceWriter& b) { sideBar(b, 0.2); },
          [](DanceWriter& b) {
              b.twoStep(kLeft, 0.2);
              clapArms(b);
          }});
    w.begin(30);
    w.march(0.26, 3);
    openArms(w);
}

void sectionMainA(DanceWriter& w) {
    w.begin(32);
    hold(w, 0.045, 1.2, 0.2, 0);
    const std::vector<Bar> figures = {
        [](DanceWriter& b) { vineBar(b, kLeft); },
        [](DanceWriter& b) { vineBar(b, kRight); },
        [](DanceWriter& b) {
            b.twoStep(kLeft, 0.24);
            pointArms(b, kRight);
        },
        [](DanceWriter& b) {
            b.twoStep(kLeft, 0.24);
            pointArms(b, kLeft);
        },
        [](DanceWriter& b) {
            b.boxStep(kRight);
            clapArms(b);
        },
        [](DanceWriter& b) {
            b.boxStep(kLeft);
            hingeArms(b);
        },
        [](DanceWriter& b) {
            b.kickSteps(kLeft);
            swingArms(b, kLeft);
        },
        [](DanceWriter& b) {
            b.twoStep(kLeft, 0.16);
            punchArms(b);
        },
    };
    bars(w, 32, 64, figures);
}

void sectionBreak(DanceWriter& w) {
    w.begin(64);
    hold(w, 0.008, 1.3, 0.05, 0.8);
    for (int phrase = 0; phrase < 4; ++phrase) {
        w.begin(64 + phrase * 4);
        const Side side = phrase % 2 == 0 ? kLeft : kRight;
        w.step(0, side, signOf(side) * 0.26, 0.03, DanceWriter::Load::All, 1.2);
        w.weight(3.5, side == kLeft ? 0.8 : 0.2);
        w.stepHome(6, side, DanceWriter::Load::Half);
        sweepArms(w, side);
    }
    w.begin(79);
    w.crouch(0, 0.08);
    w.crouch(1.8, 0);
    w.arms(0, kChest, 6);
}

void sectionMainB(DanceWriter& w) {
    w.begin(80);
    hold(w, 0.05, 1.3, 0.22, 0);
    const std::vector<Bar> figures = {
        [](DanceWriter& b) {
            b.walk(1);
            swingArms(b, kRight);
        },
        [](DanceWriter& b) {
            b.walk(-1);
            openArms(b);
        },
        [](DanceWriter& b) { vineBar(b, kRight); },
        [](DanceWriter& b) { vineBar(b, kLeft); },
        [](DanceWriter& b) {
            b.kickSteps(kRight);
            hingeArms(b);
        },
        [](DanceWriter& b) {
            b.twoStep(kLeft, 0.28);
            clapArms(b);
        },
        [](DanceWriter& b) {
            b.twoStep(kLeft, 0.2);
            punchArms(b);
        },
        [](DanceWriter& b) {
            b.spin(kLeft);
            b.arms(-0.3, kSide);
            b.arms(1.6, kOverhead);
            b.arms(3.6, kBent);
        },
    };
    bars(w, 80, 112, figures);
}

void sectionLunges(DanceWriter& w) {
    w.begin(112);
    hold(w, 0.012, 1.1, 0.06, 0.5);
    for (int phrase = 0; phrase < 8; ++phrase) {
        const Side side = phrase % 2 == 0 ? kRight : kLeft;
        w.begin(112 + phrase * 4);
        w.lunge(side);
        w.arm(-0.4, side, phrase % 4 < 2 ? kHighOut : kOffer, 6);
        w.arm(-0.4, otherSide(side), phrase % 4 < 2 ? kSideLow : kHip, 6);
        w.headTilt(-0.4, signOf(side) * 0.2);
        w.headTilt(3, 0);
        w.arms(2.8, kRest, 5);
        w.begin(114 + phrase * 4);
        w.weight(0.5, side == kRight ? 0.25 : 0.75);
        w.arm(0, otherSide(side), kOverhead, 4);
        w.arm(2.2, otherSide(side), kRest, 4);
        w.weight(2.6, 0.5);
    }
}

void sectionMarch(DanceWriter& w) {
    w.begin(144);
    hold(w, 0.03, 1, 0.18, 0);
    bars(w, 144, 152, {[](DanceWriter& b) {
             b.march(0.22);
             swingArms(b, kLeft);
         }});
    w.begin(152);
    hold(w, 0.04, 1, 0.24, 0);
    bars(w, 152, 158, {[](DanceWriter& b) {
             b.march(0.34);
             punchArms(b);
         }});
    w.begin(158);
    w.stepHome(0.5, kLeft);
    w.stepHome(1.5, kRight, DanceWriter::Load::Half);
    w.arms(-0.3, kChest, 8);
    w.crouch(1.5, 0.14);
    w.lean(1.5, 0.3);
    w.headLean(1.5, 0.4);
    w.lean(3.6, 0);
    w.headLean(3.6, 0);
}

}  // namespace

void WriteOpening(DanceWriter& w) {
    sectionIntro(w);
    sectionBuild(w);
    sectionMainA(w);
    sectionBreak(w);
}

void WriteMiddle(DanceWriter& w) {
    sectionMainB(w);
    sectionLunges(w);
    sectionMarch(w);
}

}  // namespace dance
