// The directional blur as a formula in double precision, for tests of the passes that use it.
#pragma once

#include <algorithm>
#include <cmath>
#include <functional>

#include "image/directional_blur.h"
#include "support/reference_picture.h"

// What a pass reads at texture coordinates.
using SampledPicture = std::function<Sample(double u, double v)>;

inline SampledPicture SampledFrom(const ReferencePicture& picture) {
    return [&picture](double u, double v) { return picture.sample(u, v); };
}

// `u`, `v`: the coordinates of the source, `maskU`, `maskV`: of the mask.
inline Sample BlurFormula(const SampledPicture& source, const SampledPicture& mask, double u,
                          double v, double maskU, double maskV,
                          const DirectionalBlur::Settings& s) {
    const auto length = static_cast<double>(s.length);
    const auto amount = static_cast<double>(s.maskAmount);
    const double l = std::max(1.0, length);
    Sample sum;
    double weights = 0;
    for (int k = 0; - l + 0.75 * k <= l; ++k) {
        const double f = -l + 0.75 * k;
        const double w = std::pow(1 - std::fabs(f) / l, 2);
        const double reach = f * std::min(1.0, length) * (1 + length / 10);
        const double x = static_cast<double>(s.direction.x * s.sampleSize.x) * reach;
        const double y = static_cast<double>(s.direction.y * s.sampleSize.y) * reach;
        const Sample c = source(u + x, v + y), m = mask(maskU + x, maskV + y);
        Sample part;
        part.addWeighted(c, w * (1 + (m.rgba[0] - 1) * amount));
        part.error += *std::max_element(c.rgba, c.rgba + 4) * w * amount * m.error;
        sum.addWeighted(part, 1);
        weights += w;
    }
    return sum.over(weights);
}
