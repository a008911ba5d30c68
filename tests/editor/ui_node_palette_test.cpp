#include "editor/ui_node_palette.h"

#include <gmock/gmock.h>

#include "canvas_fixture.h"
#include "editor/canvas_view.h"
#include "editor/fuzzy_match.h"
#include "editor/link_curve.h"
#include "editor/node_type_catalog.h"

namespace {

using testing::ElementsAre;

// --- search

TEST(FuzzyScore, LettersMustComeInTheirOrder) {
    EXPECT_TRUE(FuzzyScore("tsi", "Time Switch Image").has_value());
    EXPECT_TRUE(FuzzyScore("GLOW", "glow").has_value());
    EXPECT_TRUE(FuzzyScore("g w", "glow").has_value());
    EXPECT_FALSE(FuzzyScore("wg", "glow").has_value());
    EXPECT_FALSE(FuzzyScore("gloww", "glow").has_value());
    EXPECT_FALSE(FuzzyScore("a", "").has_value());
    EXPECT_EQ(FuzzyScore("", "glow"), 0);
    EXPECT_EQ(FuzzyScore("  ", ""), 0);
}

TEST(FuzzyScore, PrefersStartsWordsAndRuns) {
    EXPECT_GT(FuzzyScore("glow", "Glow"), FuzzyScore("glow", "Soft Glow"));
    EXPECT_GT(FuzzyScore("glow", "Soft Glow"), FuzzyScore("glow", "Gallows"));
    EXPECT_GT(FuzzyScore("tsc", "Time Switch Camera"), FuzzyScore("tsc", "Threshold score"));
    EXPECT_GT(FuzzyScore("2d", "Displace 2D"), FuzzyScore("2d", "x2 old"));
    EXPECT_GT(FuzzyScore("om", "CombineOm"), FuzzyScore("om", "Combineom"))
        << "a capital is a start";
    EXPECT_TRUE(FuzzyScore(std::string(1000, 'a'), std::string(64, 'a')).has_value());
}

// --- palette

class Palette : public ::testing::Test {
  protected:
    static constexpr int kBottom = 1050;

