#include "editor/ui_node.h"

#include <gmock/gmock.h>

#include <cmath>

#include "canvas_fixture.h"
#include "editor/canvas_view.h"
#include "ui_fixture.h"

namespace {

using testing::ElementsAre;

constexpr Vec4 kBackground = {0.25f, 0.5f, 0.125f, 1};

class Told : public UI_Evt_ValueChanged {
  public:
    void OnValueEdited(UI_Object* /*sender*/) override { edited.push_back(true); }
    void OnCommand(UI_Object* /*sender*/, int argument) override { commands.push_back(argument); }
    std::vector<bool> edited;
    std::vector<int> commands;
};

UI_Event At(UI_EventType type, int x, int y) {
    return {type, 0, x, y, false, false};
}

// --- colours

TEST(UiNodeColor, ComesFromTheBytesOfTheIdInTurn) {
    // 'a' + 'd', 'b' + 'e', 'c': 197, 199, 99 of 255.
    const double r = 197.0 / 255, g = 199.0 / 255, b = 99.0 / 255;
    const double scale = 0.75 / std::sqrt(r * r + g * g + b * b);
    const Vec4 color = UI_Node::ColorOfId("abcde");
    EXPECT_FLOAT_EQ(color.r, static_cast<float>(r * scale));
    EXPECT_FLOAT_EQ(color.g, static_cast<float>(g * scale));
    EXPECT_FLOAT_EQ(color.b, static_cast<float>(b * scale));
    EXPECT_EQ(color.a, 1);
}

TEST(UiNodeColor, SumsAreTakenModulo255) {
    // The first sum is 'z' * 3 = 366, which leaves 111; 'a' and 'a' stand alone.
    const double r = 111.0 / 255, g = 97.0 / 255, b = 97.0 / 255;
    const double scale = 0.75 / std::sqrt(r * r + g * g + b * b);
    const Vec4 color = UI_Node::ColorOfId(std::string("zaaz\0\0z", 7));
    EXPECT_FLOAT_EQ(color.r, static_cast<float>(r * scale));
    EXPECT_FLOAT_EQ(color.g, static_cast<float>(g * scale));
}

TEST(UiNodeColor, IsTheSameForTheSameId) {
    const Vec4 a = UI_Node::ColorOfId("Glow1"), b = UI_Node::ColorOfId("Glow1");
    EXPECT_EQ(Difference(a, b), 0);
    EXPECT_GT(Difference(a, UI_Node::ColorOfId("Glow2")), 0);
}

TEST(UiNodeColor, IsAColourForAnEmptyIdToo) {
    const Vec4 color = UI_Node::ColorOfId("");
    EXPECT_NEAR(color.r, 0.75 / std::sqrt(3.0), 1e-6);  // float
    EXPECT_EQ(color.r, color.b);
}

// --- events

class UiNodeEvents : public ::testing::Test {
  protected:
    UiNodeEvents() { box.listener = &told; }
    TestEngine engine;
    FakeCanvasHost host{engine};
    UI_Master master;
    Told told;
    UI_Node box{&master, &host, "a", 100, 50, 2};
};

TEST_F(UiNodeEvents, HasTheSizeOfABox) {
    EXPECT_EQ(box.width, 160);
    EXPECT_EQ(box.height, 20);
    EXPECT_EQ(box.GetHeight(), 20);
    EXPECT_EQ(box.hoverInput, -1);
    EXPECT_TRUE(box.open);
    EXPECT_TRUE(box.enabled);
    EXPECT_THAT(box.inputLinks, ElementsAre(nullptr, nullptr));
    EXPECT_EQ(box.inputNames.size(), 2u);
}

TEST_F(UiNodeEvents, APressTakesTheCaptureAndADragKeepsTheOffset) {
    UI_Event event = At(UI_EventType::LeftDown, 110, 55);
    EXPECT_TRUE(box.HandleEvent(&event));
    EXPECT_EQ(master.captured, &box);
    EXPECT_TRUE(master.capturedOnTop);
    EXPECT_TRUE(box.dragging);
    EXPECT_EQ(box.dragOffsetX, 10);
    EXPECT_EQ(box.dragOffsetY, 5);
    event = At(UI_EventType::MouseMove, 200, 300);
    EXPECT_FALSE(box.HandleEvent(&event));
    EXPECT_EQ(box.x, 190);
    EXPECT_EQ(box.y, 295);
    EXPECT_EQ(box.lastMouseX, 200);
    event = At(UI_EventType::LeftUp, 200, 300);
    EXPECT_TRUE(box.HandleEvent(&event));
    EXPECT_FALSE(box.dragging);
    EXPECT_EQ(master.captured, nullptr);
    EXPECT_FALSE(master.capturedOnTop);
    EXPECT_TRUE(told.edited.empty()) << "only a release outside a drag is told so";
    EXPECT_THAT(told.commands, ElementsAre(UI_Node::kDragged, UI_Node::kLetGo));
}

TEST_F(UiNodeEvents, TheEdgesOfTheBoxAreInside) {
    UI_Event event = At(UI_EventType::LeftDown, 260, 70);
    EXPECT_TRUE(box.HandleEvent(&event));
    box.endDrag();
    event = At(UI_EventType::LeftDown, 261, 70);
    EXPECT_FALSE(box.HandleEvent(&event));
    EXPECT_EQ(master.captured, nullptr);
}

TEST_F(UiNodeEvents, APressWhileAnotherHasTheCaptureStartsNothing) {
    UI_Node other(&master, &host, "b", 0, 0, 0);
    master.captured = &other;
    UI_Event event = At(UI_EventType::LeftDown, 110, 55);
    EXPECT_FALSE(box.HandleEvent(&event));
    EXPECT_FALSE(box.dragging);
    EXPECT_EQ(master.captured, &other);
}

TEST_F(UiNodeEvents, AReleaseOutsideADragIsTold) {
    box.hoverInput = 1;
    UI_Event event = At(UI_EventType::LeftUp, 110, 55);
    EXPECT_FALSE(box.HandleEvent(&event));
    EXPECT_EQ(box.hoverInput, -1);
    EXPECT_EQ(told.edited.size(), 1u);
}

TEST_F(UiNodeEvents, ARightPressOpensTheValuesEvenInADrag) {
    UI_Event event = At(UI_EventType::RightDown, 110, 55);
    EXPECT_TRUE(box.HandleEvent(&event));
    event = At(UI_EventType::LeftDown, 110, 55);
    box.HandleEvent(&event);
    event = At(UI_EventType::RightDown, 110, 55);
    EXPECT_TRUE(box.HandleEvent(&event));
    EXPECT_THAT(host.opened, ElementsAre("a", "a"));
    EXPECT_TRUE(box.dragging);
}

TEST_F(UiNodeEvents, ADragIgnoresAllOtherEvents) {
    UI_Event event = At(UI_EventType::LeftDown, 110, 55);
    box.HandleEvent(&event);
    for (const UI_EventType type : {UI_EventType::Wheel, UI_EventType::KeyDown,
                                    UI_EventType::MiddleDown, UI_EventType::LeftDown}) {
        event = At(type, 500, 500);
        EXPECT_FALSE(box.HandleEvent(&event));
        EXPECT_EQ(box.x, 100);
        EXPECT_TRUE(box.dragging);
    }
}

TEST_F(UiNodeEvents, ADisabledBoxTakesNothing) {
    box.setEnabled(false);
    for (const UI_EventType type :
         {UI_EventType::LeftDown, UI_EventType::RightDown, UI_EventType::LeftUp}) {
        UI_Event event = At(type, 110, 55);
        EXPECT_FALSE(box.HandleEvent(&event));
    }
    EXPECT_TRUE(host.opened.empty());
    EXPECT_TRUE(told.edited.empty());
    EXPECT_EQ(master.captured, nullptr);
    EXPECT_EQ(box.lastMouseX, 0);
}

TEST_F(UiNodeEvents, ADragFollowsThePointerThroughTheView) {
    CanvasView view;
    view.zoom = 0.5f;
    view.shift = {10, 20};
    box.view = &view;  // on the screen at 60, 45
    UI_Event event = At(UI_EventType::LeftDown, 65, 50);
    EXPECT_TRUE(box.HandleEvent(&event));
    event = At(UI_EventType::MouseMove, 165, 50);
    box.HandleEvent(&event);
    EXPECT_EQ(box.x, 300);
    EXPECT_EQ(box.y, 50);
}

TEST_F(UiNodeEvents, SocketsLieInALineOverTheMiddle) {
    const UI_Node wide(&master, &host, "w", 100, 50, 20);
    ASSERT_EQ(wide.sockets.size(), 20u);
    EXPECT_EQ(wide.sockets[1].x - wide.sockets[0].x, 12);
    EXPECT_EQ((wide.sockets.front().x + wide.sockets.back().x) / 2, 180);
    EXPECT_LT(wide.sockets.front().x, wide.x);
    const UI_Node one(&master, &host, "o", 100, 50, 1);
    EXPECT_EQ(one.sockets[0].x, 180);
    EXPECT_EQ(one.sockets[0].y, 50);
    const UI_Node bad(&master, &host, "b", 100, 50, -3);
    EXPECT_TRUE(bad.sockets.empty());
}

// --- drawing

class UiNodePictures : public UiTest {
  protected:
    void SetUp() override {
        UiTest::SetUp();
        useSize(260, 60);
    }
    Picture drawBox(UI_Node& box) {
        begin(kBackground);
        box.Draw();
        return end();
    }
    // The box and its title as they should be.
    Picture expected(const UI_Node& box, int stripX, int stripWidth) {
        const Vec4 color = UI_Node::ColorOfId(box.id);
        begin(kBackground);
        master.SetColor({color.r, color.g, color.b, 0.1f});
        if (stripWidth > 0) master.FillRect(stripX, box.y, stripWidth, 20);
        master.SetColor(color);
        master.FillRect(box.x, box.y, 160, 20);
        const std::string& title = master.DisplayNameOf(box.id);
        master.DrawText(box.x + 7, box.y + 16, 12, {0, 0, 0, 0.5f}, title);
        master.DrawText(box.x + 8, box.y + 17, 12, {0, 0, 0, 0.25f}, title);
        master.DrawText(box.x + 5, box.y + 15, 12, {0.95f, 0.95f, 0.95f, 1}, title);
        return end();
    }
};

TEST_F(UiNodePictures, ABoxIsAPlateWithAShadowedTitle) {
    UI_Node box(&master, nullptr, "Glow1", 50, 20, 0);
    master.displayNames["Glow1"] = "Soft light";
    ExpectSamePicture(drawBox(box), expected(box, 0, 0));
    const Picture picture = drawBox(box);
    EXPECT_LT(Difference(picture.at(209, 39), UI_Node::ColorOfId("Glow1")), kBlendTolerance);
    EXPECT_LT(Difference(picture.at(210, 39), kBackground), kBlendTolerance);
    EXPECT_LT(Difference(picture.at(209, 40), kBackground), kBlendTolerance);
}

TEST_F(UiNodePictures, AStripShowsHowFarTheSocketsReach) {
    UI_Node box(&master, nullptr, "a", 50, 20, 17);
    // 16 steps of 12 pixels, over the middle of the box.
    EXPECT_EQ(box.sockets.front().x, 34);
    const Picture picture = drawBox(box);
    ExpectSamePicture(picture, expected(box, 34, 192));
    EXPECT_GT(Difference(picture.at(34, 30), kBackground), 0.005) << "alpha 0.1 of its colour";
    EXPECT_LT(Difference(picture.at(33, 30), kBackground), kBlendTolerance);
    EXPECT_GT(Difference(picture.at(225, 30), kBackground), 0.005);
    EXPECT_LT(Difference(picture.at(226, 30), kBackground), kBlendTolerance);
}

TEST_F(UiNodePictures, FewSocketsMakeAStripOfTheBoxsWidth) {
    UI_Node box(&master, nullptr, "a", 50, 20, 2);
    ExpectSamePicture(drawBox(box), expected(box, 50, 160));
}

TEST_F(UiNodePictures, AnErrorIsARedDiscWithACross) {
    UI_Node box(&master, nullptr, "a", 50, 20, 0);
    const Picture before = drawBox(box);
    box.error = true;
    const Picture picture = drawBox(box);
    EXPECT_LT(Difference(picture.at(50, 26), {1, 0, 0, 1}), kBlendTolerance);
    EXPECT_LT(Difference(picture.at(44, 20), {1, 0, 0, 1}), kBlendTolerance);
    EXPECT_LT(Difference(picture.at(50, 30), before.at(50, 30)), kBlendTolerance) << "radius 8";
    double whitest = 0;
    for (int y = 10; y < 26; ++y) {
        for (int x = 44; x < 54; ++x) {
            whitest = std::max(whitest, static_cast<double>(picture.at(x, y).b));
        }
    }
    EXPECT_GT(whitest, 0.8) << "the cross";
}

TEST_F(UiNodePictures, AFoldedBoxHasALineOnItsUpperEdge) {
    UI_Node box(&master, nullptr, "a", 50, 20, 0);
    box.open = false;
    const Picture picture = drawBox(box);
    const Vec4 bright = {1, 0.7f, 0, 1};
    for (const int y : {18, 19, 20, 21}) {
        EXPECT_LT(Difference(picture.at(49, y), bright), kBlendTolerance) << y;
        EXPECT_LT(Difference(picture.at(209, y), bright), kBlendTolerance) << y;
    }
    EXPECT_LT(Difference(picture.at(120, 17), kBackground), kBlendTolerance);
    EXPECT_GT(Difference(picture.at(200, 22), bright), 0.1);
    EXPECT_LT(Difference(picture.at(48, 20), kBackground), kBlendTolerance);
}

TEST_F(UiNodePictures, AKeyedBoxIsOutlined) {
    UI_Node box(&master, nullptr, "a", 50, 20, 0);
    Picture picture = expected(box, 0, 0);
    picture.outline(50, 20, 160, 20, {1, 0.7f, 0, 1});
    box.keyed = true;
    ExpectSamePicture(drawBox(box), picture);
}

TEST_F(UiNodePictures, ADisabledBoxStillDraws) {
    UI_Node box(&master, nullptr, "a", 50, 20, 3);
    box.setEnabled(false);
    ExpectSamePicture(drawBox(box), expected(box, 50, 160));
}

TEST_F(UiNodePictures, ZoomScalesBoxAndText) {
    UI_Node box(&master, nullptr, "Glow1", 100, 40, 0);
    CanvasView view;
    view.zoom = 0.5f;
    box.view = &view;
    const Picture picture = drawBox(box);
    const Vec4 color = UI_Node::ColorOfId("Glow1");
    EXPECT_LT(Difference(picture.at(129, 29), color), kBlendTolerance);
    EXPECT_LT(Difference(picture.at(130, 29), kBackground), kBlendTolerance);
    EXPECT_LT(Difference(picture.at(129, 30), kBackground), kBlendTolerance);
    double bright = 0;
    for (int y = 20; y < 30; ++y) {
        for (int x = 50; x < 90; ++x) {
            bright = std::max(bright, static_cast<double>(picture.at(x, y).b));
        }
    }
    EXPECT_GT(bright, static_cast<double>(color.b) + 0.1) << "text of half the size is there";
}

TEST_F(UiNodePictures, TextThatNobodyCouldReadIsNotDrawn) {
    UI_Node box(&master, nullptr, "Glow1", 100, 40, 0);
    CanvasView view;
    view.zoom = 0.3f;
    box.view = &view;
    const Picture picture = drawBox(box);
    const Vec4 color = UI_Node::ColorOfId("Glow1");
    for (int x = 30; x < 78; ++x) {
        EXPECT_LT(Difference(picture.at(x, 15), color), kBlendTolerance) << x;
    }
}

}  // namespace
