// Triangle meshes on the GPU: one interleaved, unindexed layout of 32 bytes a vertex. The thread
// that owns the OpenGL context.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "gpu/math_types.h"

struct MeshVertex {
    Vec3 position;  // location 0, "vertex"
    Vec3 normal;    // location 1, "normal"
    Vec2 uv;        // location 2, "texcoord"
};
static_assert(sizeof(MeshVertex) == 32);

struct MaterialData;  // what a surface looks like; nodes above this folder fill it

// One drawable mesh. Copies share the buffers, which live as long as the last copy.
struct GeometryObject {
    std::uint32_t vertexArray = 0;
    std::uint32_t vertexBuffer = 0;
    int vertexCount = 0;  // three a triangle
    std::string name;
    std::shared_ptr<MaterialData> material;  // goes before the material of the node; may be null
    Mat4 transform;
    std::shared_ptr<const void> buffers;  // releases the two names above
};

// Sets the object's matrix to the identity and its vertex count, and makes its buffers. Three
// vertices a triangle; none at all is a mesh that draws nothing.
void CreateMeshBuffers(GeometryObject& object, std::span<const MeshVertex> vertices);
