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

}  // namespace puppet
