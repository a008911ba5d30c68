// A picture of 1024 by 1024 pixels with coloured dots of one pixel, made on the CPU when a
// parameter changes. "Position" only moves the texture matrix. Main thread, with the OpenGL
// context.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "core/image_node.h"

class ImageNode_RandomDots : public ImageNode {
  public:
    ImageNode_RandomDots(Engine* owner, const std::string& nodeId);
    ~ImageNode_RandomDots() override;

    bool canConnect(int, const Node*) const override { return false; }
    // Works in the load pass too, so that the first frame finds the picture made.
    bool process() override;

    float dots;  // how many; a fraction is cut off
    float position[2];
    float minLuma, maxLuma;
    float seed;  // a fraction is cut off
    float color[4];
    float variance;
    bool clampFlag = true;  // transparent outside, not repeated

  private:
    // What the present picture was made from.
    struct Recipe {
        float dots, minLuma, maxLuma, seed, color[4], variance;
        std::uint32_t clamp;
    };
    static_assert(sizeof(Recipe) == 40);  // compared as bytes

    Recipe recipe() const;
    void rebuild();
    void dropDots();

    Recipe last_{};
    std::unique_ptr<std::uint16_t[]> pixels_;  // half floats, kept black between rebuilds
    std::vector<std::size_t> written_;         // where each dot begins
};
