#include "editor/text_renderer.h"

#include <ft2build.h>
#include FT_FREETYPE_H

#include <optional>

#include "platform/debug_output.h"
#include "platform/files.h"

struct TextRenderer::Font {
    FT_Library library = nullptr;
    FT_Face face = nullptr;

    explicit Font(const std::string& path) {
        if (FT_Init_FreeType(&library) != 0) {
            library = nullptr;
            return;
        }
        if (FT_New_Face(library, path.c_str(), 0, &face) != 0) face = nullptr;
    }
    ~Font() {
        if (face != nullptr) FT_Done_Face(face);
        if (library != nullptr) FT_Done_FreeType(library);
    }
    Font(const Font&) = delete;
    Font& operator=(const Font&) = delete;
};

struct TextRenderer::GlyphEntry {
    enum class State : std::uint8_t { Unknown, Missing, Known };
    State state = State::Unknown;
    int left = 0, top = 0;    // of the bitmap from the pen, top upward, pixels
    int width = 0, rows = 0;  // of the bitmap, pixels; width 0: nothing to see
    int advance = 0;          // pixels
    AtlasSpot spot;
    std::uint32_t generation = 0;  // of the atlas, 0: not placed yet
};

struct TextRenderer::SizeTable {
    int pixelSize = 0;
    // Entries of 7-bit characters, and a last one for all others, which have the advance of the
    // face's missing glyph.
    std::array<GlyphEntry, 129> glyphs;
};

TextRenderer::TextRenderer(std::string_view fileName, UiBatch& batch)
    : batch_(batch),
      fileName_(fileName),
      font_(std::make_unique<Font>(ResolvePath(fileName).string())) {}

TextRenderer::~TextRenderer() = default;

bool TextRenderer::usable() const {
    return font_->face != nullptr;
}

TextRenderer::SizeTable& TextRenderer::sizeTable(int pixelSize) {
    for (const std::unique_ptr<SizeTable>& table : sizes_) {
        if (table->pixelSize == pixelSize) return *table;
    }
    sizes_.push_back(std::make_unique<SizeTable>());
    sizes_.back()->pixelSize = pixelSize;
    return *sizes_.back();
}

// Renders the character into the face's glyph slot.
bool TextRenderer::loadGlyph(int pixelSize, char character) {
    if (pixelSize <= 0) return false;
    // Characters are signed bytes: those with the high bit set name no character of any face.
    const auto code = static_cast<FT_ULong>(static_cast<signed char>(character));
    FT_Set_Pixel_Sizes(font_->face, 0, static_cast<FT_UInt>(pixelSize));
    return FT_Load_Char(font_->face, code, FT_LOAD_RENDER) == 0;
}

TextRenderer::GlyphEntry& TextRenderer::glyph(SizeTable& table, char character) {
    const auto byte = static_cast<unsigned char>(character);
    GlyphEntry& entry = table.glyphs[byte < 128 ? byte : 128];
    if (entry.state != GlyphEntry::State::Unknown) return entry;
    entry.state = GlyphEntry::State::Missing;
    if (!loadGlyph(table.pixelSize, character)) return entry;
    entry.state = GlyphEntry::State::Known;
    const FT_GlyphSlot slot = font_->face->glyph;
    entry.left = slot->bitmap_left;
    entry.top = slot->bitmap_top;
    entry.advance = static_cast<int>(slot->advance.x >> 6);
    if (slot->bitmap.pixel_mode == FT_PIXEL_MODE_GRAY) {
        entry.rows = static_cast<int>(slot->bitmap.rows);
        entry.width = entry.rows > 0 ? static_cast<int>(slot->bitmap.width) : 0;
    }
    return entry;
}

// Puts the glyph's bitmap into the atlas. A glyph that is larger than the atlas stays invisible.
void TextRenderer::placeGlyph(int pixelSize, char character, GlyphEntry& entry) {
    if (!loadGlyph(pixelSize, character)) return;
    const FT_Bitmap& bitmap = font_->face->glyph->bitmap;
    // An upward bitmap has its bottom row first in memory.
    const std::uint8_t* topRow =
        bitmap.pitch < 0 ? bitmap.buffer - (entry.rows - 1) * bitmap.pitch : bitmap.buffer;
    const GlyphBitmap source = {entry.width, entry.rows, bitmap.pitch, topRow};
    std::optional<AtlasSpot> spot = batch_.atlas().place(source);
    if (!spot) {
        batch_.flush();
        batch_.atlas().clear();
        spot = batch_.atlas().place(source);
    }
    if (!spot) {
        entry.width = entry.rows = 0;
        return;
    }
    entry.spot = *spot;
    entry.generation = batch_.atlas().generation();
}

void TextRenderer::DrawText(int x, int y, int pixelSize, const Vec4& rgba, std::string_view text) {
    if (font_->face == nullptr || text.empty()) return;
    SizeTable& table = sizeTable(pixelSize);
    int penX = x;
    for (const char character : text) {
        GlyphEntry& entry = glyph(table, character);
        if (entry.state == GlyphEntry::State::Missing) continue;
        if (static_cast<signed char>(character) < 0) {
            if (!toldHighBit_) DebugOutput("invalid vector<T> subscript\n");
            toldHighBit_ = true;
            return;
        }
        if (entry.width > 0 && entry.generation != batch_.atlas().generation()) {
            placeGlyph(pixelSize, character, entry);
        }
        if (entry.width > 0) {
            batch_.addGlyph(penX + entry.left, y - entry.top, entry.width, entry.rows, entry.spot,
                            rgba);
        }
        penX += entry.advance;
    }
}

int TextRenderer::MeasureText(int pixelSize, std::string_view text) {
    if (font_->face == nullptr || text.empty()) return 0;
    SizeTable& table = sizeTable(pixelSize);
    int width = 0;
    for (const char character : text) width += glyph(table, character).advance;
    return width;
}
