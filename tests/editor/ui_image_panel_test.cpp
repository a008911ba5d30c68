#include "editor/ui_image_panel.h"

#include <gmock/gmock.h>

#include <limits>

#include "core/value_object.h"
#include "editor/ui_panel.h"
#include "editor/ui_picture_view.h"
#include "editor/ui_screen_gate.h"
#include "gpu/gl_mem_texture.h"
#include "keyframe_recorder.h"
#include "ui_fixture.h"

namespace {

using testing::ElementsAre;

constexpr Vec4 kBackground = {0.25f, 0.5f, 0.125f, 1};
constexpr Vec4 kWhite = {1, 1, 1, 1};

class UiImagePanelTest : public testing::Test {
  protected:
    UiImagePanelTest() {
        master.AddTopLevel(&panel);
        value.data = position;
        value.handler = &handler;
    }
    void send(UI_EventType type, int x, int y, int eventValue = 0) {
        UI_Event event = {type, eventValue, x, y, false, false};
        EXPECT_FALSE(panel.HandleEvent(&event)) << "the event always goes on";
    }
    void expectOnScreen(float px, float py, float screenX, float screenY) {
        const Vec3 place = Mat4TransformPoint(panel.view, {px, py, 0});
        EXPECT_NEAR(place.x, screenX, 1e-3) << "float products of some hundreds";
        EXPECT_NEAR(place.y, screenY, 1e-3);
    }

    KeyframeRecorder handler;
    UI_Master master;
    UI_ImagePanel panel{"view", 100, 50, 200, 100, false};
    float position[2] = {0.5f, 0.5f};
    ValueVec2 value{"Position", "n7"};
};

class UiImagePanelDrawTest : public UiTest {
  protected:
    UiImagePanelDrawTest() { master.AddTopLevel(&panel); }
    Picture drawn() {
        begin(kBackground);
        panel.Draw();
        return end();
    }
    UI_ImagePanel panel{"view", 10, 8, 40, 30, false};
};

}  // namespace

TEST_F(UiImagePanelTest, ZoomsAboutTheLastMousePosition) {
    send(UI_EventType::MouseMove, 150, 80);
    send(UI_EventType::Wheel, 150, 80, 120);
    EXPECT_FLOAT_EQ(panel.view[0], 1.1f);
    EXPECT_FLOAT_EQ(panel.view[5], 1.1f);
    expectOnScreen(150, 80, 150, 80);
    expectOnScreen(160, 80, 161, 80);
    send(UI_EventType::MouseMove, 200, 70);
    send(UI_EventType::Wheel, 200, 70, -240);
    EXPECT_FLOAT_EQ(panel.view[0], 1.1f * 0.9f) << "one step whatever the delta";
    // The pixel under the mouse stays: 200 on the screen was 150 + 50 / 1.1 in the picture.
    expectOnScreen(150 + 50 / 1.1f, 80 - 10 / 1.1f, 200, 70);
    send(UI_EventType::Wheel, 200, 70, 0);
    EXPECT_FLOAT_EQ(panel.view[0], 1.1f * 0.9f);
}

TEST_F(UiImagePanelTest, ZoomsWithThePointerAnywhere) {
    send(UI_EventType::Wheel, 1000, 900, 120);
    EXPECT_FLOAT_EQ(panel.view[0], 1.1f);
}

TEST_F(UiImagePanelTest, ResetsTheViewButNoPinOnARightPress) {
    panel.AddPin(value, "pin", nullptr);
    send(UI_EventType::Wheel, 150, 80, 120);
    send(UI_EventType::RightDown, 150, 80);
    for (int i = 0; i < 16; ++i) EXPECT_EQ(panel.view[i], Mat4()[i]);
    EXPECT_EQ(position[0], 0.5f);
    EXPECT_TRUE(handler.calls.empty());
}

