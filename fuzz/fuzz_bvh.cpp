// Any text as a BVH file: no fault, no hang, no memory out of proportion; a file that is refused
// says why.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "bvh_file.h"
#include "bvh_joint_names.h"
#include "bvh_motion.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(bytes), size);
    BvhFile file;
    std::string fault;
    if (!ParseBvh(text, file, fault)) {
        if (fault.empty()) std::abort();
        return 0;
    }
    if (file.frameCount == 0 || file.values.size() != file.frameCount * file.valuesPerFrame) {
        std::abort();
    }
    BvhJointMap map;
    // The text itself stands for a list of names too.
    if (!MapBvhJoints(file, size % 3 == 0 ? text : std::string_view(), map, fault)) {
        if (fault.empty()) std::abort();
        // Any joints will do.
        for (std::size_t i = 0; i < map.size(); ++i) {
            map[i] = static_cast<int>(i % file.joints.size());
        }
    }
    // Only so that no run takes long: a single frame may last for hours.
    if (file.frameSeconds * static_cast<double>(file.frameCount) > 10) return 0;
    std::vector<CaptureFrame> frames;
    const bool converted = ConvertBvh(file, map, {}, frames, fault);
    if (converted != fault.empty()) std::abort();
    return 0;
}
