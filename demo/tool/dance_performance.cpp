#include "demo/tool/dance_performance.h"

#include "demo/tool/dance_feet.h"
#include "demo/tool/dance_figures.h"
#include "demo/tool/dance_limbs.h"

namespace dance {

using namespace bones;

namespace {

constexpr double kFrameSeconds = 1 / kFramesPerSecond;
constexpr auto kFrames = static_cast<std::size_t>(kDanceSeconds * kFramesPerSecond) + 1;

double secondOf(std::size_t frame) {
    return static_cast<double>(frame) * kFrameSeconds;
}

// The marks as steps, made round over `sigmaFrames`.
Curve curveOf(const std::vector<Mark>& marks, double first, double sigmaFrames) {
    Curve curve(kFrames, first);
    std::size_t next = 0;
    double value = first;
    for (std::size_t i = 0; i < kFrames; ++i) {
        while (next < marks.size() && marks[next].seconds <= secondOf(i))
            value = marks[next++].value;
        curve[i] = value;
    }
    return blurred(curve, sigmaFrames);
}

// 1 on the beat, 0 half-way to the next.
double beatPulse(double seconds) {
    const double wave = 0.5 + 0.5 * std::cos(2 * std::numbers::pi * seconds / kBeatSeconds);
    return wave * std::sqrt(wave);
}

double slowWave(double seconds, double period) {
    return std::sin(2 * std::numbers::pi * seconds / period);
}

// --- what the drawing hand does

struct HandStroke {
    double part = 0;                 // of the arm that draws: 0 dances, 1 draws
    Point place;                     // of the hand's middle
    double toLeft = 0, upwards = 0;  // from the figure's middle, in its units
};

HandStroke strokeAt(double seconds) {
    constexpr double kRaiseSeconds = 0.55, kLowerSeconds = 0.45;
    for (const DrawnFigure& drawn : kDrawnFigures) {
        const double before = (seconds - (drawn.startSeconds - kRaiseSeconds)) / kRaiseSeconds;
        const double after = (drawn.stopSeconds + kLowerSeconds - seconds) / kLowerSeconds;
        if (before <= 0 || after <= 0) continue;
        const FigurePoint at = FigureAt(drawn.figure, (seconds - drawn.startSeconds) /
                                                          (drawn.stopSeconds - drawn.startSeconds));
        const Point place = {drawn.x - kFigureSize * at.x, kFigureHeight + kFigureSize * at.y,
                             kSensorDistance - kFigureAhead};
        return {std::min(eased(before), eased(after)), place, at.x, at.y};
    }
    return {};
}

// --- one arm

class Arm {
  public:
    Arm(const std::vector<ArmMark>& marks, Side side)
        : marks_(marks),
          side_(side),
          wrist_(marks.front().pose.wrist),
          elbow_(marks.front().pose.elbow),
          hand_({0, -1, 0}) {}

    // `chest`: the directions that the marks are told in.
    void pose(Pose& pose, const Point& shoulder, const Axes& chest, double seconds,
              const HandStroke& stroke) {
        while (next_ + 1 < marks_.size() && marks_[next_ + 1].seconds <= seconds) ++next_;
        const ArmMark& mark = marks_[next_];
        const double s = signOf(side_);
        const auto inChest = [&](const Point& p) { return chest.at(s * p.x, p.y, p.z); };
        const Point drift = {0.012 * slowWave(seconds + s, 3.7), 0.010 * slowWave(seconds, 5.3 + s),
                             0.012 * slowWave(seconds + 2 * s, 4.1)};
        const Point wanted =
            shoulder + inChest(wrist_.pull(mark.pose.wrist, mark.quickness, kFrameSeconds) + drift);
        const Point pole =
            inChest(elbow_.pull(mark.pose.elbow, mark.quickness * 0.8, kFrameSeconds));
        TwoBones arm = SolveTwoBones(shoulder, wanted, kUpperArm, kForearm, pole);
        constexpr double kHandQuickness = 24;
        Point fingers = unit(hand_.pull(unit(arm.end - arm.hinge), kHandQuickness, kFrameSeconds));

        if (stroke.part > 0) {
            const Point drawing = unit(stroke.place - shoulder);
            const Point drawnWrist = stroke.place - drawing * kHandMiddle;
            const Point drawnPole = mix(pole, inChest({0.9, -1.0, 0.1}), stroke.part);
            arm = SolveTwoBones(shoulder, mix(arm.end, drawnWrist, stroke.part), kUpperArm,
                                kForearm, drawnPole);
            fingers = unit(mix(fingers, drawing, stroke.part));
        }
        write(pose, arm, fingers, chest);
    }

  private:
    void write(Pose& pose, const TwoBones& arm, const Point& fingers, const Axes& chest) const {
        const std::size_t first = side_ == kLeft ? kElbowLeft : kElbowRight;
        const std::size_t tip = side_ == kLeft ? kHandTipLeft : kHandTipRight;
        pose[first] = arm.hinge;
        pose[first + 1] = arm.end;
        pose[first + 2] = arm.end + fingers * kPalm;
        pose[tip] = arm.end + fingers * (kPalm + kFingers);
        Point aside = cross(fingers, chest.right);
        if (length(aside) < 0.1) aside = cross(fingers, chest.up);
        pose[tip + 1] = arm.end + fingers * 0.055 + unit(aside) * 0.045;
    }

