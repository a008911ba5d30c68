// Draws in the air what a puppet's hand draws: samples the hand over chosen spans of time, makes a
// small flat square of each sample, and lets the line grow with the clock. Type name "HandLine".
// Main thread, with the OpenGL context.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/geometry_node.h"

class GeometryNode_KinectModel;

class GeometryNode_HandLine : public GeometryNode {
  public:
    // The line has this many samples after `timeSeconds`.
    struct Growth {
        float timeSeconds;
        int sampleCount;
    };

    GeometryNode_HandLine(Engine* owner, const std::string& nodeId);

    bool canConnect(int port, const Node* source) const override;
    bool process() override;

    std::string from, to;  // numbers of spans: the first, and the one after the last
    std::vector<Growth> growth;

    // The puppet that the line was built from; only ever compared, since it may be gone.
    const GeometryNode_KinectModel* puppet = nullptr;

  private:
    const GeometryNode_KinectModel* connectedPuppet() const;
    bool isStale(const GeometryNode_KinectModel* source) const;
    void rebuild(const GeometryNode_KinectModel* source);
    std::vector<Vec3> sampleHand(const GeometryNode_KinectModel& source);  // also fills growth
    int samplesBefore(float timeSeconds) const;

    std::string builtFrom_, builtTo_;
    std::uint64_t builtLoadId_ = 0;
};
