// Triangle meshes on the GPU: one interleaved, unindexed layout of 32 bytes a vertex. The thread
// that owns the OpenGL context.
#pragma once

#include <cstdint>
#include <span>

#include "gpu/math_types.h"

struct MeshVertex {
    Vec3 position;  // location 0, "vertex"
    Vec3 normal;    // location 1, "normal"
    Vec2 uv;        // location 2, "texcoord"
};
static_assert(sizeof(MeshVertex) == 32);

struct GeometryObject {
    Mat4 transform;
    std::uint32_t vertexArray = 0;
    std::uint32_t vertexBuffer = 0;
    int vertexCount = 0;
};

// Sets the object's matrix to the identity and its vertex count, and makes its buffers. Three
// vertices a triangle. The caller releases them with ReleaseMeshBuffers.
void CreateMeshBuffers(GeometryObject& object, std::span<const MeshVertex> vertices);
void ReleaseMeshBuffers(GeometryObject& object);
