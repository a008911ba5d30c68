// One pass of a node: a span of GL commands with a name, for graphics debuggers, and for the
// profiler when one is installed. Main thread, with the OpenGL context.
#pragma once

#include "core/engine.h"
#include "core/frame_profiler.h"
#include "gpu/gl_debug.h"

class NodePass {
  public:
    // `name` is a literal.
    NodePass(const Node& node, const char* name) : node_(node), name_(name), group_(name) {
        if (node_.engine->profiler != nullptr) node_.engine->profiler->beginPass(node_, name_);
    }
    ~NodePass() {
        if (node_.engine->profiler != nullptr) node_.engine->profiler->endPass(node_, name_);
    }
    NodePass(const NodePass&) = delete;
    NodePass& operator=(const NodePass&) = delete;

  private:
    const Node& node_;
    const char* name_;
    GlDebugGroup group_;
};
