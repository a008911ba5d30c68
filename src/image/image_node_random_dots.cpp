#include "image/image_node_random_dots.h"

#include <GL/glew.h>

#include <algorithm>
#include <cstring>

#include "core/engine.h"
#include "core/random.h"
#include "core/truncated.h"
#include "gpu/gl_debug.h"
#include "gpu/gl_mem_texture.h"
#include "gpu/half_float.h"

namespace {

constexpr int kSize = 1024;  // pixels, both ways
constexpr std::int32_t kMostDots = kSize * kSize;

}  // namespace

ImageNode_RandomDots::ImageNode_RandomDots(Engine* owner, const std::string& nodeId)
    : ImageNode(owner, nodeId) {
    engine->declareFloat(this, "Dots", dots, 100, 50000, 0, 1000, false);
    engine->declareVec2(this, "Position", position, {0.5f, 0.5f}, true);
    engine->declareFloat(this, "Min Luma", minLuma, 0, 10, 2, 0, false);
    engine->declareFloat(this, "Max Luma", maxLuma, 0, 50, 2, 1, false);
    engine->declareFloat(this, "Seed", seed, 0, 99999, 0, 5000, false);
    engine->declareVec4(this, "Color", color, {1, 1, 1, 1});
    engine->declareFloat(this, "Variance", variance, 0.0001f, 10, 4, 0, true);
}

ImageNode_RandomDots::~ImageNode_RandomDots() = default;

ImageNode_RandomDots::Recipe ImageNode_RandomDots::recipe() const {
    return {dots,
            minLuma,
            maxLuma,
            seed,
            {color[0], color[1], color[2], color[3]},
            variance,
            clampFlag ? 1u : 0u};
}

bool ImageNode_RandomDots::process() {
    const Recipe wanted = recipe();
    if (images[0] == nullptr || std::memcmp(&wanted, &last_, sizeof wanted) != 0) {
        last_ = wanted;
        rebuild();
    }
    Mat4Translation(textureMatrix, {0.5f - position[0], 0.5f - position[1], 0.0f});
    return true;
}

void ImageNode_RandomDots::rebuild() {
    const std::int32_t count = std::clamp(TruncatedInt(dots), 0, kMostDots);
    Random::seed(static_cast<std::uint32_t>(TruncatedInt(seed)));
    drawNumbers(static_cast<std::size_t>(count));
    makeLights();
    showDots();
}

void ImageNode_RandomDots::drawNumbers(std::size_t count) {
    places_.resize(count);
    for (auto& drifts : drifts_) drifts.resize(count);
    parts_.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        const int x = Random::next() % kSize;
        const int y = Random::next() % kSize;
        for (auto& drifts : drifts_) drifts[i] = Random::next() % 2000;
        parts_[i] = Random::next() % 100000;
        places_[i] = static_cast<std::uint32_t>(y * kSize + x);
    }
}

// A loop for each step and channel, so that the compiler takes several dots at a time.
void ImageNode_RandomDots::makeLights() {
    const std::size_t count = places_.size();
    const double range = static_cast<double>(maxLuma - minLuma);
    const double darkest = static_cast<double>(minLuma);
    const double spread = static_cast<double>(variance);
    bases_.resize(count);
    lights_.resize(count);
    for (std::size_t i = 0; i < count; ++i) bases_[i] = parts_[i] / 100000.0 * range + darkest;
    for (std::size_t c = 0; c < drifts_.size(); ++c) {
        const double tint = static_cast<double>(color[c]);
        for (std::size_t i = 0; i < count; ++i) {
            const double light = (1.0 - drifts_[c][i] / 1000.0) * spread + bases_[i];
            lights_[i] = static_cast<float>(tint * (light > 0.0 ? light : 0.0));
        }
        halves_[c].resize(count);
        for (std::size_t i = 0; i < count; ++i) halves_[c][i] = HalfBits(lights_[i]);
    }
}

void ImageNode_RandomDots::showDots() {
    if (pixels_ == nullptr) pixels_ = std::make_unique<Pixel[]>(std::size_t{kSize} * kSize);
    const std::uint16_t opaque = HalfBits(1.0f);
    for (std::size_t i = 0; i < places_.size(); ++i) {
        pixels_[places_[i]] = {halves_[0][i], halves_[1][i], halves_[2][i], opaque};
    }
    upload();
    // Blackens the dots again, which is far less than the whole block.
    for (const std::uint32_t place : places_) pixels_[place] = {};
}

// Into the texture of before, unless somebody else still shows that.
void ImageNode_RandomDots::upload() {
    const std::uint16_t* const halfFloats = pixels_[0].data();
    if (images[0].use_count() == 1 && images[0]->hasBorder == clampFlag) {
        static_cast<GL_MemTexture&>(*images[0]).setPixels(halfFloats);
        return;
    }
    const GLenum wrap = clampFlag ? GL_CLAMP_TO_BORDER : GL_REPEAT;
    images[0] = std::make_shared<GL_MemTexture>(wrap, wrap, halfFloats);
    LabelGlObject(GL_TEXTURE, images[0]->textures[0], "Dot");
}
