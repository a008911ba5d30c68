#include "editor/glyph_atlas.h"

#include <GL/glew.h>

#include <algorithm>
#include <cstring>

namespace {

constexpr int kFirstHeight = 128;

}  // namespace

GlyphAtlas::GlyphAtlas(int width, int largestHeight)
    : width_(width), largestHeight_(largestHeight) {
    GLint limit = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &limit);
    width_ = std::min(width_, limit);
    largestHeight_ = std::min(largestHeight_, limit);
    glGenTextures(1, &texture_);
    glBindTexture(GL_TEXTURE_2D, texture_);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glBindTexture(GL_TEXTURE_2D, 0);
}

GlyphAtlas::~GlyphAtlas() {
    glDeleteTextures(1, &texture_);
}

std::optional<AtlasSpot> GlyphAtlas::place(const GlyphBitmap& glyph) {
    if (glyph.width > width_ || glyph.rows > largestHeight_) return std::nullopt;
    if (shelfX_ + glyph.width > width_) {
        shelfY_ += shelfHeight_;
        shelfX_ = 0;
        shelfHeight_ = 0;
    }
    if (!reserveRows(shelfY_ + glyph.rows)) return std::nullopt;
    const AtlasSpot spot = {static_cast<std::uint16_t>(shelfX_),
                            static_cast<std::uint16_t>(shelfY_)};
    for (int row = 0; row < glyph.rows; ++row) {
        std::memcpy(&coverage_[static_cast<std::size_t>((shelfY_ + row) * width_ + shelfX_)],
                    glyph.coverage + static_cast<std::ptrdiff_t>(row) * glyph.pitch,
                    static_cast<std::size_t>(glyph.width));
    }
    if (firstNewRow_ == endOfNewRows_) firstNewRow_ = shelfY_;
    endOfNewRows_ = std::max(endOfNewRows_, shelfY_ + glyph.rows);
    shelfX_ += glyph.width;
    shelfHeight_ = std::max(shelfHeight_, glyph.rows);
    return spot;
}

bool GlyphAtlas::reserveRows(int rows) {
    if (rows > largestHeight_) return false;
    if (rows <= height_) return true;
    height_ = std::max(height_, kFirstHeight);
    while (height_ < rows) height_ *= 2;
    height_ = std::min(height_, largestHeight_);
    coverage_.resize(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_));
    return true;
}

void GlyphAtlas::clear() {
    shelfX_ = shelfY_ = shelfHeight_ = 0;
    firstNewRow_ = endOfNewRows_ = 0;
    ++generation_;
}

void GlyphAtlas::bind() {
    glBindTexture(GL_TEXTURE_2D, texture_);
    if (textureHeight_ != height_ || firstNewRow_ != endOfNewRows_) upload();
}

void GlyphAtlas::upload() {
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    if (textureHeight_ != height_) {
        glTexImage2D(GL_TEXTURE_2D, 0, GL_R8, width_, height_, 0, GL_RED, GL_UNSIGNED_BYTE,
                     coverage_.data());
        textureHeight_ = height_;
    } else {
        glTexSubImage2D(GL_TEXTURE_2D, 0, 0, firstNewRow_, width_, endOfNewRows_ - firstNewRow_,
                        GL_RED, GL_UNSIGNED_BYTE,
                        &coverage_[static_cast<std::size_t>(firstNewRow_ * width_)]);
    }
    firstNewRow_ = endOfNewRows_ = 0;
}