    const std::vector<ArmMark>& marks_;
    Side side_;
    std::size_t next_ = 0;
    Spring wrist_, elbow_, hand_;
};

// --- the whole body

class Performance {
  public:
    explicit Performance(const DancePlan& plan)
        : plan_(plan),
          weight_(curveOf(plan.weight, 0.5, 3.2)),
          crouch_(curveOf(plan.crouch, 0, 3)),
          bounce_(curveOf(plan.bounce, 0, 8)),
          sway_(curveOf(plan.sway, 1, 10)),
          twist_(curveOf(plan.twist, 0, 3.2)),
          lean_(curveOf(plan.lean, 0, 7)),
          nod_(curveOf(plan.nod, 0, 8)),
          headLean_(curveOf(plan.headLean, 0, 8)),
          headTilt_(curveOf(plan.headTilt, 0, 7)),
          calm_(curveOf(plan.calm, 1, 20)) {
        placeFeet();
        placePelvis();
    }

    std::vector<Pose> poses() {
        std::vector<Pose> result(kFrames);
        Arm left(plan_.arms[kLeft], kLeft);
        Arm right(plan_.arms[kRight], kRight);
        for (std::size_t i = 0; i < kFrames; ++i) {
            Pose& pose = result[i];
            const double seconds = secondOf(i);
            const HandStroke stroke = strokeAt(seconds);
            const Axes chest = chestAxes(i, stroke, 1);
            poseTrunk(pose, i, chest);
            const Axes armAxes = chestAxes(i, stroke, 0.5);
            left.pose(pose, pose[kShoulderLeft], armAxes, seconds, stroke);
            right.pose(pose, pose[kShoulderRight], armAxes, seconds, {});
            poseLegs(pose, i);
        }
        return result;
    }

  private:
    void placeFeet() {
        for (const Side side : {kLeft, kRight}) {
            FootTrack track(plan_.feet[side]);
            for (std::size_t i = 0; i < kFrames; ++i) feet_[side].push_back(track.at(secondOf(i)));
        }
    }

    Axes pelvisAxes(std::size_t i) const {
        return bodyAxes(yaw_[i] + hipYaw_[i], 0.5 * crouch_[i] + 0.35 * lean_[i],
                        -0.11 * sway_[i] * load(i));
    }
    // The weight from -1, all on the left, to 1.
    double load(std::size_t i) const { return 2 * weight_[i] - 1; }

    Axes chestAxes(std::size_t i, const HandStroke& stroke, double bent) const {
        const double seconds = secondOf(i);
        const double breath = calm_[i] * 0.02 * slowWave(seconds, 4);
        const double yaw = yaw_[i] - 0.5 * hipYaw_[i] + twist_[i] +
                           stroke.part * 0.16 * stroke.toLeft + 0.03 * slowWave(seconds, 6.1);
        const double pitch = 0.04 + lean_[i] + 1.4 * bounce_[i] * beatPulse(seconds) -
                             0.08 * stroke.part * stroke.upwards + breath + 0.4 * crouch_[i];
        const double roll = 0.09 * sway_[i] * load(i) - stroke.part * 0.09 * stroke.toLeft;
        return bodyAxes(yaw, pitch * bent, roll * bent);
    }

    // Where the hips' middle is in plan, and how high it can be with both ankles in reach.
    void placePelvis() {
        Curve x(kFrames), front(kFrames), yaw(kFrames), hipYaw(kFrames), low(kFrames);
        for (std::size_t i = 0; i < kFrames; ++i) {
            constexpr double kOverTheFoot = 0.72;
            const FootPlace& l = feet_[kLeft][i];
            const FootPlace& r = feet_[kRight][i];
            const double part = 0.5 + kOverTheFoot * (weight_[i] - 0.5);
            x[i] = l.stanceX + (r.stanceX - l.stanceX) * part;
            front[i] = l.stanceFront + (r.stanceFront - l.stanceFront) * part;
            yaw[i] = (l.stanceYaw + r.stanceYaw) / 2;
        }
        x_ = blurred(x, 3.4);
        front_ = blurred(front, 3.4);
        yaw_ = blurred(yaw, 4);
        for (std::size_t i = 0; i < kFrames; ++i) {
            const Point apart = feet_[kRight][i].ankle - feet_[kLeft][i].ankle;
            const double ahead = dot(apart, bodyAxes(yaw_[i], 0, 0).front);
            hipYaw[i] = std::clamp(0.5 * ahead, -0.3, 0.3);
        }
        hipYaw_ = blurred(hipYaw, 2.5);
        y_.resize(kFrames);
        for (std::size_t i = 0; i < kFrames; ++i) {
            y_[i] = wantedHeight(i);
            low[i] = std::max(0.0, y_[i] - reachableHeight(i));
        }
        constexpr std::size_t kReachFrames = 5;
        low = blurred(widened(low, kReachFrames), kReachFrames / 3.0);
        for (std::size_t i = 0; i < kFrames; ++i) y_[i] -= low[i];
    }

