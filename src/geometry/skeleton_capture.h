// Recorded motion of one body: the capture file of a depth sensor, made ready for playing, and the
// pose at any time. Little-endian file: an optional magic word, a frame count, and for each frame
// its time and its joints. Depends on files and bytes only; any thread, without OpenGL.
#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "gpu/math_types.h"

// The joints of the sensor's skeleton; the numbers stand in the files. Left and right are the
// dancer's own, who faces the sensor: y is up, and z leads away from the sensor.
enum JointType : int {
    kSpineBase,
    kSpineMid,
    kNeck,
    kHead,
    kShoulderLeft,
    kElbowLeft,
    kWristLeft,
    kHandLeft,
    kShoulderRight,
    kElbowRight,
    kWristRight,
    kHandRight,
    kHipLeft,
    kKneeLeft,
    kAnkleLeft,
    kFootLeft,
    kHipRight,
    kKneeRight,
    kAnkleRight,
    kFootRight,
    kSpineShoulder,
    kHandTipLeft,
    kThumbLeft,
    kHandTipRight,
    kThumbRight,
    kJointCount
};

constexpr std::uint32_t kExtendedCapture = 0xAFFE0001u;  // the file gives tracking states
constexpr std::uint32_t kTracked = 2;                    // the state of joints without one
constexpr std::size_t kMaxCaptureFrames = 500'000;       // more than four hours
constexpr std::uint64_t kMaxCaptureBytes = std::uint64_t{512} << 20;

struct CaptureJoint {
    Vec3 position;  // metres
    std::uint32_t trackingState = kTracked;
};

struct CaptureFrame {
    float timeSeconds = 0;
    std::array<CaptureJoint, kJointCount> joints{};
    std::bitset<kJointCount> known;  // joints that the file gives in this frame
};

// One pose: a place for every joint, by JointType.
using Skeleton = std::array<Vec3, kJointCount>;

// The frames of a file in order of time, as far as they are whole. Frames without any joint, and
// joints that have no number of the skeleton or no finite place, are left out. `fault` tells what
// is wrong with the bytes, or stays empty.
std::vector<CaptureFrame> ParseCapture(std::span<const std::uint8_t> bytes, std::string& fault);
// Reads a file; false, with no frames and no report, when it cannot be opened. What is wrong inside
// it is reported in one line.
bool ReadCaptureFile(std::string_view name, std::vector<CaptureFrame>& frames);
// The two forms of a file; the plain one has no tracking states.
enum class CaptureForm { Plain, Extended };
// The bytes of a file; only known joints are written.
std::vector<std::uint8_t> CaptureBytes(std::span<const CaptureFrame> frames,
                                       CaptureForm form = CaptureForm::Extended);

// Makes frames ready for playing: joints that a frame lacks are filled in from its neighbours, the
// body is put at the origin in plan, the hips are weighed with the spine's base, and all is
// smoothed. `smoothing`: the part of the old pose that is left after 1/30 s, from 0 (none) to below
// 1; since it goes by time, the frame rate of the recording does not matter.
void PrepareCapture(std::vector<CaptureFrame>& frames, float smoothing);

// The pose at a time, blended between the last frame before it and the next; the end frames stand
// for all time outside. False, with `pose` untouched, when there are no frames. They must be in
// order of time.
bool SampleCapture(std::span<const CaptureFrame> frames, float timeSeconds, Skeleton& pose);