TEST_F(UiImagePanelTest, PansWithTheMiddleButtonAlsoOutside) {
    send(UI_EventType::MiddleDown, 150, 80);
    EXPECT_EQ(master.captured, &panel);
    EXPECT_TRUE(master.capturedOnTop);
    send(UI_EventType::MouseMove, 160, 75);
    send(UI_EventType::MouseMove, 500, 75);
    expectOnScreen(0, 0, 350, -5);
    send(UI_EventType::MiddleUp, 500, 75);
    EXPECT_EQ(master.captured, nullptr);
    send(UI_EventType::MouseMove, 0, 0);
    expectOnScreen(0, 0, 350, -5);
}

TEST_F(UiImagePanelTest, PansInTheUnitsOfTheZoomedPicture) {
    send(UI_EventType::MouseMove, 0, 0);
    for (int i = 0; i < 2; ++i) send(UI_EventType::Wheel, 0, 0, 120);
    send(UI_EventType::MiddleDown, 150, 80);
    send(UI_EventType::MouseMove, 160, 80);
    expectOnScreen(0, 0, 10 * 1.21f, 0);
}

TEST_F(UiImagePanelTest, PansOnlyFromInsideAndWithFreeCapture) {
    send(UI_EventType::MiddleDown, 99, 80);
    EXPECT_FALSE(panel.panning);
    UI_Panel other(0, 0, 10, 10, false);
    master.captured = &other;
    send(UI_EventType::MiddleDown, 150, 80);
    EXPECT_FALSE(panel.panning);
    EXPECT_EQ(master.captured, &other);
    master.captured = nullptr;
}

TEST_F(UiImagePanelTest, TheWheelZoomsDuringAPan) {
    send(UI_EventType::MiddleDown, 150, 80);
    send(UI_EventType::Wheel, 150, 80, 120);
    expectOnScreen(150, 80, 150, 80);
    EXPECT_FLOAT_EQ(panel.view[0], 1.1f);
    send(UI_EventType::MouseMove, 160, 80);
    expectOnScreen(150, 80, 150 + 10 * 1.1f, 80);
    EXPECT_TRUE(panel.panning);
}

TEST_F(UiImagePanelTest, ARightPressDoesNotResetWhilePanning) {
    send(UI_EventType::MiddleDown, 150, 80);
    send(UI_EventType::MouseMove, 160, 80);
    send(UI_EventType::RightDown, 160, 80);
    expectOnScreen(0, 0, 10, 0);
}

TEST_F(UiImagePanelTest, DragsAPinAndWritesKeys) {
    panel.AddPin(value, "pin", nullptr);
    send(UI_EventType::LeftDown, 202, 102);  // the pin is at 200, 100
    EXPECT_EQ(master.captured, &panel);
    EXPECT_FALSE(master.capturedOnTop);
    send(UI_EventType::MouseMove, 222, 92);
    EXPECT_FLOAT_EQ(position[0], 0.6f);
    EXPECT_FLOAT_EQ(position[1], 0.4f);
    EXPECT_THAT(handler.calls, ElementsAre("key n7/Position"));
    send(UI_EventType::LeftUp, 222, 92);
    EXPECT_EQ(master.captured, nullptr);
    send(UI_EventType::MouseMove, 100, 92);
    EXPECT_FLOAT_EQ(position[0], 0.6f);
    EXPECT_EQ(handler.calls.size(), 1u);
}

TEST_F(UiImagePanelTest, DragsAPinInTheZoomedView) {
    panel.AddPin(value, "pin", nullptr);
    send(UI_EventType::MouseMove, 200, 100);
    for (int i = 0; i < 5; ++i) send(UI_EventType::Wheel, 200, 100, 120);
    const float zoom = std::pow(1.1f, 5.0f);
    send(UI_EventType::LeftDown, 200, 100);
    send(UI_EventType::MouseMove, 220, 90);
    EXPECT_NEAR(position[0], 0.5f + 20 / zoom / 200, 1e-5) << "float products there and back";
    EXPECT_NEAR(position[1], 0.5f - 10 / zoom / 100, 1e-5);
}

