// Builds a graph through the engine's own operations, the way a user's gestures would: makes nodes
// with numbered ids, links them, sets values and keys. Collects what went wrong. Main thread, with
// the OpenGL context.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "core/engine.h"

// One key of an animated float.
struct DemoKey {
    float seconds;
    float value;
    KeyMode mode = kKeyCosine;  // of the segment that ends here
};

class DemoBuilder {
  public:
    explicit DemoBuilder(Engine& engine) : engine_(engine) {}

    // Makes a node of a type; its id is the type's name and the next number.
    std::string add(const std::string& type);
    // Makes a node and links `sources` to its ports from 0 on; an empty id leaves a port free.
    std::string add(const std::string& type, std::initializer_list<std::string> sources);
    void link(const std::string& source, const std::string& target, int port);

    void set(const std::string& id, const char* name, float value);
    void setText(const std::string& id, const char* name, const std::string& text);
    void setChoice(const std::string& id, const char* name, std::int32_t choice);
    void setFlag(const std::string& id, const char* name, bool flag);
    void setVec2(const std::string& id, const char* name, float x, float y);
    void setColor(const std::string& id, const char* name, float r, float g, float b, float a);

    // Keys for a float, or for one component of a Vec2 or Vec4 (all components of a value get
    // tracks; those that are not named keep one key with their present value).
    void animate(const std::string& id, const char* name, const std::vector<DemoKey>& keys,
                 int component = 0);
    // A jump to `high` on every beat of a span, easing back to `low`.
    void pulse(const std::string& id, const char* name, float startSeconds, float stopSeconds,
               float everySeconds, float low, float high);

    const std::vector<std::string>& faults() const { return faults_; }

  private:
    template <typename V>
    V* find(const std::string& id, const char* name, ValueType type);

    Engine& engine_;
    std::vector<std::string> faults_;
};
