// What a surface looks like, as renderers read it. A material node fills it; geometry and its
// objects share it, so that it lives as long as anything wears it. Main thread.
#pragma once

#include <cstdint>
#include <memory>

#include "gpu/gl_image.h"

struct MaterialData {
    enum Blend : std::int32_t { kNormal = 0, kAdd = 1 };

    std::shared_ptr<GL_Image> diffuseImage;       // may be null
    std::shared_ptr<GL_Image> illuminationImage;  // may be null
    float diffuse = 1;
    float illumination = 0;
    float illumColor[4] = {1, 1, 1, 1};
    float reflection = 0;
    float refFresnel = 1;
    std::int32_t blend = kNormal;  // other numbers are never drawn
};