TEST_F(UiImagePanelTest, HitsAPinFromTwoBeforeToSevenAfterItsPlace) {
    panel.AddPin(value, "pin", nullptr);
    for (const auto& [offset, hit] : {std::pair{-3, false}, {-2, true}, {7, true}, {8, false}}) {
        send(UI_EventType::LeftDown, 200 + offset, 100);
        EXPECT_EQ(panel.draggingPin, hit) << offset;
        send(UI_EventType::LeftUp, 200, 100);
        send(UI_EventType::LeftDown, 200, 100 + offset);
        EXPECT_EQ(panel.draggingPin, hit) << offset;
        send(UI_EventType::LeftUp, 200, 100);
    }
}

TEST_F(UiImagePanelTest, TakesTheFirstOfTwoPins) {
    float other[2] = {0.5f, 0.5f};
    ValueVec2 second("Other", "n8");
    second.data = other;
    panel.AddPin(value, "pin", nullptr);
    panel.AddPin(second, "other", nullptr);
    send(UI_EventType::LeftDown, 200, 100);
    send(UI_EventType::MouseMove, 210, 100);
    EXPECT_NE(position[0], 0.5f);
    EXPECT_EQ(other[0], 0.5f);
}

TEST_F(UiImagePanelTest, LeavesAPinAloneWhileCaptureIsTaken) {
    UI_Panel other(0, 0, 10, 10, false);
    panel.AddPin(value, "pin", nullptr);
    master.captured = &other;
    send(UI_EventType::LeftDown, 200, 100);
    EXPECT_FALSE(panel.draggingPin);
    EXPECT_EQ(panel.lastMouseX, 0) << "the press ends at the pin";
    master.captured = nullptr;
}

TEST_F(UiImagePanelTest, KeepsTheLargerMoveWithShift) {
    panel.AddPin(value, "pin", nullptr);
    master.readShiftKey = [] { return true; };
    send(UI_EventType::LeftDown, 200, 100);
    send(UI_EventType::MouseMove, 210, 91);
    EXPECT_FLOAT_EQ(position[0], 0.55f);
    EXPECT_FLOAT_EQ(position[1], 0.5f);
    send(UI_EventType::MouseMove, 215, 96);
    EXPECT_FLOAT_EQ(position[0], 0.55f) << "at a tie the upright move counts";
    EXPECT_FLOAT_EQ(position[1], 0.55f);
}

TEST_F(UiImagePanelTest, DragsAPinThatLiesOutside) {
    position[0] = 1.5f;
    panel.AddPin(value, "pin", nullptr);
    send(UI_EventType::LeftDown, 400, 100);
    send(UI_EventType::MouseMove, 500, 100);
    EXPECT_FLOAT_EQ(position[0], 2.0f);
}

TEST_F(UiImagePanelTest, DragsAPinWithoutAHandler) {
    value.handler = nullptr;
    panel.AddPin(value, "pin", nullptr);
    send(UI_EventType::LeftDown, 200, 100);
    send(UI_EventType::MouseMove, 210, 100);
    EXPECT_FLOAT_EQ(position[0], 0.55f);
}

TEST_F(UiImagePanelTest, RemovesThePinsOfOneOwnerEvenDuringADrag) {
    UI_Panel owner(0, 0, 1, 1, false), other(0, 0, 1, 1, false);
    panel.AddPin(value, "mine", &owner);
    panel.AddPin(value, "its", &other);
    send(UI_EventType::LeftDown, 200, 100);
    panel.RemovePinsOf(&owner);
    EXPECT_EQ(panel.pins.size(), 1u);
    EXPECT_EQ(panel.pins[0]->label, "its");
    EXPECT_FALSE(panel.draggingPin);
    EXPECT_EQ(master.captured, nullptr);
    send(UI_EventType::MouseMove, 220, 100);
    EXPECT_EQ(position[0], 0.5f);
    panel.ClearPins();
    EXPECT_TRUE(panel.pins.empty());
}

TEST_F(UiImagePanelTest, BareIgnoresEveryEvent) {
    panel.bare = true;
    panel.AddPin(value, "pin", nullptr);
    for (int type = 1; type <= 12; ++type) send(static_cast<UI_EventType>(type), 200, 100, 120);
    for (int i = 0; i < 16; ++i) EXPECT_EQ(panel.view[i], Mat4()[i]);
    EXPECT_EQ(panel.lastMouseX, 0);
    EXPECT_EQ(master.captured, nullptr);
}

