// Bodies for tests of puppets: a figure that stands, and one that dances: every joint turns
// smoothly and at random as far as a body's joints go, and no bone changes its length. Users link
// vorn_geometry.
#pragma once

#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include "geometry/skeleton_capture.h"

namespace dance {

struct Vector {
    double x = 0, y = 0, z = 0;
};

inline Vector operator+(const Vector& a, const Vector& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vector operator-(const Vector& a, const Vector& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vector operator*(const Vector& v, double f) {
    return {v.x * f, v.y * f, v.z * f};
}
inline double Dot(const Vector& a, const Vector& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Vector Cross(const Vector& a, const Vector& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double Length(const Vector& v) {
    return std::sqrt(Dot(v, v));
}
inline Vector Unit(const Vector& v) {
    return v * (1 / Length(v));
}
inline Vector Widened(const Vec3& v) {
    return {static_cast<double>(v.x), static_cast<double>(v.y), static_cast<double>(v.z)};
}

// Turns of a body part about its own axes; a figure that faces -z hangs along -y.
struct Frame {
    Vector right{1, 0, 0}, up{0, 1, 0}, back{0, 0, 1};

    Vector at(const Vector& v) const { return right * v.x + up * v.y + back * v.z; }
    // Positive angles take up towards back, back towards right, and right towards up.
    Frame pitched(double a) const {
        return {right, up * std::cos(a) + back * std::sin(a),
                back * std::cos(a) - up * std::sin(a)};
    }
    Frame yawed(double a) const {
        return {right * std::cos(a) - back * std::sin(a), up,
                back * std::cos(a) + right * std::sin(a)};
    }
    Frame rolled(double a) const {
        return {right * std::cos(a) + up * std::sin(a), up * std::cos(a) - right * std::sin(a),
                back};
    }
};

// Angles of one pose, in radians; all zero: standing with hanging arms.
struct Angles {
    double turn = 0, bend = 0, twist = 0;       // of the body, and of the chest against the hips
    double armForward[2] = {}, armOut[2] = {};  // left, right
    double armRoll[2] = {}, elbow[2] = {}, wrist[2] = {};
    double legForward[2] = {}, legOut[2] = {}, knee[2] = {}, toes[2] = {};
    double nod = 0, tilt = 0;
};

inline Skeleton PoseOf(const Angles& a, const Vector& place = {0, 1, 0}) {
    std::array<Vector, kJointCount> p{};
    const Frame hips = Frame().yawed(a.turn);
    const Frame chest = hips.pitched(-a.bend).yawed(a.twist);
    p[kSpineBase] = place;
    p[kSpineMid] = place + chest.up * 0.25;
    p[kSpineShoulder] = place + chest.up * 0.5;
    p[kNeck] = place + chest.up * 0.58;
    p[kHead] = p[kNeck] + chest.pitched(-a.nod).rolled(a.tilt).up * 0.17;
    for (int side = 0; side < 2; ++side) {
        const double sign = side == 0 ? -1 : 1;
        const int shoulder = side == 0 ? kShoulderLeft : kShoulderRight;
        const int hip = side == 0 ? kHipLeft : kHipRight;
        const auto at = [&p](int joint) -> Vector& { return p[static_cast<std::size_t>(joint)]; };
        const Frame arm = chest.rolled(sign * a.armOut[side])
                              .pitched(a.armForward[side])
                              .yawed(sign * a.armRoll[side]);
        const Frame forearm = arm.pitched(a.elbow[side]);
        at(shoulder) = p[kSpineShoulder] + chest.at({sign * 0.19, -0.04, 0});
        at(shoulder + 1) = at(shoulder) - arm.up * 0.29;
        at(shoulder + 2) = at(shoulder + 1) - forearm.up * 0.26;
        at(shoulder + 3) = at(shoulder + 2) - forearm.rolled(a.wrist[side]).up * 0.08;
        at(side == 0 ? kHandTipLeft : kHandTipRight) =
            at(shoulder + 3) - forearm.rolled(a.wrist[side]).up * 0.09;
        at(side == 0 ? kThumbLeft : kThumbRight) = at(shoulder + 3) - forearm.back * 0.04;
        const Frame thigh = hips.rolled(sign * a.legOut[side]).pitched(a.legForward[side]);
        const Frame shin = thigh.pitched(-a.knee[side]);
        at(hip) = place + hips.at({sign * 0.1, -0.05, 0});
        at(hip + 1) = at(hip) - thigh.up * 0.42;
        at(hip + 2) = at(hip + 1) - shin.up * 0.4;
        at(hip + 3) = at(hip + 2) - shin.pitched(a.toes[side]).back * 0.15 - shin.up * 0.05;
    }
    Skeleton skeleton;
    for (std::size_t i = 0; i < kJointCount; ++i) {
        skeleton[i] = {static_cast<float>(p[i].x), static_cast<float>(p[i].y),
                       static_cast<float>(p[i].z)};
    }
    return skeleton;
}

// A number that wanders smoothly between two bounds.
class Wander {
  public:
    Wander(std::mt19937& random, double low, double high) : middle_((low + high) / 2) {
        std::uniform_real_distribution<double> any(0, 1);
        for (Wave& wave : waves_) {
            wave = {(high - low) / 2 / 3, 1 + 3 * any(random), 6.28 * any(random)};
        }
    }
    double at(double seconds) const {
        double value = middle_;
        for (const Wave& wave : waves_)
            value += wave.size * std::sin(wave.speed * seconds + wave.phase);
        return value;
    }

  private:
    struct Wave {
        double size, speed, phase;
    };
    double middle_;
    Wave waves_[3];
};

class Dancer {
  public:
    explicit Dancer(std::uint32_t seed) : random_(seed) {
        add(&Angles::turn, -3, 3);
        add(&Angles::bend, -0.4, 1.3);
        add(&Angles::twist, -0.7, 0.7);
        add(&Angles::nod, -0.6, 0.8);
        add(&Angles::tilt, -0.6, 0.6);
        for (std::size_t side = 0; side < 2; ++side) {
            add(&Angles::armForward, side, -0.8, 3.1);
            add(&Angles::armOut, side, -0.3, 2.9);
            add(&Angles::armRoll, side, -1, 1);
            add(&Angles::elbow, side, 0, 2.5);
            add(&Angles::wrist, side, -0.8, 0.8);
            add(&Angles::legForward, side, -0.6, 1.9);
            add(&Angles::legOut, side, -0.3, 0.9);
            add(&Angles::knee, side, 0, 2.2);
            add(&Angles::toes, side, -0.5, 0.5);
        }
    }

    Skeleton at(double seconds) const {
        Angles angles;
        for (const auto& [angle, wander] : single_) angles.*angle = wander.at(seconds);
        for (const auto& [angle, side, wander] : paired_)
            (angles.*angle)[side] = wander.at(seconds);
        return PoseOf(angles, {std::sin(seconds), 1 + 0.1 * std::sin(2 * seconds), 2});
    }

  private:
    using Single = double Angles::*;
    using Paired = double (Angles::*)[2];

    void add(Single angle, double low, double high) {
        single_.push_back({angle, Wander(random_, low, high)});
    }
    void add(Paired angle, std::size_t side, double low, double high) {
        paired_.push_back({angle, side, Wander(random_, low, high)});
    }

    struct SingleWander {
        Single angle;
        Wander wander;
    };
    struct PairedWander {
        Paired angle;
        std::size_t side;
        Wander wander;
    };
    std::mt19937 random_;
    std::vector<SingleWander> single_;
    std::vector<PairedWander> paired_;
};

inline CaptureFrame FrameOf(float timeSeconds, const Skeleton& skeleton) {
    CaptureFrame frame;
    frame.timeSeconds = timeSeconds;
    frame.known.set();
    for (std::size_t i = 0; i < kJointCount; ++i) frame.joints[i].position = skeleton[i];
    return frame;
}

}  // namespace dance
