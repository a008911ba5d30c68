#include "gpu/mesh_buffers.h"

#include <GL/glew.h>

#include <cstddef>

namespace {

void SetMeshAttribute(std::uint32_t location, int floats, std::size_t offset) {
    glEnableVertexAttribArray(location);
    glVertexAttribPointer(location, floats, GL_FLOAT, GL_FALSE, sizeof(MeshVertex),
                          reinterpret_cast<const void*>(offset));
}

// The owner of one mesh's names.
struct MeshNames {
    std::uint32_t vertexArray = 0;
    std::uint32_t vertexBuffer = 0;

    MeshNames() {
        glGenVertexArrays(1, &vertexArray);
        glGenBuffers(1, &vertexBuffer);
    }
    ~MeshNames() {
        glDeleteVertexArrays(1, &vertexArray);
        glDeleteBuffers(1, &vertexBuffer);
    }
    MeshNames(const MeshNames&) = delete;
    MeshNames& operator=(const MeshNames&) = delete;
};

}  // namespace

void CreateMeshBuffers(GeometryObject& object, std::span<const MeshVertex> vertices) {
    Mat4Identity(object.transform);
    object.vertexCount = static_cast<int>(vertices.size());
    const auto names = std::make_shared<const MeshNames>();
    object.vertexArray = names->vertexArray;
    object.vertexBuffer = names->vertexBuffer;
    object.buffers = names;
    glBindVertexArray(object.vertexArray);
    glBindBuffer(GL_ARRAY_BUFFER, object.vertexBuffer);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(vertices.size_bytes()), vertices.data(),
                 GL_STATIC_DRAW);
    SetMeshAttribute(0, 3, offsetof(MeshVertex, position));
    SetMeshAttribute(1, 3, offsetof(MeshVertex, normal));
    SetMeshAttribute(2, 2, offsetof(MeshVertex, uv));
    glBindVertexArray(0);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
}
