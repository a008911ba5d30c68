// Any bytes as an OBJ file, under any flags: no fault, no hang, whole triangles only. The first
// byte tells the flags.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "geometry/read_obj_file.h"
#include "platform/debug_output.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    if (size == 0) return 0;
    const DebugCapture silent;
    ObjObjects objects;
    const std::string_view text(reinterpret_cast<const char*>(bytes + 1), size - 1);
    ReadObjText(text, objects, bytes[0] & 15u);
    // Every vertex is there to be read.
    float sum = 0;
    for (const auto& [name, vertices] : objects) {
        if (vertices.empty() || vertices.size() % 3 != 0) std::abort();
        for (const MeshVertex& v : vertices) sum += v.position.x + v.normal.y + v.uv.x;
    }
    volatile float seen = sum;
    static_cast<void>(seen);
    return 0;
}
