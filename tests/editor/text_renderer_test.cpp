#include "editor/text_renderer.h"

#include <ft2build.h>
#include <gmock/gmock.h>
#include FT_FREETYPE_H

#include "ui_fixture.h"

namespace {

constexpr Vec4 kBackground = {0.25f, 0.5f, 0.125f, 1};
constexpr Vec4 kInk = {1, 0.7f, 0, 0.8f};

std::string FontFile(const char* name) {
    return (std::filesystem::path(std::getenv("VORN_TEST_FONTS")) / name).string();
}

// FreeType's own glyphs, set by the pen as the text renderer is to set them.
class PlainText {
  public:
    explicit PlainText(const std::string& file) {
        EXPECT_EQ(FT_Init_FreeType(&library_), 0);
        EXPECT_EQ(FT_New_Face(library_, file.c_str(), 0, &face_), 0);
    }
    ~PlainText() {
        FT_Done_Face(face_);
        FT_Done_FreeType(library_);
    }

    void draw(Picture& picture, int x, int y, int size, const Vec4& color,
              const std::string& text) {
        for (const char c : text) {
            load(size, c);
            const FT_GlyphSlot slot = face_->glyph;
            for (unsigned row = 0; row < slot->bitmap.rows; ++row) {
                for (unsigned column = 0; column < slot->bitmap.width; ++column) {
                    const int byte =
                        slot->bitmap.buffer[static_cast<int>(row) * slot->bitmap.pitch +
                                            static_cast<int>(column)];
                    Vec4 ink = color;
                    ink.a *= static_cast<float>(byte) / 255;
                    picture.blend(x + slot->bitmap_left + static_cast<int>(column),
                                  y - slot->bitmap_top + static_cast<int>(row), ink);
                }
            }
            x += static_cast<int>(slot->advance.x >> 6);
        }
    }
    int measure(int size, const std::string& text) {
        int width = 0;
        for (const char c : text) {
            load(size, c);
            width += static_cast<int>(face_->glyph->advance.x >> 6);
        }
        return width;
    }

  private:
    void load(int size, char c) {
        FT_Set_Pixel_Sizes(face_, 0, static_cast<FT_UInt>(size));
        ASSERT_EQ(
            FT_Load_Char(face_, static_cast<FT_ULong>(static_cast<signed char>(c)), FT_LOAD_RENDER),
            0);
    }
    FT_Library library_ = nullptr;
    FT_Face face_ = nullptr;
};

const std::string& AllCharacters() {
    static const std::string text = [] {
        std::string all;
        for (char c = 32; c < 127; ++c) all += c;
        return all;
    }();
    return text;
}

class TextRendererTest : public UiTest {};

}  // namespace

TEST_F(TextRendererTest, DrawsTheFontsOwnGlyphsAtThePen) {
    useSize(1100, 120);
    PlainText plain(FontFile("verdana.ttf"));
    begin(kBackground);
    Picture expected = blank(kBackground);
    int y = 20;
    for (const int size : {8, 12, 14}) {
        master.verdana->DrawText(5, y, size, kInk, AllCharacters());
        plain.draw(expected, 5, y, size, kInk, AllCharacters());
        y += 30;
    }
    ExpectSamePicture(end(), expected);
    EXPECT_EQ(master.drawCalls(), 1);
}

TEST_F(TextRendererTest, DrawsCourierToo) {
    useSize(300, 40);
    PlainText plain(FontFile("courier.ttf"));
    begin(kBackground);
    Picture expected = blank(kBackground);
    master.courier->DrawText(-3, 25, 14, kInk, "Quick (0.25) brown_fox @ 100%");
    plain.draw(expected, -3, 25, 14, kInk, "Quick (0.25) brown_fox @ 100%");
    ExpectSamePicture(end(), expected);
}

TEST_F(TextRendererTest, DrawsTheSameASecondTime) {
    begin(kBackground);
    master.DrawText(5, 30, 12, kInk, "Again");
    const Picture first = end();
    begin(kBackground);
    master.DrawText(5, 30, 12, kInk, "Again");
    ExpectSamePicture(end(), first, 0);
}

TEST_F(TextRendererTest, LetsGlyphsRiseAboveTheGivenBaseline) {
    begin();
    master.DrawText(10, 30, 14, {1, 1, 1, 1}, "HEX");
    const Picture picture = end();
    bool above = false;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            if (picture.at(x, y).a == 0) continue;
            EXPECT_LT(y, 30) << "capitals stand on the baseline";
            above = true;
        }
    }
    EXPECT_TRUE(above);
}

