// A picture of 1024 by 1024 pixels with coloured dots of one pixel, made on the CPU when a
// parameter changes. "Position" only moves the texture matrix. Main thread, with the OpenGL
// context.
#pragma once

#include <array>
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

    using Pixel = std::array<std::uint16_t, 4>;  // half floats

    Recipe recipe() const;
    void rebuild();
    void drawNumbers(std::size_t count);
    void makeLights();
    void showDots();
    void upload();

    Recipe last_{};
    std::unique_ptr<Pixel[]> pixels_;  // black between rebuilds
    // Of each dot, in the order in which they are drawn. Kept, so that a rebuild takes no memory.
    std::vector<std::uint32_t> places_;                 // index of its pixel
    std::array<std::vector<std::int32_t>, 3> drifts_;   // thousandths of "Variance" below +1
    std::vector<std::int32_t> parts_;                   // hundred-thousandths of the range of luma
    std::vector<double> bases_;                         // luma before the drift
    std::vector<float> lights_;                         // of the channel at hand
    std::array<std::vector<std::uint16_t>, 3> halves_;  // the lights as half floats
};
