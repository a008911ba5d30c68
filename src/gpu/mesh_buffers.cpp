#include "gpu/mesh_buffers.h"

#include <GL/glew.h>

#include <cstddef>

namespace {

void SetMeshAttribute(std::uint32_t location, int floats, std::size_t offset) {
    glEnableVertexAttribArray(location);
    glVertexAttribPointer(location, floats, GL_FLOAT, GL_FALSE, sizeof(MeshVertex),
                          reinterpret_cast<const void*>(offset));
}

}  // namespace

void CreateMeshBuffers(GeometryObject& object, std::span<const MeshVertex> vertices) {
    Mat4Identity(object.transform);
    object.vertexCount = static_cast<int>(vertices.size());
    glGenVertexArrays(1, &object.vertexArray);
    glBindVertexArray(object.vertexArray);
    glGenBuffers(1, &object.vertexBuffer);
    glBindBuffer(GL_ARRAY_BUFFER, object.vertexBuffer);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(vertices.size_bytes()), vertices.data(),
                 GL_STATIC_DRAW);
    SetMeshAttribute(0, 3, offsetof(MeshVertex, position));
    SetMeshAttribute(1, 3, offsetof(MeshVertex, normal));
    SetMeshAttribute(2, 2, offsetof(MeshVertex, uv));
    glBindVertexArray(0);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
}

void ReleaseMeshBuffers(GeometryObject& object) {
    if (object.vertexArray != 0) glDeleteVertexArrays(1, &object.vertexArray);
    if (object.vertexBuffer != 0) glDeleteBuffers(1, &object.vertexBuffer);
    object.vertexArray = 0;
    object.vertexBuffer = 0;
    object.vertexCount = 0;
}
