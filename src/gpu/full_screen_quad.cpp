#include "gpu/full_screen_quad.h"

#include <GL/glew.h>

#include "gpu/gl_image.h"

namespace {

bool quadReady = false;
std::uint32_t quadVertexArray = 0;
std::uint32_t quadBuffer = 0;

struct QuadVertex {
    float x, y, u, v;
};
constexpr QuadVertex kQuad[] = {{1, 1, 1, 1}, {1, -1, 1, 0}, {-1, 1, 0, 1}, {-1, -1, 0, 0}};
static_assert(sizeof kQuad == 64);

void MakeQuad() {
    glGenVertexArrays(1, &quadVertexArray);
    glGenBuffers(1, &quadBuffer);
    glBindVertexArray(quadVertexArray);
    glBindBuffer(GL_ARRAY_BUFFER, quadBuffer);
    glBufferData(GL_ARRAY_BUFFER, sizeof kQuad, kQuad, GL_STATIC_DRAW);
    const auto* offsetOfUv = reinterpret_cast<const void*>(offsetof(QuadVertex, u));
    glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, sizeof(QuadVertex), nullptr);
    glVertexAttribPointer(1, 2, GL_FLOAT, GL_FALSE, sizeof(QuadVertex), offsetOfUv);
    glEnableVertexAttribArray(0);
    glEnableVertexAttribArray(1);
    quadReady = true;
}

}  // namespace

void DrawFullScreenQuad() {
    if (quadReady) {
        glBindVertexArray(quadVertexArray);
    } else {
        MakeQuad();
    }
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glBindVertexArray(0);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
}

void DrawImageQuad(const GL_Image& image) {
    image.BindTextures(GL_TEXTURE0);
    DrawFullScreenQuad();
    image.UnbindTextures(GL_TEXTURE0);
}

void ReleaseFullScreenQuad() {
    if (!quadReady) return;
    glDeleteVertexArrays(1, &quadVertexArray);
    glDeleteBuffers(1, &quadBuffer);
    quadVertexArray = 0;
    quadBuffer = 0;
    quadReady = false;
}
