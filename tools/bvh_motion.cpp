#include "bvh_motion.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace {

constexpr double kPi = 3.14159265358979323846;

BvhVector Blend(const BvhVector& a, const BvhVector& b, double part) {
    return {a.x + (b.x - a.x) * part, a.y + (b.y - a.y) * part, a.z + (b.z - a.z) * part};
}

// `to`, as far again beyond it as `part` of the way from `from`.
BvhVector Beyond(const BvhVector& from, const BvhVector& to, double part) {
    return Blend(from, to, 1 + part);
}

bool IsSame(const BvhVector& a, const BvhVector& b) {
    return a.x == b.x && a.y == b.y && a.z == b.z;
}

// The places of one BVH frame, and from them those of the sensor's joints.
class PoseMapper {
  public:
    PoseMapper(const BvhFile& file, const BvhJointMap& map) : file_(file), map_(map) {
        for (const JointType joint :
             {kHead, kHandLeft, kHandRight, kWristLeft, kWristRight, kAnkleLeft, kAnkleRight}) {
            ends_[static_cast<std::size_t>(joint)] = endOf(map[static_cast<std::size_t>(joint)]);
        }
    }

    std::array<BvhVector, kJointCount> map(const std::vector<BvhVector>& places) const {
        std::array<BvhVector, kJointCount> out{};
        for (std::size_t joint = 0; joint < kJointCount; ++joint) {
            if (has(joint)) out[joint] = at(places, map_[joint]);
        }
        fillSpine(places, out);
        fillArm(places, out, kElbowLeft, kHandTipLeft, kThumbLeft);
        fillArm(places, out, kElbowRight, kHandTipRight, kThumbRight);
        fillFoot(places, out, kKneeLeft);
        fillFoot(places, out, kKneeRight);
        return out;
    }

  private:
    using Pose = std::array<BvhVector, kJointCount>;

    bool has(std::size_t joint) const { return map_[joint] != BvhJoint::kNone; }
    static const BvhVector& at(const std::vector<BvhVector>& places, int joint) {
        return places[static_cast<std::size_t>(joint)];
    }
    const BvhVector& end(const std::vector<BvhVector>& places, std::size_t joint) const {
        return at(places, ends_[joint]);
    }

    // The end of the chain that goes on from a joint through its first children.
    int endOf(int joint) const {
        for (std::size_t i = 0; i < file_.joints.size(); ++i) {
            if (joint != BvhJoint::kNone && file_.joints[i].parent == joint) {
                joint = static_cast<int>(i);
            }
        }
        return joint;
    }

    // A BVH head begins at the skull's base; the sensor's joint is in its middle.
    void fillSpine(const std::vector<BvhVector>& places, Pose& out) const {
        if (!has(kSpineShoulder)) {
            out[kSpineShoulder] = Blend(out[kShoulderLeft], out[kShoulderRight], 0.5);
        }
        if (!has(kSpineMid)) out[kSpineMid] = Blend(out[kSpineBase], out[kSpineShoulder], 0.5);
        if (!has(kNeck)) out[kNeck] = Blend(out[kSpineShoulder], out[kHead], 0.5);
        out[kHead] = Blend(out[kHead], end(places, kHead), 0.5);
    }

    // Files without fingers: the hand goes on as far as it does in the file, or else along the
    // forearm.
    void fillArm(const std::vector<BvhVector>& places, Pose& out, std::size_t elbow,
                 std::size_t tip, std::size_t thumb) const {
        const std::size_t wrist = elbow + 1, hand = elbow + 2;
        BvhVector far = end(places, has(hand) ? hand : wrist);
        if (IsSame(far, out[wrist])) far = Beyond(out[elbow], out[wrist], 0.6);
        if (!has(hand)) out[hand] = Blend(out[wrist], far, 0.5);
        if (!has(tip)) out[tip] = IsSame(far, out[hand]) ? Beyond(out[wrist], far, 1) : far;
        if (!has(thumb)) out[thumb] = out[hand];
    }

    void fillFoot(const std::vector<BvhVector>& places, Pose& out, std::size_t knee) const {
        const std::size_t ankle = knee + 1, foot = knee + 2;
        if (!has(foot)) out[foot] = end(places, ankle);
    }

