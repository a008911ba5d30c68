// The shapes of the puppet's limbs. Each is built around the middle of its joints, y from the lower
// to the upper end and z to the front, as the dancer stands with hanging arms. Depends on the mesh
// builder and the lengths of the bones; any thread.
#pragma once

#include <span>

#include "demo/tool/puppet_mesh.h"

namespace puppet {

struct LimbShape {
    const char* name;
    void (*body)(Mesh&);
    void (*lamps)(Mesh&);  // null: wears none
};

// All fifteen.
std::span<const LimbShape> LimbShapes();

void HeadBody(Mesh& mesh);
void HeadLamps(Mesh& mesh);
void TorsoBody(Mesh& mesh);
void TorsoLamps(Mesh& mesh);
void PelvisBody(Mesh& mesh);
void PelvisLamps(Mesh& mesh);
void UpperArmBody(Mesh& mesh);
void UpperArmLamps(Mesh& mesh);
void ForearmBody(Mesh& mesh);
void ForearmLamps(Mesh& mesh);
void HandBody(Mesh& mesh);
void HandLamps(Mesh& mesh);
void ThighBody(Mesh& mesh);
void ThighLamps(Mesh& mesh);
void ShinBody(Mesh& mesh);
void ShinLamps(Mesh& mesh);
void FootBody(Mesh& mesh);
void FootLamps(Mesh& mesh);

}  // namespace puppet