    Palette() {
        palette.SetMaster(&master);
        palette.onTaken = [this](const std::string& name) { taken.push_back(name); };
    }
    std::vector<std::string> lines() const {
        std::vector<std::string> result;
        for (const auto& row : palette.rows()) {
            result.push_back(row.heading ? "- " + row.text : row.text);
        }
        return result;
    }
    void open() {
        ASSERT_TRUE(palette.open(
            100, 100, kBottom,
            {{"Viewer", "Output"}, {"Reader", "Image"}, {"Camera", "Camera"}, {"Compose", "Image"}},
            "New node"));
    }
    void openLongList(int x, int y) {
        std::vector<OfferedType> many;
        for (int i = 0; i < 100; ++i) many.push_back({"Type" + std::to_string(i), "All"});
        ASSERT_TRUE(palette.open(x, y, kBottom, many, ""));
    }
    static int heightOf(int rows) {
        return UI_NodePalette::kTop + rows * UI_NodePalette::kRowHeight + UI_NodePalette::kEnd;
    }
    void key(int code) { Play(master, kMessageKeyDown, 0, 0, code); }
    void type(const std::string& text) {
        for (const char c : text) Play(master, kMessageCharacter, 0, 0, c);
    }
    UI_Master master;
    UI_NodePalette palette;
    std::vector<std::string> taken;
};

TEST_F(Palette, GroupsTypesAndChoosesTheFirst) {
    open();
    EXPECT_THAT(lines(), ElementsAre("- Output", "Viewer", "- Image", "Reader", "Compose",
                                     "- Camera", "Camera"));
    EXPECT_EQ(palette.chosen(), "Viewer");
    EXPECT_EQ(master.captured, &palette);
}

TEST_F(Palette, ArrowsPassHeadingsAndStopAtTheEnds) {
    open();
    key(kKeyUp);
    EXPECT_EQ(palette.chosen(), "Viewer");
    key(kKeyDown);
    EXPECT_EQ(palette.chosen(), "Reader");
    key(kKeyDown);
    key(kKeyDown);
    EXPECT_EQ(palette.chosen(), "Camera");
    key(kKeyDown);
    EXPECT_EQ(palette.chosen(), "Camera");
    key(kKeyPageUp);
    EXPECT_EQ(palette.chosen(), "Viewer");
    key(kKeyPageDown);
    EXPECT_EQ(palette.chosen(), "Camera");
    key(kKeyReturn);
    EXPECT_THAT(taken, ElementsAre("Camera"));
    EXPECT_EQ(master.captured, nullptr);
    EXPECT_FALSE(palette.isOpen());
}

TEST_F(Palette, TypingFiltersAndBackspaceTakesBack) {
    open();
    type("co");
    EXPECT_THAT(lines(), ElementsAre("Compose"));
    type("zz");
    EXPECT_TRUE(palette.rows().empty());
    key(kKeyReturn);
    EXPECT_TRUE(palette.isOpen()) << "there is nothing to take";
    key(kKeyBack);
    key(kKeyBack);
    EXPECT_EQ(palette.chosen(), "Compose");
    key(kKeyBack);
    key(kKeyBack);
    key(kKeyBack);
    EXPECT_EQ(palette.rows().size(), 7u);
    type("\t\x1b");
    EXPECT_EQ(palette.typed, "") << "only what can be seen";
}

TEST_F(Palette, WhatWasUsedLastComesFirst) {
    for (const char* name : {"camera", "reader", "camera"}) {
        open();
        type(name);
        key(kKeyReturn);
    }
    open();
    EXPECT_THAT(palette.lastUsed, ElementsAre("Camera", "Reader"));
    EXPECT_THAT(lines(), ElementsAre("- Used last", "Camera", "Reader", "- Output", "Viewer",
                                     "- Image", "Reader", "Compose", "- Camera", "Camera"));
    EXPECT_EQ(palette.chosen(), "Camera");
}

TEST_F(Palette, TheMouseChoosesAndTakes) {
    open();
    const int top = palette.y + UI_NodePalette::kTop;
    Play(master, kMessageMouseMove, palette.x + 50, top + 4 * UI_NodePalette::kRowHeight + 5);
    EXPECT_EQ(palette.chosen(), "Compose");
    Play(master, kMessageLeftDown, palette.x + 50, top + 2 * UI_NodePalette::kRowHeight + 5);
    EXPECT_TRUE(palette.isOpen()) << "a heading is nothing to take";
    Play(master, kMessageLeftDown, palette.x + 50, top + 4 * UI_NodePalette::kRowHeight + 5);
    EXPECT_THAT(taken, ElementsAre("Compose"));
}

TEST_F(Palette, EscapeAndPressesElsewhereClose) {
    open();
    key(kKeyEscape);
    EXPECT_FALSE(palette.isOpen());
    open();
    Play(master, kMessageLeftDown, 10, 10);
    EXPECT_FALSE(palette.isOpen());
    open();
    Play(master, kMessageRightDown, 10, 10);
    EXPECT_FALSE(palette.isOpen());
    EXPECT_TRUE(taken.empty());
    EXPECT_EQ(master.captured, nullptr);
}

TEST_F(Palette, StaysOnTheScreenAndScrolls) {
    openLongList(1900, 1070);
    EXPECT_LE(palette.x + palette.width, 1920);
    EXPECT_LE(palette.y + palette.height, kBottom);
    const int below = palette.y + UI_NodePalette::kTop + 5;
    for (int i = 0; i < 200; ++i) Play(master, kMessageWheel, palette.x + 50, below, -120);
    Play(master, kMessageMouseMove, palette.x + 50, below);
    EXPECT_EQ(palette.chosen(), "Type88") << "12 rows: the last 12 of 101";
    for (int i = 0; i < 200; ++i) key(kKeyDown);
    EXPECT_EQ(palette.chosen(), "Type99");
    for (int i = 0; i < 200; ++i) key(kKeyUp);
    Play(master, kMessageMouseMove, palette.x + 50, below + UI_NodePalette::kRowHeight);
    EXPECT_EQ(palette.chosen(), "Type0") << "below its heading";
}

TEST_F(Palette, OpensWhereItIsAskedForWithTheRowsThatFitBelow) {
    openLongList(100, 100);
    EXPECT_EQ(palette.y, 100);
    EXPECT_EQ(palette.height, heightOf(22));
    palette.close();
    openLongList(100, 700);
    EXPECT_EQ(palette.x, 100);
    EXPECT_EQ(palette.y, 700);
    EXPECT_EQ(palette.height, heightOf(14)) << "a 15th would end at 1058";
    key(kKeyPageDown);
    EXPECT_EQ(palette.chosen(), "Type14") << "a page is what is seen";
    palette.close();
    openLongList(100, 1000);
    EXPECT_EQ(palette.height, heightOf(12)) << "fewer are too few to choose from";
    EXPECT_EQ(palette.y + palette.height, kBottom);
    palette.close();
    ASSERT_TRUE(palette.open(100, 950, kBottom, {{"Viewer", "Output"}}, ""));
    EXPECT_EQ(palette.y, 950) << "a short list fits";
}

TEST_F(Palette, StaysInItsPlaceWhileOneTypes) {
    openLongList(100, 1000);
    const int top = palette.y;
    type("99");
    EXPECT_EQ(palette.height, heightOf(1));
    EXPECT_EQ(palette.y, top);
    key(kKeyBack);
    key(kKeyBack);
    EXPECT_EQ(palette.height, heightOf(12));
    EXPECT_EQ(palette.y, top);
}

TEST_F(Palette, DoesNotOpenWhileAnotherHasTheCapture) {
    UI_NodePalette other;
    other.SetMaster(&master);
    open();
    EXPECT_FALSE(other.open(0, 0, kBottom, {}, ""));
    EXPECT_FALSE(other.isOpen());
    EXPECT_EQ(master.captured, &palette);
}

// --- types

TEST(NodeTypeCatalog, GroupsBuiltInTypesByFamilyAndScriptsByCategory) {
    TestEngine engine;
    NodeScript script;
    script.name = "Blur";
    script.category = "Filter";
    engine.scripts.push_back(script);
    engine.typeNames = {"Blur", "Node", "Node", "Gone"};
    const auto types = NodeTypeCatalog(engine).allTypes();
    ASSERT_EQ(types.size(), 3u) << "each once";
    EXPECT_EQ(types[0].category, "Filter");
    EXPECT_EQ(types[1].name, "Node");
    EXPECT_EQ(types[2].category, "Other");
}

TEST(NodeTypeCatalog, AScriptTakesAndFeedsImagesWhereItHasInputs) {
    TestEngine engine;
    NodeScript filter, generator;
    filter.name = "Blur";
    filter.inputNames = {"Image"};
    generator.name = "Noise";
    engine.scripts = {filter, generator};
    engine.typeNames = {"Blur", "Noise", "Camera"};
    const TestNode& node = engine.makeNode("n");
    NodeTypeCatalog catalog(engine);
    const auto names = [](const std::vector<OfferedType>& types) {
        std::vector<std::string> result;
        for (const OfferedType& type : types) result.push_back(type.name);
        return result;
    };
    EXPECT_THAT(names(catalog.fittingTypes({&node, nullptr, 0})), ElementsAre("Blur"));
    EXPECT_THAT(names(catalog.fittingTypes({nullptr, &node, 1})), ElementsAre("Blur", "Noise"));
    EXPECT_EQ(names(catalog.fittingTypes({})).size(), 3u);
    EXPECT_EQ(engine.values.size(), 1u);
}

// --- view and curves

TEST(CanvasView, ThePlainViewIsTheScreen) {
    const CanvasView view;
    for (const int place : {-7, 0, 123456789}) {
        EXPECT_EQ(view.screenX(place), place);
        EXPECT_EQ(view.scaled(place), place);
    }
}

TEST(CanvasView, PlacesComeBack) {
    CanvasView view;
    view.zoom = 0.7f;
    view.shift = {30, -50};
    const Vec2 place = view.toCanvas(view.toScreen({123, 456}));
    EXPECT_NEAR(place.x, 123, 1e-3);  // float
    EXPECT_NEAR(place.y, 456, 1e-3);
}

TEST(LinkCurve, LeavesDownwardAndArrivesFromAbove) {
    const LinkCurve curve({10, 20}, {200, 300}, 1);
    EXPECT_EQ(curve.at(0).x, 10);
    EXPECT_EQ(curve.at(0).y, 20);
    EXPECT_EQ(curve.at(1).x, 200);
    EXPECT_EQ(curve.at(1).y, 300);
    EXPECT_NEAR(curve.at(0.01f).x, 10, 0.2);
    EXPECT_GT(curve.at(0.01f).y, 20);
    EXPECT_FLOAT_EQ(curve.normal(0).y, 0);
    for (float t = 0; t <= 1; t += 0.125f) {
        EXPECT_GE(curve.at(t).x, curve.least.x);
        EXPECT_LE(curve.at(t).y, curve.most.y);
    }
}

TEST(LinkCurve, IsCrossedWhereItRuns) {
    const LinkCurve curve({0, 0}, {0, 100}, 1);
    EXPECT_TRUE(curve.crosses({-10, 50}, {10, 50}));
    EXPECT_TRUE(curve.crosses({10, 60}, {-10, 40}));
    EXPECT_FALSE(curve.crosses({5, 50}, {10, 50}));
    EXPECT_FALSE(curve.crosses({-10, 101}, {10, 101}));
    EXPECT_FALSE(curve.crosses({0, 50}, {0, 50})) << "a point is no cut";
}

}  // namespace