    const BvhFile& file_;
    const BvhJointMap& map_;
    std::array<int, kJointCount> ends_{};
};

// Places at any time, blended between two frames of the file.
class MotionReader {
  public:
    MotionReader(const BvhFile& file, const BvhJointMap& map) : file_(file), mapper_(file, map) {}

    std::array<BvhVector, kJointCount> at(double seconds) const {
        const double last = static_cast<double>(file_.frameCount - 1);
        const double place = std::clamp(seconds / file_.frameSeconds, 0.0, last);
        const auto before = static_cast<std::size_t>(place);
        const std::size_t after = std::min(before + 1, file_.frameCount - 1);
        const auto from = mapper_.map(file_.pose(before));
        const auto to = mapper_.map(file_.pose(after));
        std::array<BvhVector, kJointCount> result{};
        for (std::size_t joint = 0; joint < kJointCount; ++joint) {
            result[joint] = Blend(from[joint], to[joint], place - static_cast<double>(before));
        }
        return result;
    }

  private:
    const BvhFile& file_;
    PoseMapper mapper_;
};

// From the file's axes and unit to those of a capture.
class Turn {
  public:
    Turn(double degrees, double scale)
        : scale_(scale),
          cosine_(std::cos(degrees * kPi / 180) * scale),
          sine_(std::sin(degrees * kPi / 180) * scale) {}

    // False for places that are no use in single precision.
    bool apply(const BvhVector& p, Vec3& out) const {
        constexpr double kFarthest = 1e6;
        const double x = cosine_ * p.x + sine_ * p.z;
        const double y = scale_ * p.y;
        const double z = cosine_ * p.z - sine_ * p.x;
        if (!(std::fabs(x) < kFarthest && std::fabs(y) < kFarthest && std::fabs(z) < kFarthest)) {
            return false;
        }
        out = {static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)};
        return true;
    }

  private:
    double scale_, cosine_, sine_;
};

}  // namespace

double BvhFigureHeight(const BvhFile& file) {
    std::vector<double> heights;
    for (const BvhJoint& joint : file.joints) {
        const bool isRoot = joint.parent == BvhJoint::kNone;
        heights.push_back(
            isRoot ? 0 : heights[static_cast<std::size_t>(joint.parent)] + joint.offset.y);
    }
    const auto [low, high] = std::minmax_element(heights.begin(), heights.end());
    return heights.empty() ? 0 : *high - *low;
}

bool ConvertBvh(const BvhFile& file, const BvhJointMap& map, const BvhConversion& conversion,
                std::vector<CaptureFrame>& frames, std::string& fault) {
    frames.clear();
    double scale = conversion.metresPerUnit;
    if (conversion.figureMetres > 0) scale = conversion.figureMetres / BvhFigureHeight(file);
    if (!std::isfinite(scale) || scale <= 0) {
        fault = "the figure has no height to go by; give a scale";
        return false;
    }
    const double seconds = static_cast<double>(file.frameCount - 1) * file.frameSeconds;
    // Rounding must not cost the last frame.
    const double count = std::floor(seconds * conversion.framesPerSecond + 1e-6) + 1;
    if (!(count <= static_cast<double>(kMaxCaptureFrames))) {
        fault = "the motion is " + std::to_string(seconds) + " seconds long; a capture holds " +
                std::to_string(kMaxCaptureFrames) + " frames";
        return false;
    }
    const Turn turn(conversion.turnDegrees, scale);
    const MotionReader reader(file, map);
    for (int i = 0; i < static_cast<int>(count); ++i) {
        const double time = i / conversion.framesPerSecond;
        CaptureFrame frame;
        frame.timeSeconds = static_cast<float>(time);
        frame.known.set();
        const auto places = reader.at(time);
        for (std::size_t joint = 0; joint < kJointCount; ++joint) {
            if (turn.apply(places[joint], frame.joints[joint].position)) continue;
            fault = "a joint is too far away at " + std::to_string(time) + " seconds";
            return false;
        }
        frames.push_back(frame);
    }
    return true;
}
