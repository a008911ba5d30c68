#include "support/gl_call_count.h"

#include <map>
#include <utility>

namespace {

PFNGLGENBUFFERSPROC driversGenBuffers = nullptr;
PFNGLGENVERTEXARRAYSPROC driversGenVertexArrays = nullptr;
PFNGLBUFFERDATAPROC driversBufferData = nullptr;
PFNGLGETUNIFORMLOCATIONPROC driversGetUniformLocation = nullptr;
PFNGLUNIFORM4FVPROC driversUniform4fv = nullptr;

struct Counts {
    int made = 0, filled = 0, lookups = 0;
    std::map<GLsizei, int> uniforms;
} counts;

void GLAPIENTRY CountingGenBuffers(GLsizei count, GLuint* names) {
    ++counts.made;
    driversGenBuffers(count, names);
}

void GLAPIENTRY CountingGenVertexArrays(GLsizei count, GLuint* names) {
    ++counts.made;
    driversGenVertexArrays(count, names);
}

void GLAPIENTRY CountingBufferData(GLenum target, GLsizeiptr size, const void* data, GLenum usage) {
    ++counts.filled;
    driversBufferData(target, size, data, usage);
}

GLint GLAPIENTRY CountingGetUniformLocation(GLuint program, const GLchar* name) {
    ++counts.lookups;
    return driversGetUniformLocation(program, name);
}

void GLAPIENTRY CountingUniform4fv(GLint location, GLsizei count, const GLfloat* values) {
    ++counts.uniforms[count];
    driversUniform4fv(location, count, values);
}

}  // namespace

GlCallCount::GlCallCount() {
    counts = {};
    driversGenBuffers = std::exchange(__glewGenBuffers, &CountingGenBuffers);
    driversGenVertexArrays = std::exchange(__glewGenVertexArrays, &CountingGenVertexArrays);
    driversBufferData = std::exchange(__glewBufferData, &CountingBufferData);
    driversGetUniformLocation =
        std::exchange(__glewGetUniformLocation, &CountingGetUniformLocation);
    driversUniform4fv = std::exchange(__glewUniform4fv, &CountingUniform4fv);
}

GlCallCount::~GlCallCount() {
    __glewGenBuffers = driversGenBuffers;
    __glewGenVertexArrays = driversGenVertexArrays;
    __glewBufferData = driversBufferData;
    __glewGetUniformLocation = driversGetUniformLocation;
    __glewUniform4fv = driversUniform4fv;
}

int GlCallCount::madeBuffers() const {
    return counts.made;
}

int GlCallCount::filledBuffers() const {
    return counts.filled;
}

int GlCallCount::lookups() const {
    return counts.lookups;
}

int GlCallCount::uniforms(GLsizei count) const {
    return counts.uniforms[count];
}