    double wantedHeight(std::size_t i) const {
        const double seconds = secondOf(i);
        double height = kAnkleHeight + kThigh + kShin + kHipDrop - 0.022;
        height -= crouch_[i] + bounce_[i] * beatPulse(seconds);
        height += calm_[i] * 0.003 * slowWave(seconds, 4);
        for (const FootMark& hop : plan_.hops) {
            const double part = 1 - (hop.landSeconds - seconds) / hop.travelSeconds;
            if (part > 0 && part < 1) height += 4 * hop.arc * part * (1 - part);
        }
        return height;
    }

    Point pelvisAt(std::size_t i) const {
        const double back = 0.3 * crouch_[i] + 0.10 * lean_[i] - 0.035;
        const Point over = {x_[i], y_[i], kSensorDistance - front_[i]};
        return over - bodyAxes(yaw_[i], 0, 0).front * back +
               Point{0.012 * calm_[i] * slowWave(secondOf(i), 7.3), 0, 0};
    }

    Point hipAt(const Point& pelvis, const Axes& axes, Side side) const {
        return pelvis + axes.at(signOf(side) * kHipWidth, -kHipDrop, 0);
    }

    double reachableHeight(std::size_t i) const {
        constexpr double kReach = (kThigh + kShin) * 0.9975;
        const Axes axes = pelvisAxes(i);
        const Point pelvis = pelvisAt(i);
        double height = 10;
        for (const Side side : {kLeft, kRight}) {
            const Point hip = hipAt(pelvis, axes, side);
            const Point& ankle = feet_[side][i].ankle;
            const double across = std::hypot(hip.x - ankle.x, hip.z - ankle.z);
            const double upright = std::sqrt(std::max(0.0, kReach * kReach - across * across));
            height = std::min(height, ankle.y + upright - (hip.y - pelvis.y));
        }
        return height;
    }

    void poseTrunk(Pose& pose, std::size_t i, const Axes& chest) const {
        const Axes pelvis = pelvisAxes(i);
        const double seconds = secondOf(i);
        pose[kSpineBase] = pelvisAt(i);
        pose[kHipLeft] = hipAt(pose[kSpineBase], pelvis, kLeft);
        pose[kHipRight] = hipAt(pose[kSpineBase], pelvis, kRight);
        const Point waist = unit(pelvis.up * 0.6 + chest.up * 0.4);
        pose[kSpineMid] = pose[kSpineBase] + waist * kLowerSpine;
        pose[kSpineShoulder] = pose[kSpineMid] + chest.up * kUpperSpine;
        const double shrug = 0.05 * calm_[i] * slowWave(seconds, 4) + 0.8 * bounce_[i];
        for (const Side side : {kLeft, kRight}) {
            const double s = signOf(side);
            const Point out = chest.at(s * kShoulderWidth, -kShoulderDrop, 0);
            pose[side == kLeft ? kShoulderLeft : kShoulderRight] =
                pose[kSpineShoulder] + turned(out, chest.front, -s * shrug);
        }
        // The head stays more upright than the chest, and nods just before the beat.
        const double nod = nod_[i] * beatPulse(seconds + 0.04);
        const Point upright = unit(chest.up * 0.45 + Point{0, 0.55, 0});
        const auto leant = [&](double forward, double tilt) {
            return turned(turned(upright, chest.right, -forward), chest.front, tilt);
        };
        const double forward = 0.10 + headLean_[i] + nod + 0.4 * lean_[i];
        pose[kNeck] = pose[kSpineShoulder] + leant(forward * 0.5, headTilt_[i] * 0.5) * kNeckLength;
        pose[kHead] = pose[kNeck] + leant(forward, headTilt_[i]) * kHeadLength;
    }

    void poseLegs(Pose& pose, std::size_t i) const {
        const Axes pelvis = pelvisAxes(i);
        for (const Side side : {kLeft, kRight}) {
            const FootPlace& foot = feet_[side][i];
            const std::size_t hip = side == kLeft ? kHipLeft : kHipRight;
            const Axes sole = bodyAxes(foot.yaw, -foot.pitch, 0);
            const Point pole = bodyAxes(foot.yaw, 0, 0).front + pelvis.front;
            const TwoBones leg = SolveTwoBones(pose[hip], foot.ankle, kThigh, kShin, pole);
            pose[hip + 1] = leg.hinge;
            pose[hip + 2] = leg.end;
            pose[hip + 3] = leg.end + sole.at(0, -kFootDown, kFootAhead);
        }
    }

    const DancePlan& plan_;
    Curve weight_, crouch_, bounce_, sway_, twist_, lean_, nod_, headLean_, headTilt_, calm_;
    std::array<std::vector<FootPlace>, 2> feet_;
    Curve x_, front_, yaw_, hipYaw_, y_;
};

}  // namespace

std::vector<Pose> PerformDance(const DancePlan& plan) {
    return Performance(plan).poses();
}

}  // namespace dance
