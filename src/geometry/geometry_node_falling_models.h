// Repeats the first object of its input: each copy begins at a random place, grows to full size
// while it falls ever faster, and begins again after its lifetime. Copies share the object's mesh.
// All of it follows from the time alone, so a seek needs no state. Type name "FallingModel". Main
// thread.
#pragma once

#include <string>
#include <vector>

#include "core/geometry_node.h"

class GeometryNode_FallingModels : public GeometryNode {
  public:
    struct Drop {
        float x, y, z;  // the place in units of the area, -1 exclusive to 1; y is 0
        float phase;    // seconds
        float size;     // 0 to 1, 1 exclusive
    };

    // More copies than this are not made, whatever the text says.
    static constexpr int kMaxCount = 100'000;

    GeometryNode_FallingModels(Engine* owner, const std::string& nodeId);

    bool canConnect(int port, const Node* source) const override;
    bool process() override;

    std::vector<Drop> drops;

    std::string count;
    std::string speed;
    std::string lastSpeed;
    float timeOffset;  // seconds
    float timeAlive;   // seconds
    float area;
    Vec3 translate;
    Vec3 rotate;  // degrees
    float scale;

  private:
    std::size_t wantedCount() const;
    void refill(std::size_t dropCount);
    void placeCopies(const GeometryNode& source);
};