TEST_F(TextRendererTest, MeasuresTheSumOfTheAdvances) {
    PlainText plain(FontFile("verdana.ttf"));
    for (const int size : {8, 12, 14, 31}) {
        EXPECT_EQ(master.MeasureText(size, AllCharacters()), plain.measure(size, AllCharacters()));
        EXPECT_EQ(master.MeasureText(size, "Blur \xe9t\xe9"),
                  plain.measure(size, "Blur \xe9t\xe9"));
    }
    EXPECT_GT(master.MeasureText(14, "wide"), master.MeasureText(8, "wide"));
    EXPECT_EQ(master.MeasureText(12, ""), 0);
}

TEST_F(TextRendererTest, StopsAtACharacterWithTheHighBitAndTellsItOnce) {
    begin(kBackground);
    const DebugCapture capture;
    master.DrawText(5, 30, 12, kInk, "ab\xe9zz");
    const Picture actual = end();
    EXPECT_THAT(capture.messages(), testing::ElementsAre("invalid vector<T> subscript\n"));
    begin(kBackground);
    master.DrawText(5, 30, 12, kInk, "\xff");
    master.DrawText(5, 30, 12, kInk, "ab");
    ExpectSamePicture(actual, end(), 0);
    EXPECT_EQ(capture.messages().size(), 1u);
}

TEST_F(TextRendererTest, DrawsNothingForAnEmptyText) {
    begin(kBackground);
    master.DrawText(5, 30, 12, kInk, "");
    ExpectSamePicture(end(), blank(kBackground), 0);
    EXPECT_EQ(master.drawCalls(), 0);
}

TEST_F(TextRendererTest, WithoutAFontDrawsAndMeasuresNothingAndStaysSilent) {
    const TempFolder folder;
    folder.write("broken.ttf", "no font at all");
    const DebugCapture capture;
    UiBatch batch;
    const std::size_t before = capture.messages().size();
    for (const std::string& name : {folder.file("missing.ttf"), folder.file("broken.ttf")}) {
        TextRenderer text(name, batch);
        text.DrawText(5, 5, 12, kInk, "abc");
        EXPECT_EQ(text.MeasureText(12, "abc"), 0);
        EXPECT_FALSE(text.usable());
        EXPECT_EQ(text.fileName(), name);
    }
    EXPECT_TRUE(TextRenderer(FontFile("verdana.ttf"), batch).usable());
    EXPECT_EQ(capture.messages().size(), before);
}

TEST_F(TextRendererTest, DrawsMoreGlyphsThanTheAtlasHolds) {
    useSize(300, 200);
    PlainText plain(FontFile("verdana.ttf"));
    // Sizes whose glyphs need some four times the largest atlas, then small ones again.
    std::vector<int> sizes = {12};
    for (int size = 100; size < 180; ++size) sizes.push_back(size);
    sizes.push_back(12);
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        begin(kBackground);
        master.DrawText(5, 150, sizes[i], kInk, AllCharacters());
        master.DrawText(3, 190, 12, kInk, "small");
        const Picture actual = end();
        if (i % 20 != 0 && i + 1 != sizes.size()) continue;
        Picture expected = blank(kBackground);
        plain.draw(expected, 5, 150, sizes[i], kInk, AllCharacters());
        plain.draw(expected, 3, 190, 12, kInk, "small");
        ExpectSamePicture(actual, expected);
    }
}

TEST_F(TextRendererTest, AtlasRefusesWhatDoesNotFit) {
    GlyphAtlas atlas(64, 64);
    const std::vector<std::uint8_t> ink(65 * 65, 255);
    EXPECT_FALSE(atlas.place({65, 3, 65, ink.data()}));
    EXPECT_FALSE(atlas.place({3, 65, 3, ink.data()}));
    EXPECT_TRUE(atlas.place({64, 40, 64, ink.data()}));
    EXPECT_FALSE(atlas.place({10, 30, 10, ink.data()}));
    const std::uint32_t before = atlas.generation();
    atlas.clear();
    EXPECT_NE(atlas.generation(), before);
    EXPECT_TRUE(atlas.place({10, 30, 10, ink.data()}));
}
