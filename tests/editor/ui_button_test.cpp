#include "editor/ui_button.h"

#include "editor/ui_label.h"
#include "widget_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class UiButtonTest : public WidgetTest {
  protected:
    UiButtonTest() {
        button.listener = &listener;
        button.argument = 3;
        master.AddTopLevel(&button);
    }
    UI_Button button{"Save", 10, 20, 80, 24};
};

class UiButtonDrawTest : public WidgetDrawTest {
  protected:
    UiButtonDrawTest() {
        master.AddTopLevel(&button);
        point(0, 0);
    }
    void point(int x, int y) {
        master.mouseX = x;
        master.mouseY = y;
    }
    void look(const Vec4& plate, const Vec4& border, int shift) {
        fill(plate, 10, 20, 80, 24);
        outline(border, 10, 20, 80, 24);
        text(10 + (80 - master.MeasureText(12, "Save")) / 2 + shift, 36 + shift, "Save");
    }
    Picture allDrawn() {
        begin(kBackground);
        master.DrawAll();
        return end();
    }
    UI_Button button{"Save", 10, 20, 80, 24};
};

}  // namespace

TEST_F(UiButtonTest, RaisesItsCommandAtAReleaseInside) {
    EXPECT_TRUE(send(button, UI_EventType::LeftDown, 50, 30));
    EXPECT_TRUE(button.pressed);
    EXPECT_EQ(master.captured, &button);
    EXPECT_THAT(listener.commands, IsEmpty());
    EXPECT_TRUE(send(button, UI_EventType::LeftUp, 60, 35));
    EXPECT_THAT(listener.commands, ElementsAre(Pair(&button, 3)));
    EXPECT_EQ(master.captured, nullptr);
    EXPECT_FALSE(button.pressed);
}

TEST_F(UiButtonTest, RaisesNothingWhenThePointerHasLeft) {
    send(button, UI_EventType::LeftDown, 50, 30);
    send(button, UI_EventType::MouseMove, 500, 30);
    send(button, UI_EventType::LeftUp, 500, 30);
    EXPECT_THAT(listener.commands, IsEmpty());
    EXPECT_EQ(master.captured, nullptr);
    EXPECT_FALSE(send(button, UI_EventType::LeftUp, 50, 30)) << "a release alone is no press";
    EXPECT_THAT(listener.commands, IsEmpty());
}

TEST_F(UiButtonTest, CountsEveryOneOfQuickPresses) {
    for (const UI_EventType press :
         {UI_EventType::LeftDown, UI_EventType::LeftDoubleClick, UI_EventType::LeftDown}) {
        send(button, press, 50, 30);
        send(button, UI_EventType::LeftUp, 50, 30);
    }
    EXPECT_EQ(listener.commands.size(), 3u);
}

TEST_F(UiButtonTest, HiddenTakesNoEventsAndGivesUpAPress) {
    send(button, UI_EventType::LeftDown, 50, 30);
    button.hidden = true;
    EXPECT_FALSE(send(button, UI_EventType::LeftUp, 50, 30));
    EXPECT_EQ(master.captured, nullptr);
    EXPECT_FALSE(send(button, UI_EventType::LeftDown, 50, 30));
    button.hidden = false;
    send(button, UI_EventType::LeftUp, 50, 30);
    EXPECT_THAT(listener.commands, IsEmpty());
}

TEST_F(UiButtonTest, LeavesOtherEventsAndTheCaptureOfAnotherAlone) {
    EXPECT_FALSE(send(button, UI_EventType::RightUp, 50, 30));
    EXPECT_FALSE(press(button, 'S'));
    UI_Button other("Other", 0, 0, 5, 5);
    master.captured = &other;
    UI_Event event = {UI_EventType::LeftDown, 0, 50, 30, false, false};
    EXPECT_FALSE(button.HandleEvent(&event));
    EXPECT_FALSE(button.pressed);
    master.captured = nullptr;
}

