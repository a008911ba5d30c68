#include "demo/tool/puppet_model.h"

#include <fstream>

#include "demo/tool/puppet_limbs.h"
#include "geometry/puppet_pose.h"

namespace {

using namespace puppet;

constexpr float kJointScale = 10;

std::string ObjOf(void (*LimbShape::*part)(Mesh&)) {
    ObjWriter writer;
    for (const LimbShape& limb : LimbShapes()) {
        if (limb.*part == nullptr) continue;
        Mesh mesh;
        (limb.*part)(mesh);
        mesh.balance();
        writer.add(limb.name, mesh, 1.0 / static_cast<double>(LimbScale(kJointScale)));
    }
    return writer.text();
}

bool WriteText(const std::filesystem::path& file, const std::string& text, std::string& error) {
    std::ofstream out(file, std::ios::binary);
    out << text;
    out.close();
    if (out) return true;
    error = file.string() + ": cannot be written";
    return false;
}

}  // namespace

std::string PuppetBodyObj() {
    return ObjOf(&LimbShape::body);
}

std::string PuppetLampsObj() {
    return ObjOf(&LimbShape::lamps);
}

bool WritePuppet(const std::filesystem::path& folder, std::string& error) {
    return WriteText(folder / "puppet.obj", PuppetBodyObj(), error) &&
           WriteText(folder / "puppet_lamps.obj", PuppetLampsObj(), error);
}
