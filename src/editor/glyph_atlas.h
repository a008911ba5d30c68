// One texture with the coverage of all glyphs in use, a byte a pixel. Glyphs are placed on shelves
// and stay where they are while the texture grows; when it can grow no more, everything is
// forgotten and placed anew on demand. The thread that owns the OpenGL context.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

struct GlyphBitmap {
    int width = 0;                           // pixels
    int rows = 0;                            // pixels
    int pitch = 0;                           // bytes from one row to the next; may be negative
    const std::uint8_t* coverage = nullptr;  // top row
};

struct AtlasSpot {
    std::uint16_t x = 0, y = 0;  // texel of the glyph's top left pixel
};

class GlyphAtlas {
  public:
    // Sizes in texels; tests make small ones.
    explicit GlyphAtlas(int width = 512, int largestHeight = 4096);
    ~GlyphAtlas();
    GlyphAtlas(const GlyphAtlas&) = delete;
    GlyphAtlas& operator=(const GlyphAtlas&) = delete;

    // Nothing when the atlas is full, or the glyph larger than an empty one.
    std::optional<AtlasSpot> place(const GlyphBitmap& glyph);
    // Forgets all glyphs; spots of earlier generations no longer count. Nothing that is still to
    // be drawn may refer to them.
    void clear();
    std::uint32_t generation() const { return generation_; }

    // Sends what is new to the texture and binds it to the active unit.
    void bind();

  private:
    bool reserveRows(int rows);
    void upload();

    int width_;
    int largestHeight_;
    int height_ = 0;  // rows in memory
    int shelfX_ = 0, shelfY_ = 0, shelfHeight_ = 0;
    int firstNewRow_ = 0, endOfNewRows_ = 0;
    int textureHeight_ = 0;
    std::uint32_t texture_ = 0;
    std::uint32_t generation_ = 1;
    std::vector<std::uint8_t> coverage_;
};
