// Draws single lines of text with one font face. Glyphs are rendered by FreeType once for each size
// and kept; what is drawn goes into the batch that all of the editor's drawing goes into. Depends
// on FreeType. The thread that owns the OpenGL context.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "editor/ui_batch.h"
#include "gpu/math_types.h"

class TextRenderer {
  public:
    // `fileName` as projects name files. Without the file, or when it is no font, the renderer
    // draws and measures nothing; nothing is reported. `batch` must outlive the renderer.
    TextRenderer(std::string_view fileName, UiBatch& batch);
    ~TextRenderer();
    TextRenderer(const TextRenderer&) = delete;
    TextRenderer& operator=(const TextRenderer&) = delete;

    // The baseline of the first glyph begins at pixel x, y, origin top left. A character with the
    // high bit set ends the drawing; the first one ever is told on the debug channel.
    void DrawText(int x, int y, int pixelSize, const Vec4& rgba, std::string_view text);
    // Width in pixels: the sum of the advances.
    int MeasureText(int pixelSize, std::string_view text);

    bool usable() const;  // false without a font
    const std::string& fileName() const { return fileName_; }

  private:
    struct Font;  // FreeType's library and face
    struct GlyphEntry;
    struct SizeTable;

    SizeTable& sizeTable(int pixelSize);
    GlyphEntry& glyph(SizeTable& table, char character);
    bool loadGlyph(int pixelSize, char character);
    void placeGlyph(int pixelSize, char character, GlyphEntry& entry);

    UiBatch& batch_;
    std::string fileName_;
    std::unique_ptr<Font> font_;
    std::vector<std::unique_ptr<SizeTable>> sizes_;
    bool toldHighBit_ = false;
};
