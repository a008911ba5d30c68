#include "demo/tool/puppet_model.h"

#include "demo/tool/model_file.h"
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

}  // namespace

std::string PuppetBodyObj() {
    return ObjOf(&LimbShape::body);
}

std::string PuppetLampsObj() {
    return ObjOf(&LimbShape::lamps);
}

bool WritePuppet(const std::filesystem::path& folder, std::string& error) {
    return WriteModelFile(folder / "puppet.obj", PuppetBodyObj(), error) &&
           WriteModelFile(folder / "puppet_lamps.obj", PuppetLampsObj(), error);
}
