// Counts calls of OpenGL that a frame should not need. Depends on GLEW, whose table of entry points
// it changes while it lives; one at a time; the thread that owns the OpenGL context.
#pragma once

#include <GL/glew.h>

class GlCallCount {
  public:
    GlCallCount();
    ~GlCallCount();
    GlCallCount(const GlCallCount&) = delete;
    GlCallCount& operator=(const GlCallCount&) = delete;

    int madeBuffers() const;            // buffers and vertex arrays
    int filledBuffers() const;          // glBufferData
    int lookups() const;                // of uniforms by their name
    int uniforms(GLsizei count) const;  // glUniform4fv of `count` vectors
};
