// Writes steps, arms and accents into a plan: the dancer's vocabulary. All beats are counted from
// the start of a figure of the dance. Depends on the plan only; any thread.
#pragma once

#include "demo/tool/dance_plan.h"

namespace dance {

// The arms' positions that the figures are made of.
namespace arm_poses {
inline constexpr ArmPose kRest = {{0.09, -0.49, 0.07}, {0.5, 0, -1}};
inline constexpr ArmPose kBent = {{0.12, -0.22, 0.29}, {0.7, -0.6, -0.6}};
inline constexpr ArmPose kSwingFront = {{0.03, -0.32, 0.35}, {0.6, -0.7, -0.5}};
inline constexpr ArmPose kSwingBack = {{0.14, -0.44, -0.18}, {0.5, 0.2, -1}};
inline constexpr ArmPose kHip = {{0.07, -0.40, 0.06}, {1, 0.1, -0.5}};
inline constexpr ArmPose kSide = {{0.50, 0.03, 0.06}, {0, -1, -0.3}};
inline constexpr ArmPose kSideLow = {{0.40, -0.28, 0.10}, {0.3, -0.3, -1}};
inline constexpr ArmPose kHigh = {{0.10, 0.48, 0.10}, {1, 0, 0.1}};
inline constexpr ArmPose kHighOut = {{0.33, 0.38, 0.08}, {0.6, -0.6, -0.3}};
inline constexpr ArmPose kFront = {{-0.02, 0.0, 0.49}, {0.5, -1, 0}};
inline constexpr ArmPose kPunchUp = {{0.10, 0.34, 0.32}, {0.9, -0.5, 0}};
inline constexpr ArmPose kAcross = {{-0.20, -0.10, 0.34}, {0.7, -0.8, 0}};
inline constexpr ArmPose kAcrossLow = {{-0.22, -0.34, 0.24}, {0.8, -0.2, 0.1}};
inline constexpr ArmPose kChest = {{-0.04, -0.10, 0.25}, {1, -0.2, 0}};
inline constexpr ArmPose kGoal = {{0.31, 0.22, 0.10}, {1, -0.7, -0.2}};
inline constexpr ArmPose kGoalDown = {{0.31, -0.26, 0.10}, {1, 0.5, -0.4}};
inline constexpr ArmPose kClap = {{-0.155, -0.08, 0.36}, {1, -0.7, 0}};
inline constexpr ArmPose kClapHigh = {{-0.155, 0.38, 0.20}, {1, -0.2, 0.2}};
inline constexpr ArmPose kOffer = {{0.14, -0.06, 0.44}, {0.5, -1, -0.2}};
inline constexpr ArmPose kOverhead = {{-0.05, 0.46, 0.08}, {1, 0, 0.3}};
}  // namespace arm_poses

class DanceWriter {
  public:
    explicit DanceWriter(DancePlan& plan);

    // All that follows counts its beats from here.
    void begin(double seconds) { startSeconds_ = seconds; }
    double at(double beat) const { return startSeconds_ + beat * kBeatSeconds; }
    // Where the dancer stands when the feet are side by side, and how the body faces.
    double homeX() const { return homeX_; }
    void moveHome(double toRight, double ahead);
    void turnHome(double yaw) { homeYaw_ += yaw; }

    // --- feet; places are from home, to the right and ahead

    enum class Load { All, Half, None };  // how much of the weight the foot takes
    void step(double beat, Side side, double toRight, double ahead, Load load = Load::All,
              double travelBeats = 0.62);
    // Beside the other foot, where home is.
    void stepHome(double beat, Side side, Load load = Load::All);
    // The ankle in the air, with the weight on the other foot.
    void kick(double beat, Side side, double toRight, double ahead, double height);
    // Both feet leave the floor and land on the beat, apart by `spread` from home.
    void hop(double beat, double spread, double height);
    void weight(double beat, double onRight);

    // --- the rest of the body

    void arm(double beat, Side side, const ArmPose& pose, double quickness = 11);
    void arms(double beat, const ArmPose& pose, double quickness = 11);
    void crouch(double beat, double metres) { plan_.crouch.push_back({at(beat), metres}); }
    void bounce(double metres) { plan_.bounce.push_back({at(0), metres}); }
    void sway(double amount) { plan_.sway.push_back({at(0), amount}); }
    void twist(double beat, double angle) { plan_.twist.push_back({at(beat), angle}); }
    void lean(double beat, double angle) { plan_.lean.push_back({at(beat), angle}); }
    void nod(double angle) { plan_.nod.push_back({at(0), angle}); }
    void headLean(double beat, double angle) { plan_.headLean.push_back({at(beat), angle}); }
    void headTilt(double beat, double angle) { plan_.headTilt.push_back({at(beat), angle}); }
    void calm(double amount) { plan_.calm.push_back({at(0), amount}); }

    // --- figures of a bar or two; `first` is the side that leads

    void stand();                                  // weight to and fro
    void twoStep(Side first, double width);        // side, touch, side, touch
    void grapevine(Side first);                    // side, behind, side, touch: leads a metre away
    void boxStep(Side first);                      // across, back, side, home
    void march(double kneeHeight, int knees = 4);  // a lifted knee a beat
    void walk(double ahead);                       // three steps and a kick
    void kickSteps(Side first);                    // step and kick, twice
    void lunge(Side side);                         // wide and low, and back
    void spin(Side towards);                       // a full turn in four steps
    void jumpingJack();                            // out, in, out, in
    void travel(double startBeat, double stopBeat, double toRight, int pairs);  // side, together

  private:
    FootMark& put(double beat, Side side, double toRight, double ahead, double travelBeats);

    DancePlan& plan_;
    double startSeconds_ = 0;
    double homeX_ = 0, homeFront_ = 0, homeYaw_ = 0;
};

}  // namespace dance
