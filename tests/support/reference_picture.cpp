#include "support/reference_picture.h"

#include <GL/glew.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "gpu/gl_framebuffer.h"

Sample& Sample::addWeighted(const Sample& other, double weight) {
    for (int c = 0; c < 4; ++c) rgba[c] += other.rgba[c] * weight;
    error += other.error * std::fabs(weight);
    return *this;
}

Sample Sample::over(double divisor) const {
    return Sample{}.addWeighted(*this, 1 / divisor);
}

ReferencePicture::ReferencePicture(int pictureWidth, int pictureHeight,
                                   const std::function<Vec4(int x, int y)>& texel)
    : width(pictureWidth), height(pictureHeight) {
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) texels_.push_back(texel(x, y));
    }
}

ReferencePicture ReferencePicture::Waves(int width, int height, int seed) {
    const auto wave = [&](int x, int y, int channel) {
        const double a = 0.11 + 0.031 * ((seed * 7 + channel * 3) % 5);
        const double b = 0.09 + 0.037 * ((seed * 3 + channel * 5) % 4);
        const double w = 0.5 + 0.25 * std::sin(a * x + 1.7 * channel + seed) +
                         0.25 * std::cos(b * y - 0.9 * channel + 0.4 * a * x);
        return std::clamp(w, 0.0, 1.0);
    };
    const auto step = [](double value) {
        return static_cast<float>(std::round(value * 1024) / 1024);
    };
    return {width, height, [&](int x, int y) -> Vec4 {
                return {step(wave(x, y, 0)), step(wave(x, y, 1)), step(wave(x, y, 2)),
                        step(0.25 + 0.75 * wave(x, y, 3))};
            }};
}

Vec4 ReferencePicture::texelAt(int x, int y) const {
    if (x < 0 || y < 0 || x >= width || y >= height) return {};
    return texels_[static_cast<std::size_t>(y * width + x)];
}

Sample ReferencePicture::sample(double u, double v) const {
    // Far outside, whole numbers would no longer hold the place.
    const double x = std::clamp(u * width - 0.5, -1e6, 1e6);
    const double y = std::clamp(v * height - 0.5, -1e6, 1e6);
    const int left = static_cast<int>(std::floor(x)), low = static_cast<int>(std::floor(y));
    const double fx = x - left, fy = y - low;
    const std::array<Vec4, 4> texels = {texelAt(left, low), texelAt(left + 1, low),
                                        texelAt(left, low + 1), texelAt(left + 1, low + 1)};
    const double weights[4] = {(1 - fx) * (1 - fy), fx * (1 - fy), (1 - fx) * fy, fx * fy};
    Sample result;
    double apart = 0;
    for (int c = 0; c < 4; ++c) {
        double least = 1e30, most = -1e30;
        for (std::size_t i = 0; i < 4; ++i) {
            const float channels[4] = {texels[i].r, texels[i].g, texels[i].b, texels[i].a};
            const auto value = static_cast<double>(channels[c]);
            result.rgba[c] += weights[i] * value;
            least = std::min(least, value);
            most = std::max(most, value);
        }
        apart = std::max(apart, most - least);
    }
    result.error = apart * placeError;
    return result;
}

std::shared_ptr<GL_FrameBuffer> ReferencePicture::upload() const {
    auto target = std::make_shared<GL_FrameBuffer>(width, height, 1, 16, GL_RGBA, TargetDepth::None,
                                                   TargetWrap::Border);
    target->BindTexture(0, GL_TEXTURE0);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, width, height, GL_RGBA, GL_FLOAT, texels_.data());
    target->UnbindTextures(GL_TEXTURE0);
    return target;
}
