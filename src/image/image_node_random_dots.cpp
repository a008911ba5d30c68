#include "image/image_node_random_dots.h"

#include <GL/glew.h>

#include <algorithm>
#include <cmath>
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
    images[0].reset();
    if (pixels_ == nullptr) {
        pixels_ = std::make_unique<std::uint16_t[]>(std::size_t{kSize} * kSize * 4);
    }
    Random::seed(static_cast<std::uint32_t>(TruncatedInt(seed)));
    const std::int32_t count = std::clamp(TruncatedInt(dots), 0, kMostDots);
    const double range = static_cast<double>(maxLuma - minLuma);
    for (std::int32_t i = 0; i < count; ++i) {
        const int x = Random::next() % kSize;
        const int y = Random::next() % kSize;
        const int drifts[] = {Random::next() % 2000, Random::next() % 2000, Random::next() % 2000};
        const double part = (Random::next() % 100000) / 100000.0;
        const double base = part * range + static_cast<double>(minLuma);
        const auto at = static_cast<std::size_t>(y * kSize + x) * 4;
        for (std::size_t c = 0; c < 3; ++c) {
            const double drift = (1.0 - drifts[c] / 1000.0) * static_cast<double>(variance);
            const double light = static_cast<double>(color[c]) * std::max(0.0, drift + base);
            pixels_[at + c] = HalfBits(static_cast<float>(light));
        }
        pixels_[at + 3] = HalfBits(1.0f);
        written_.push_back(at);
    }
    const GLenum wrap = clampFlag ? GL_CLAMP_TO_BORDER : GL_REPEAT;
    images[0] = std::make_shared<GL_MemTexture>(wrap, wrap, pixels_.get());
    LabelGlObject(GL_TEXTURE, images[0]->textures[0], "Dot");
    dropDots();
}

// Blackens the dots again, which is far less than the whole block.
void ImageNode_RandomDots::dropDots() {
    for (const std::size_t at : written_) std::fill_n(&pixels_[at], 4, std::uint16_t{0});
    written_.clear();
}
