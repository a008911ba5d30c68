// A picture as plain numbers, sampled in double precision: the second computation that the results
// of picture passes are compared with. It becomes a render target, so that a node can offer it.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "gpu/math_types.h"

class GL_FrameBuffer;

// A colour with the most by which a renderer's sample of it may differ in each channel.
struct Sample {
    double rgba[4] = {0, 0, 0, 0};
    double error = 0;

    double mean() const { return (rgba[0] + rgba[1] + rgba[2]) / 3; }
    Sample& addWeighted(const Sample& other, double weight);
    Sample over(double divisor) const;
};

class ReferencePicture {
  public:
    // `texel` is asked for every texel, the first row lying at v = 0. It must give numbers that a
    // 16-bit float holds exactly, so that the renderer and the reference see the same.
    ReferencePicture(int pictureWidth, int pictureHeight,
                     const std::function<Vec4(int x, int y)>& texel);
    // Slowly changing colours from 0 to 1 and alpha from 0.25 to 1, in steps of 1/1024.
    static ReferencePicture Waves(int width, int height, int seed);

    // Bilinear, transparent black outside. The error is what `placeError` makes of how far the four
    // texels lie apart.
    Sample sample(double u, double v) const;
    std::shared_ptr<GL_FrameBuffer> upload() const;
    Vec4 texelAt(int x, int y) const;  // transparent black outside

    int width, height;
    // How far off a renderer may sample, in texels, both axes together: it keeps 8 bits or more of
    // the place between two texels.
    double placeError = 1.0 / 256;

  private:
    std::vector<Vec4> texels_;
};