TEST_F(UiImagePanelTest, SurvivesEndlessZooming) {
    panel.AddPin(value, "pin", nullptr);
    for (const int delta : {120, -120}) {
        send(UI_EventType::MouseMove, 150, 80);
        for (int i = 0; i < 3000; ++i) send(UI_EventType::Wheel, 150, 80, delta);
        send(UI_EventType::LeftDown, 150, 80);
        send(UI_EventType::MouseMove, 160, 80);
        send(UI_EventType::LeftUp, 160, 80);
        send(UI_EventType::RightDown, 160, 80);
        EXPECT_EQ(panel.view[0], 1);
    }
}

TEST_F(UiImagePanelDrawTest, ShowsThePictureOverItsBackdropInsideAWhiteOutline) {
    const DebugCapture silent;
    const std::uint8_t premultiplied[] = {100, 50, 0, 128};
    const GL_MemTexture texture(1, 1, GL_RGBA, GL_REPEAT, GL_REPEAT, premultiplied);
    panel.SetImage(&texture);
    const Vec4 colors[] = {{0, 0, 0, 1}, {1, 1, 1, 1}, {1, 0, 0, 1}, {0, 1, 0, 1}, {0, 0, 1, 1}};
    for (int index = 0; index < 5; ++index) {
        panel.SetBackdrop(&index);
        Picture expected = blank(kBackground);
        const Vec4& c = colors[index];
        const float left = 1 - 128 / 255.0f;
        expected.fill(10, 8, 40, 30,
                      {c.r * left + 100 / 255.0f, c.g * left + 50 / 255.0f, c.b * left, 1});
        expected.outline(10, 8, 40, 30, kWhite);
        ExpectSamePicture(drawn(), expected);
    }
    GLint blending = 0;
    glGetIntegerv(GL_BLEND_SRC_RGB, &blending);
    EXPECT_EQ(blending, GL_SRC_ALPHA);
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &blending);
    EXPECT_EQ(blending, 0);
}

TEST_F(UiImagePanelDrawTest, KeepsTheColorForABackdropWithoutOne) {
    const int index = 5;
    panel.SetBackdrop(&index);
    begin(kBackground);
    master.SetColor({0.5f, 0, 0.5f, 1});
    panel.Draw();
    Picture expected = blank(kBackground);
    expected.fill(10, 8, 40, 30, {0.5f, 0, 0.5f, 1});
    expected.outline(10, 8, 40, 30, kWhite);
    ExpectSamePicture(end(), expected);
}

TEST_F(UiImagePanelDrawTest, BareIsOnlyThePicture) {
    const int index = 2;
    float position[2] = {0.5f, 0.5f};
    ValueVec2 value("Position", "n7");
    value.data = position;
    panel.bare = true;
    panel.keyed = true;
    panel.SetBackdrop(&index);
    panel.AddPin(value, "pin", nullptr);
    ExpectSamePicture(drawn(), blank(kBackground), 0);
}

TEST_F(UiImagePanelDrawTest, ZoomsAndPansThePictureByWholePixels) {
    const DebugCapture silent;
    const std::uint8_t green[] = {0, 255, 0, 255};
    const GL_MemTexture texture(1, 1, GL_RGBA, GL_REPEAT, GL_REPEAT, green);
    panel.SetImage(&texture);
    Mat4Scale(panel.view, {1.1f, 1.1f, 1});
    panel.view[12] = 3.75f;
    panel.view[13] = -2.5f;
    // 14.75, 6.3 and 44 by 33 before truncation.
    Picture expected = blank(kBackground);
    expected.fill(14, 6, 44, 33, {0, 1, 0, 1});
    expected.outline(14, 6, 44, 33, kWhite);
    ExpectSamePicture(drawn(), expected);
}

