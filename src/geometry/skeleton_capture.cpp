#include "geometry/skeleton_capture.h"

#include <algorithm>
#include <cmath>

#include "core/byte_stream.h"
#include "platform/debug_output.h"
#include "platform/files.h"

namespace {

constexpr std::size_t kFrameHeadBytes = 8;
constexpr std::size_t kPlainJointBytes = 20;
constexpr std::size_t kExtendedJointBytes = 24;

bool IsFinite(const Vec3& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

bool IsEarlier(const CaptureFrame& a, const CaptureFrame& b) {
    return a.timeSeconds < b.timeSeconds;
}

class CaptureParser {
  public:
    CaptureParser(std::span<const std::uint8_t> bytes, std::string& fault)
        : bytes_(bytes), fault_(fault) {}

    std::vector<CaptureFrame> parse() {
        std::uint32_t count = bytes_.readU32();
        extended_ = count == kExtendedCapture;
        if (extended_) count = bytes_.readU32();
        if (bytes_.ranShort()) note("is too short to be a capture");
        for (std::uint32_t i = 0; i < count; ++i) {
            CaptureFrame frame;
            if (!readFrame(frame)) {
                note("ends after " + std::to_string(i) + " of its " + std::to_string(count) +
                     " frames");
                break;
            }
            if (frame.known.none()) continue;
            if (frames_.size() == kMaxCaptureFrames) {
                note("has too many frames; the first " + std::to_string(kMaxCaptureFrames) +
                     " are played");
                break;
            }
            frames_.push_back(frame);
        }
        if (!std::is_sorted(frames_.begin(), frames_.end(), IsEarlier)) {
            note("has frames that are not in order of time; they are sorted");
            std::stable_sort(frames_.begin(), frames_.end(), IsEarlier);
        }
        return std::move(frames_);
    }

  private:
    // The first fault is the one that is told.
    void note(std::string fault) {
        if (fault_.empty()) fault_ = std::move(fault);
    }

    // False when the file ends within the frame.
    bool readFrame(CaptureFrame& frame) {
        if (bytes_.remaining() < kFrameHeadBytes) return false;
        frame.timeSeconds = bytes_.readFloat();
        const std::uint32_t count = bytes_.readU32();
        const std::size_t jointBytes = extended_ ? kExtendedJointBytes : kPlainJointBytes;
        if (count > bytes_.remaining() / jointBytes) return false;
        for (std::uint32_t i = 0; i < count; ++i) readJoint(frame);
        if (!std::isfinite(frame.timeSeconds)) {
            note("has a frame without a time; it is left out");
            frame.known.reset();
        }
        return true;
    }

    void readJoint(CaptureFrame& frame) {
        const std::uint32_t id = bytes_.readU32();
        bytes_.readU32();
        CaptureJoint joint;
        joint.position.x = bytes_.readFloat();
        joint.position.y = bytes_.readFloat();
        joint.position.z = bytes_.readFloat();
        if (extended_) joint.trackingState = bytes_.readU32();
        if (id >= kJointCount) return;
        if (!IsFinite(joint.position)) {
            note("has a joint without a place; it is left out");
            return;
        }
        frame.joints[id] = joint;
        frame.known.set(id);
    }

    ByteReader bytes_;
    std::string& fault_;
    bool extended_ = false;
    std::vector<CaptureFrame> frames_;
};

Vec3 Blend(const Vec3& from, const Vec3& to, float part) {
    const float rest = 1.0f - part;
    return {rest * from.x + part * to.x, rest * from.y + part * to.y, rest * from.z + part * to.z};
}

// Where `time` lies between two others, 0 to 1.
float PartOf(float time, float from, float to) {
    const double length = static_cast<double>(to) - static_cast<double>(from);
    if (!(length > 0)) return 0;
    return static_cast<float>((static_cast<double>(time) - static_cast<double>(from)) / length);
}

// Fills frames between `before` and `after`, which both know the joint.
void FillBetween(std::vector<CaptureFrame>& frames, std::size_t joint, std::size_t before,
                 std::size_t after) {
    const CaptureFrame& from = frames[before];
    const CaptureFrame& to = frames[after];
    for (std::size_t i = before + 1; i < after; ++i) {
        const float part = PartOf(frames[i].timeSeconds, from.timeSeconds, to.timeSeconds);
        frames[i].joints[joint].position =
            Blend(from.joints[joint].position, to.joints[joint].position, part);
    }
}

// False when no frame knows the joint.
bool FillGaps(std::vector<CaptureFrame>& frames, std::size_t joint) {
    const auto isKnown = [joint](const CaptureFrame& frame) { return frame.known[joint]; };
    const auto first = std::find_if(frames.begin(), frames.end(), isKnown);
    if (first == frames.end()) return false;
    for (auto it = frames.begin(); it != first; ++it) it->joints[joint] = first->joints[joint];
    std::size_t last = static_cast<std::size_t>(first - frames.begin());
    for (std::size_t i = last + 1; i < frames.size(); ++i) {
        if (!frames[i].known[joint]) continue;
        FillBetween(frames, joint, last, i);
        last = i;
    }
    for (std::size_t i = last + 1; i < frames.size(); ++i) {
        frames[i].joints[joint] = frames[last].joints[joint];
    }
    return true;
}

// The joint that each one hangs on.
constexpr std::array<int, kJointCount> kParents = {
    -1,         kSpineBase,  kSpineShoulder, kNeck,          kSpineShoulder, kShoulderLeft,
    kElbowLeft, kWristLeft,  kSpineShoulder, kShoulderRight, kElbowRight,    kWristRight,
    kSpineBase, kHipLeft,    kKneeLeft,      kAnkleLeft,     kSpineBase,     kHipRight,
    kKneeRight, kAnkleRight, kSpineMid,      kHandLeft,      kWristLeft,     kHandRight,
    kWristRight};

// Joints that no frame knows lie where the nearest known one on the way to the base lies.
void FillUnknown(std::vector<CaptureFrame>& frames, const std::bitset<kJointCount>& known) {
    for (std::size_t joint = 0; joint < kJointCount; ++joint) {
        if (known[joint]) continue;
        int source = kParents[joint];
        while (source >= 0 && !known[static_cast<std::size_t>(source)]) {
            source = kParents[static_cast<std::size_t>(source)];
        }
        if (source < 0) continue;
        for (CaptureFrame& frame : frames) {
            frame.joints[joint] = frame.joints[static_cast<std::size_t>(source)];
        }
    }
}

// Puts the body of the middle frame over the origin; heights stay.
void CentreInPlan(std::vector<CaptureFrame>& frames) {
    const Vec3 origin = frames[frames.size() / 2].joints[kSpineBase].position;
    for (CaptureFrame& frame : frames) {
        for (CaptureJoint& joint : frame.joints) {
            joint.position.x -= origin.x;
            joint.position.z -= origin.z;
        }
    }
}

// The sensor sees hips through clothes and less surely than the spine: they are drawn towards it.
void WeighHips(std::vector<CaptureFrame>& frames) {
    constexpr float kWeight = 0.9f;
    for (CaptureFrame& frame : frames) {
        const Vec3& base = frame.joints[kSpineBase].position;
        for (const std::size_t hip : {kHipLeft, kHipRight}) {
            Vec3& place = frame.joints[hip].position;
            place = Blend(base, place, kWeight);
        }
    }
}

// Exponential low-pass over time.
void Smooth(std::vector<CaptureFrame>& frames, float smoothing) {
    constexpr double kSensorRate = 30;  // frames a second
    const double left = std::clamp(static_cast<double>(smoothing), 0.0, 0.999);
    if (!(left > 0)) return;
    for (std::size_t i = 1; i < frames.size(); ++i) {
        const CaptureFrame& before = frames[i - 1];
        const double seconds =
            static_cast<double>(frames[i].timeSeconds) - static_cast<double>(before.timeSeconds);
        const float part = static_cast<float>(1 - std::pow(left, seconds * kSensorRate));
        for (std::size_t joint = 0; joint < kJointCount; ++joint) {
            Vec3& place = frames[i].joints[joint].position;
            place = Blend(before.joints[joint].position, place, part);
        }
    }
}

}  // namespace

std::vector<CaptureFrame> ParseCapture(std::span<const std::uint8_t> bytes, std::string& fault) {
    fault.clear();
    return CaptureParser(bytes, fault).parse();
}

bool ReadCaptureFile(std::string_view name, std::vector<CaptureFrame>& frames) {
    frames.clear();
    const auto bytes = ReadWholeFile(name, kMaxCaptureBytes);
    if (!bytes) return false;
    std::string fault;
    frames = ParseCapture(*bytes, fault);
    if (!fault.empty()) ReportBadFile(name, fault);
    return true;
}

std::vector<std::uint8_t> CaptureBytes(std::span<const CaptureFrame> frames, CaptureForm form) {
    const bool extended = form == CaptureForm::Extended;
    ByteWriter out;
    if (extended) out.writeU32(kExtendedCapture);
    out.writeU32(static_cast<std::uint32_t>(frames.size()));
    for (const CaptureFrame& frame : frames) {
        out.writeFloat(frame.timeSeconds);
        out.writeU32(static_cast<std::uint32_t>(frame.known.count()));
        for (std::size_t joint = 0; joint < kJointCount; ++joint) {
            if (!frame.known[joint]) continue;
            out.writeU32(static_cast<std::uint32_t>(joint));
            out.writeU32(0);
            out.write(&frame.joints[joint].position, sizeof(Vec3));
            if (extended) out.writeU32(frame.joints[joint].trackingState);
        }
    }
    return {out.bytes().begin(), out.bytes().end()};
}

void PrepareCapture(std::vector<CaptureFrame>& frames, float smoothing) {
    if (frames.empty()) return;
    std::bitset<kJointCount> known;
    for (std::size_t joint = 0; joint < kJointCount; ++joint)
        known[joint] = FillGaps(frames, joint);
    FillUnknown(frames, known);
    CentreInPlan(frames);
    WeighHips(frames);
    Smooth(frames, smoothing);
}

bool SampleCapture(std::span<const CaptureFrame> frames, float timeSeconds, Skeleton& pose) {
    if (frames.empty()) return false;
    const auto later = std::partition_point(frames.begin(), frames.end(), [=](const auto& frame) {
        return frame.timeSeconds < timeSeconds;
    });
    const CaptureFrame& to = later == frames.end() ? frames.back() : *later;
    const CaptureFrame& from = later == frames.begin() ? to : *(later - 1);
    const float part = PartOf(timeSeconds, from.timeSeconds, to.timeSeconds);
    for (std::size_t joint = 0; joint < kJointCount; ++joint) {
        pose[joint] = Blend(from.joints[joint].position, to.joints[joint].position, part);
    }
    return true;
}
