// Any bytes as a capture: no fault, no hang, no memory out of proportion; and a puppet can be posed
// with what is read.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "geometry/puppet_pose.h"
#include "geometry/skeleton_capture.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    std::string fault;
    auto frames = ParseCapture({bytes, size}, fault);
    // A frame with a joint takes 28 bytes or more.
    if (frames.size() > size / 28) std::abort();
    const auto isEarlier = [](const CaptureFrame& a, const CaptureFrame& b) {
        return a.timeSeconds < b.timeSeconds;
    };
    if (!std::is_sorted(frames.begin(), frames.end(), isEarlier)) std::abort();
    PrepareCapture(frames, size % 2 == 0 ? 0.9f : 0.0f);
    std::vector<PuppetLimb> limbs;
    BindLimbs("HEAD RIGHT_HAND RIGHT_UPPERARM TORSO TRICENTER LEFT_FOOT", 0, limbs);
    for (const float time : {-1.0f, 0.0f, 0.5f, 1e30f}) {
        Skeleton pose;
        if (SampleCapture(frames, time, pose) == frames.empty()) std::abort();
        if (!frames.empty()) PoseLimbs(pose, {}, limbs);
    }
    return 0;
}