TEST_F(UiImagePanelDrawTest, MarksPinsAndAKeyedPanel) {
    float position[2] = {0.5f, 0.25f};
    ValueVec2 value("Position", "n7");
    value.data = position;
    panel.AddPin(value, "p", nullptr);
    panel.keyed = true;
    const Vec4 shadow = {0, 0, 0, 0.8f}, color = master.colorSlots[9];
    // The text alone, as coverage.
    begin();
    glBlendFunc(GL_ONE, GL_ZERO);
    master.DrawText(38, 23, 8, kWhite, "p");
    const Picture low = end();
    begin();
    glBlendFunc(GL_ONE, GL_ZERO);
    master.DrawText(37, 22, 8, kWhite, "p");
    const Picture high = end();
    Picture expected = blank(kBackground);
    expected.outline(10, 8, 40, 30, kWhite);
    expected.fill(31, 16, 5, 5, shadow);
    expected.fill(30, 15, 5, 5, color);
    for (int y = 0; y < expected.height; ++y) {
        for (int x = 0; x < expected.width; ++x) {
            expected.blend(x, y, {0, 0, 0, 0.8f * low.at(x, y).a});
        }
    }
    for (int y = 0; y < expected.height; ++y) {
        for (int x = 0; x < expected.width; ++x) {
            expected.blend(x, y, {color.r, color.g, color.b, high.at(x, y).a});
        }
    }
    expected.outline(10, 8, 40, 30, color);
    ExpectSamePicture(drawn(), expected);
}

TEST_F(UiImagePanelDrawTest, MarksPinsOfAZoomedAndPannedPictureAtTheirPlaces) {
    float position[2] = {0.5f, 0.25f};
    ValueVec2 value("Position", "n7");
    value.data = position;
    panel.AddPin(value, "", nullptr);
    panel.keyed = true;
    Mat4Scale(panel.view, {1.25f, 1.25f, 1});
    panel.view[12] = 3.5f;
    panel.view[13] = -2.25f;
    // The corner at 16, 7.75 and 50 by 37.5 before truncation; the pin at 41, 17.125. The outline
    // of a keyed panel begins at that corner and has the panel's own size.
    Picture expected = blank(kBackground);
    expected.outline(16, 7, 50, 37, kWhite);
    expected.fill(42, 18, 5, 5, {0, 0, 0, 0.8f});
    expected.fill(41, 17, 5, 5, master.colorSlots[9]);
    expected.outline(16, 7, 40, 30, master.colorSlots[9]);
    ExpectSamePicture(drawn(), expected);
}

TEST_F(UiImagePanelDrawTest, LeavesNoTextureOnAnyUnitOfItsPicture) {
    const DebugCapture silent;
    const GL_FrameBuffer targets(4, 4, 3, 16, GL_RGBA, TargetDepth::None, TargetWrap::Border);
    ASSERT_EQ(targets.textureCount, 3);
    panel.SetImage(&targets);
    drawn();
    for (const GLenum unit : {GL_TEXTURE2, GL_TEXTURE1, GL_TEXTURE0}) {
        GLint bound = -1;
        glActiveTexture(unit);
        glGetIntegerv(GL_TEXTURE_BINDING_2D, &bound);
        EXPECT_EQ(bound, 0) << unit - GL_TEXTURE0;
    }
}

TEST_F(UiImagePanelDrawTest, APanDoesNotLiftThePictureOverWhatLiesOnItsView) {
    UI_PictureView view(panel);
    UI_OverlayPainter cover;
    cover.paint = [this] {
        master.SetColor({0, 0, 0, 1});
        master.FillRect(20, 10, 30, 30);
    };
    master.topLevel.clear();
    master.AddTopLevel(&view);
    master.AddTopLevel(&cover);
    view.Place(0, 0, 96, 64);
    const auto draw = [this] {
        begin(kBackground);
        master.DrawAll();
        return end();
    };
    const int index = 2;
    panel.SetBackdrop(&index);
    const Picture before = draw();
    UI_Event press = {UI_EventType::MiddleDown, 0, 60, 30, false, false};
    panel.HandleEvent(&press);
    ASSERT_EQ(master.captured, &panel);
    ExpectSamePicture(draw(), before, 0);
    EXPECT_GT(before.at(60, 30).r, 0.9f) << "the picture's backdrop";
    EXPECT_LT(before.at(35, 25).r, 0.1f) << "what lies over it";
    master.captured = nullptr;
}
