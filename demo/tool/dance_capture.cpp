#include "demo/tool/dance_capture.h"

#include "demo/tool/dance_performance.h"
#include "demo/tool/model_file.h"

namespace {

bool WriteBytes(const std::filesystem::path& file, const std::vector<std::uint8_t>& bytes,
                std::string& error) {
    return WriteModelFile(file, {reinterpret_cast<const char*>(bytes.data()), bytes.size()}, error);
}

}  // namespace

std::vector<CaptureFrame> DanceFrames() {
    const std::vector<dance::Pose> poses = dance::PerformDance(dance::PlanDance());
    std::vector<CaptureFrame> frames(poses.size());
    for (std::size_t i = 0; i < poses.size(); ++i) {
        CaptureFrame& frame = frames[i];
        frame.timeSeconds = static_cast<float>(static_cast<double>(i) / dance::kFramesPerSecond);
        frame.known.set();
        for (std::size_t joint = 0; joint < kJointCount; ++joint) {
            const dance::Point& p = poses[i][joint];
            frame.joints[joint].position = {static_cast<float>(p.x), static_cast<float>(p.y),
                                            static_cast<float>(p.z)};
        }
    }
    return frames;
}

std::vector<CaptureFrame> TakeOf(std::span<const CaptureFrame> dance) {
    std::vector<CaptureFrame> take;
    for (const CaptureFrame& frame : dance) {
        if (frame.timeSeconds < kTakeStartSeconds) continue;
        if (frame.timeSeconds > kTakeStartSeconds + kTakeSeconds) break;
        take.push_back(frame);
        take.back().timeSeconds -= kTakeStartSeconds;
    }
    return take;
}

bool WriteDance(const std::filesystem::path& folder, std::string& error) {
    const std::vector<CaptureFrame> dance = DanceFrames();
    return WriteBytes(folder / "dance.cap", CaptureBytes(dance), error) &&
           WriteBytes(folder / "dance_plain.cap", CaptureBytes(dance, CaptureForm::Plain), error) &&
           WriteBytes(folder / "dance_take.cap", CaptureBytes(TakeOf(dance)), error);
}