TEST_F(UiButtonTest, MayGoInItsOwnCommand) {
    class Deleter : public UI_Evt_ValueChanged {
      public:
        void OnValueEdited(UI_Object*) override {}
        void OnCommand(UI_Object*, int) override { button.reset(); }
        std::unique_ptr<UI_Button> button = std::make_unique<UI_Button>("New", 0, 0, 50, 20);
    } deleter;
    deleter.button->listener = &deleter;
    deleter.button->SetMaster(&master);
    send(*deleter.button, UI_EventType::LeftDown, 5, 5);
    send(*deleter.button, UI_EventType::LeftUp, 5, 5);
    EXPECT_EQ(deleter.button, nullptr);
    EXPECT_EQ(master.captured, nullptr);
}

TEST_F(UiButtonDrawTest, LooksDifferentUnderThePointerPressedAndKeyed) {
    const Vec4 hovered = {0.32f, 0.32f, 0.32f, 1};
    expectDraws(button, [&] { look(slot(3), slot(2), 0); });
    point(50, 30);
    expectDraws(button, [&] { look(hovered, slot(2), 0); });
    button.pressed = true;
    master.captured = &button;
    expectDraws(button, [&] { look(slot(4), slot(2), 1); });
    point(300, 30);
    expectDraws(button, [&] { look(slot(3), slot(2), 0); });
    button.keyed = true;
    expectDraws(button, [&] { look(slot(3), slot(9), 0); });
    // Another widget has the mouse.
    UI_Button other("Other", 0, 0, 5, 5);
    master.captured = &other;
    button.pressed = button.keyed = false;
    point(50, 30);
    expectDraws(button, [&] { look(slot(3), slot(2), 0); });
    master.captured = nullptr;
}

TEST_F(UiButtonDrawTest, HiddenDrawsNothing) {
    button.hidden = true;
    ExpectSamePicture(allDrawn(), blank(kBackground), 0);
}

TEST_F(UiButtonDrawTest, ShowsItsTooltipAfterAMoment) {
    button.tooltip = "Writes the project";
    point(50, 30);
    const Picture plain = allDrawn();
    for (int i = 2; i < UI_Button::kDrawsUntilTooltip; ++i) allDrawn();
    ExpectSamePicture(
        allDrawn(),
        [&] {
            begin(kBackground);
            look({0.32f, 0.32f, 0.32f, 1}, slot(2), 0);
            const int width = master.MeasureText(12, "Writes the project") + 16;
            fill(slot(4), 10, 50, width, 22);
            outline(slot(2), 10, 50, width, 22);
            text(18, 65, "Writes the project");
            return end();
        }(),
        0);
    point(0, 0);
    allDrawn();
    point(50, 30);
    ExpectSamePicture(allDrawn(), plain, 0);
}

TEST_F(UiButtonDrawTest, KeepsTheTooltipOnTheScreen) {
    begin(kBackground);
    master.ShowTooltip("far away", 5000, -20);
    master.DrawAll();
    const Picture picture = end();
    const int width = master.MeasureText(12, "far away") + 16;
    EXPECT_LE(Difference(picture.at(480 - width, 3), slot(4)), kBlendTolerance);
    EXPECT_LE(Difference(picture.at(478, 3), slot(2)), kBlendTolerance);
    // The next pass has none.
    EXPECT_EQ(Difference(allDrawn().at(480 - width, 3), kBackground), 0);
}

TEST_F(UiButtonDrawTest, ALabelIsItsText) {
    UI_Label label("00:01:500", 20, 100, 80);
    label.SetMaster(&master);
    label.color = kColorKeyed;
    begin(kBackground);
    label.Draw();
    const Picture drawn = end();
    begin(kBackground);
    master.DrawText(20, 120, 12, slot(9), "00:01:500");
    const Picture expected = end();
    ExpectSamePicture(drawn, expected, 0);
    UI_Event event = {UI_EventType::LeftUp, 0, 25, 110, false, false};
    EXPECT_FALSE(label.HandleEvent(&event));
}
