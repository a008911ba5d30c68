// The ordered stream of quads that the editor draws: rectangles, lines and glyphs are collected and
// sent with one draw call, pictures with one each. Clipping is part of a quad, so that a new clip
// rectangle costs no draw call. Blending is the caller's: flush before it changes. The thread that
// owns the OpenGL context.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "editor/glyph_atlas.h"
#include "gpu/math_types.h"
#include "gpu/shader_program.h"

// What is drawn lies in left <= x < right and bottom <= y < top, in pixels of the target with the
// origin at its bottom left.
struct UiClip {
    std::int16_t left = -32768, bottom = -32768, right = 32767, top = 32767;
};

// One quad as ui.vert reads it. Corners in the order of a triangle strip.
struct UiQuad {
    Vec2 corners[4];  // pixels, origin top left
    Vec4 colour;
    UiClip clip;
    std::uint16_t textureX = 0, textureY = 0;  // of corner 0
    // Both 0: a flat quad. Width 0: a band, its width in 256ths of a pixel as the height.
    std::uint16_t textureWidth = 0, textureHeight = 0;
};
static_assert(sizeof(UiQuad) == 64);

class UiBatch {
  public:
    UiBatch();
    ~UiBatch();
    UiBatch(const UiBatch&) = delete;
    UiBatch& operator=(const UiBatch&) = delete;

    // Drops what was collected, starts the count of draw calls anew and sets the size in pixels of
    // the target that all quads go to.
    void beginFrame(int targetWidth, int targetHeight);

    void setClip(const UiClip& clip) { clip_ = clip; }
    void addRect(int x, int y, int width, int height, const Vec4& colour);
    void addQuad(const Vec2 (&corners)[4], const Vec4& colour);
    // A piece of a line with soft edges: corners 0 and 1 lie on its one side, 2 and 3 on the other,
    // `width` pixels away, at most 255. Its coverage grows from nothing to all of it over the first
    // pixel from both sides.
    void addBand(const Vec2 (&corners)[4], float width, const Vec4& colour);
    // `width` by `height` texels of the atlas from `spot`, one a pixel, at x, y.
    void addGlyph(int x, int y, int width, int height, AtlasSpot spot, const Vec4& colour);
    // Draws at once, with the texture that is bound to unit 0 and the blending of the moment.
    enum class TopOfPicture { AtZero, AtOne };  // v of the upper edge
    void drawPicture(int x, int y, int width, int height, TopOfPicture top, const Vec4& colour);
    // Draws all that was collected. Leaves no program, array, buffer or texture of its own bound.
    void flush();

    GlyphAtlas& atlas() { return atlas_; }
    int drawCalls() const { return drawCalls_; }

  private:
    UiQuad& append(const Vec4& colour);
    void submit(const ShaderProgram& program);

    GlyphAtlas atlas_;
    ShaderProgram flatProgram_;
    ShaderProgram pictureProgram_;
    Mat4 projection_;
    UiClip clip_;
    std::vector<UiQuad> quads_;
    std::size_t count_ = 0;
    int drawCalls_ = 0;
    std::uint32_t vertexArray_ = 0;
    std::uint32_t indexBuffer_ = 0;
    std::uint32_t quadBuffer_ = 0;
    std::uint32_t quadTexture_ = 0;
};
