#include "editor/ui_value_control.h"

#include <cmath>

#include "widget_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// At 5, 40 and 380 wide: the number begins at 195, its underlining at 193.
class UiValueControlTest : public WidgetTest {
  protected:
    UiValueControlTest() {
        control.value = BoundValue<ValueFloat>(&number, handler);
        control.value.min = 0;
        control.value.max = 4;
        control.value.defaultValue = 3;
        control.listener = &listener;
        master.AddTopLevel(&control);
    }
    void startTyping() {
        EXPECT_TRUE(send(control, UI_EventType::LeftDoubleClick, 300, 45));
        ASSERT_TRUE(control.editing);
    }
    void typeInstead(const std::string& text) {
        startTyping();
        control.editText.clear();
        type(control, text);
        EXPECT_TRUE(release(control, kKeyReturn));
        EXPECT_FALSE(control.editing);
    }

    float number = 1;
    UI_ValueControl control{"Radius", 5, 40, 380, true};
};

class UiValueControlDrawTest : public WidgetDrawTest {
  protected:
    UiValueControlDrawTest() {
        control.value.data = &number;
        master.AddTopLevel(&control);
    }
    float number = 0.25f;
    UI_ValueControl control{"Radius", 5, 40, 380, true};
};

}  // namespace

TEST_F(UiValueControlTest, HasItsPlaceAndDefaults) {
    const UI_ValueControl fresh("Radius", 5, 40, 380, true);
    EXPECT_EQ(fresh.height, 18);
    EXPECT_EQ(fresh.GetHeight(), 30) << "the pitch of rows in a panel";
    EXPECT_EQ(fresh.value.min, 0);
    EXPECT_EQ(fresh.value.max, 1);
    EXPECT_EQ(fresh.value.defaultValue, 0.5f);
    EXPECT_FALSE(fresh.percentFormat);
}

TEST_F(UiValueControlTest, DragsTheNumber) {
    EXPECT_TRUE(send(control, UI_EventType::LeftDown, 200, 45));
    EXPECT_EQ(master.captured, &control);
    EXPECT_FALSE(master.capturedOnTop);
    EXPECT_THAT(listener.edited, IsEmpty());
    EXPECT_TRUE(send(control, UI_EventType::MouseMove, 225, 45));
    EXPECT_FLOAT_EQ(number, 2) << "a hundred pixels are the range";
    send(control, UI_EventType::MouseMove, 900, 45);
    EXPECT_FLOAT_EQ(number, 4);
    send(control, UI_EventType::MouseMove, 0, 45);
    EXPECT_FLOAT_EQ(number, 0);
    send(control, UI_EventType::MouseMove, 210, 45);
    EXPECT_FLOAT_EQ(number, 1.4f) << "counted from where the drag began";
    EXPECT_FALSE(send(control, UI_EventType::LeftUp, 210, 45));
    EXPECT_EQ(master.captured, nullptr);
    EXPECT_FALSE(send(control, UI_EventType::MouseMove, 300, 45));
    EXPECT_FLOAT_EQ(number, 1.4f);
    EXPECT_EQ(listener.edited.size(), 4u);
}

TEST_F(UiValueControlTest, BeginsADragOnTheUnderlinedNumberOnly) {
    for (const int x : {192, 193 + 4 * 8 + 1}) {
        EXPECT_FALSE(send(control, UI_EventType::LeftDown, x, 45)) << x;
        EXPECT_EQ(master.captured, nullptr);
    }
    for (const int x : {193, 193 + 4 * 8}) {
        EXPECT_TRUE(send(control, UI_EventType::LeftDown, x, 45)) << x;
        send(control, UI_EventType::LeftUp, x, 45);
    }
    number = 10.5f;
    EXPECT_TRUE(send(control, UI_EventType::LeftDown, 193 + 5 * 8, 45));
}

TEST_F(UiValueControlTest, DragsAtATwentiethWithCtrl) {
    send(control, UI_EventType::LeftDown, 200, 45);
    EXPECT_TRUE(press(control, kKeyControl));
    send(control, UI_EventType::MouseMove, 250, 45);
    EXPECT_FLOAT_EQ(number, 1 + 4 * 0.5f * 0.05f);
    EXPECT_TRUE(release(control, kKeyControl));
    send(control, UI_EventType::MouseMove, 250, 45);
    EXPECT_FLOAT_EQ(number, 3);
}

TEST_F(UiValueControlTest, DragsPercentsByTheirOwnMeasure) {
    control.percentFormat = true;
    send(control, UI_EventType::LeftDown, 200, 45);
    send(control, UI_EventType::MouseMove, 225, 45);
    EXPECT_FLOAT_EQ(number, 1.25f);
}

TEST_F(UiValueControlTest, ClampsAnimatedValuesAndLetsOthersComeRound) {
    control.value.max = 1;
    typeInstead("1.25");
    EXPECT_EQ(number, 1);
    typeInstead("-3");
    EXPECT_EQ(number, 0);
    control.value.animatable = false;
    typeInstead("1.25");
    EXPECT_EQ(number, 0.25f);
    typeInstead("1");
    EXPECT_EQ(number, 0);
    control.value.min = -1;
    typeInstead("1.5");
    EXPECT_EQ(number, -0.5f);
    number = 0.5f;
    send(control, UI_EventType::LeftDown, 200, 45);
    send(control, UI_EventType::MouseMove, 250, 45);
    EXPECT_FLOAT_EQ(number, -0.5f);
}

TEST_F(UiValueControlTest, WithoutARangeHasNothingToComeRoundIn) {
    control.value.animatable = false;
    control.value.max = control.value.min = 2;
    typeInstead("5");
    EXPECT_TRUE(std::isnan(number));
    send(control, UI_EventType::RightUp, 20, 45);
    EXPECT_EQ(number, 3);
}

TEST_F(UiValueControlTest, TypesFromADoubleClickToReturn) {
    startTyping();
    EXPECT_EQ(master.captured, &control);
    EXPECT_TRUE(master.capturedOnTop);
    EXPECT_EQ(control.editText, "1.00");
    for (int i = 0; i < 9; ++i) EXPECT_TRUE(press(control, kKeyBack));
    EXPECT_EQ(control.editText, "");
    type(control, "a2b.S5%|");
    EXPECT_EQ(control.editText, "2.5");
    EXPECT_TRUE(send(control, UI_EventType::MouseMove, 900, 900));
    EXPECT_EQ(number, 1);
    EXPECT_TRUE(release(control, kKeyReturn));
    EXPECT_EQ(number, 2.5f);
    EXPECT_FALSE(control.editing);
    EXPECT_EQ(master.captured, nullptr);
    EXPECT_THAT(listener.edited, ElementsAre(&control));
}

TEST_F(UiValueControlTest, AcceptsDigitsCommaMinusAndPointOnly) {
    std::string accepted;
    startTyping();
    for (int c = -300; c < 70000; ++c) {
        control.editText.clear();
        send(control, UI_EventType::CharInput, 0, 0, c);
        accepted += control.editText;
    }
    EXPECT_EQ(accepted, ",-.0123456789");
    control.editText = std::string(79, '1');
    type(control, "23");
    EXPECT_EQ(control.editText, std::string(79, '1') + "2");
    EXPECT_TRUE(release(control, kKeyReturn));
    EXPECT_EQ(number, 4) << "more than any float is limited like any other number";
}

TEST_F(UiValueControlTest, TakesBadNumbersForZero) {
    control.value.min = 0.5f;
    for (const char* bad : {"", "-", ".", "--1", ","}) {
        number = 2;
        typeInstead(bad);
        EXPECT_EQ(number, 0.5f) << bad;
    }
    typeInstead("1,75");
    EXPECT_EQ(number, 1);
}

TEST_F(UiValueControlTest, TypesPercents) {
    control.percentFormat = true;
    startTyping();
    EXPECT_EQ(control.editText, "100.00%");
    EXPECT_TRUE(release(control, kKeyReturn));
    EXPECT_EQ(number, 1);
    typeInstead("250");
    EXPECT_EQ(number, 2.5f);
}

TEST_F(UiValueControlTest, EscapeLeavesValueAndKeysUntouched) {
    control.keyed = true;
    startTyping();
    type(control, "9");
    EXPECT_TRUE(release(control, kKeyEscape));
    EXPECT_FALSE(control.editing);
    EXPECT_EQ(master.captured, nullptr);
    EXPECT_EQ(number, 1);
    EXPECT_TRUE(control.keyed);
    EXPECT_THAT(handler.calls, IsEmpty());
    EXPECT_THAT(listener.edited, IsEmpty());
}

TEST_F(UiValueControlTest, ADoubleClickDuringADragGoesBackAndTypes) {
    send(control, UI_EventType::LeftDown, 200, 45);
    send(control, UI_EventType::MouseMove, 225, 45);
    EXPECT_FLOAT_EQ(number, 2);
    send(control, UI_EventType::LeftDoubleClick, 225, 45);
    EXPECT_EQ(number, 1);
    EXPECT_EQ(control.editText, "1.00");
    EXPECT_TRUE(send(control, UI_EventType::LeftUp, 225, 45));
    EXPECT_TRUE(control.editing);
    EXPECT_EQ(master.captured, &control) << "typing keeps the capture";
}

TEST_F(UiValueControlTest, GoesBackToItsDefault) {
    EXPECT_TRUE(send(control, UI_EventType::RightUp, 20, 45));
    EXPECT_EQ(number, 3);
    EXPECT_THAT(listener.edited, ElementsAre(&control));
    EXPECT_THAT(handler.calls, IsEmpty());
    control.keyed = true;
    send(control, UI_EventType::RightUp, 20, 45);
    EXPECT_THAT(handler.calls, ElementsAre("key n7/Size"));
}

TEST_F(UiValueControlTest, KeysByItsLabelAndWritesKeysByItsName) {
    EXPECT_TRUE(press(control, 'S'));
    EXPECT_TRUE(control.keyed);
    send(control, UI_EventType::LeftDown, 200, 45);
    send(control, UI_EventType::MouseMove, 201, 45);
    send(control, UI_EventType::LeftUp, 201, 45);
    EXPECT_TRUE(press(control, 's'));
    EXPECT_FALSE(control.keyed);
    EXPECT_FALSE(press(control, 'P'));
    EXPECT_THAT(handler.calls,
                ElementsAre("add n7/Radius", "key n7/Size", "remove n7/Radius", "key n7/Size"));
}

TEST_F(UiValueControlTest, WritesAKeyWithTheTypedNumber) {
    control.keyed = true;
    typeInstead("2");
    EXPECT_THAT(handler.calls, ElementsAre("key n7/Size"));
}

TEST_F(UiValueControlTest, ReleasingCtrlCountsAsAChange) {
    EXPECT_TRUE(release(control, kKeyControl));
    EXPECT_THAT(listener.edited, ElementsAre(&control));
    EXPECT_THAT(handler.calls, IsEmpty()) << "not keyed";
    control.keyed = true;
    EXPECT_TRUE(release(control, kKeyControl));
    EXPECT_THAT(handler.calls, ElementsAre("key n7/Size"));
    EXPECT_EQ(number, 1);
}

TEST_F(UiValueControlTest, ADoubleClickTypesEvenWhileAnotherWidgetHasTheCapture) {
    UI_ValueControl other("Other", 0, 0, 100, true);
    master.captured = &other;
    UI_Event event = {UI_EventType::LeftDoubleClick, 0, 300, 45, false, false};
    EXPECT_TRUE(control.HandleEvent(&event));
    EXPECT_TRUE(control.editing);
    EXPECT_EQ(master.captured, &other);
    master.captured = nullptr;
}

TEST_F(UiValueControlTest, APressOnTheNumberIsTakenEvenWhileAnotherWidgetHasTheCapture) {
    UI_ValueControl other("Other", 0, 0, 100, true);
    master.captured = &other;
    UI_Event event = {UI_EventType::LeftDown, 0, 200, 45, false, false};
    EXPECT_TRUE(control.HandleEvent(&event));
    EXPECT_EQ(control.dragStartX, 200);
    EXPECT_EQ(control.dragStartValue, 1);
    EXPECT_EQ(master.captured, &other);
    master.captured = nullptr;
}

TEST_F(UiValueControlTest, RightUpAndPCountWhileTyping) {
    control.keyed = true;
    startTyping();
    EXPECT_TRUE(send(control, UI_EventType::RightUp, 300, 45));
    EXPECT_EQ(number, 3);
    EXPECT_TRUE(control.editing);
    EXPECT_THAT(handler.calls, ElementsAre("key n7/Size"));
    control.keyed = false;
    EXPECT_TRUE(press(control, 'P'));
    EXPECT_THAT(handler.calls, ElementsAre("key n7/Size", "key n7/Size"));
    EXPECT_TRUE(control.editing);
}

TEST_F(UiValueControlTest, NotKeyableIgnoresTheGesturesOfKeys) {
    control.keyable = false;
    EXPECT_FALSE(press(control, 'S'));
    EXPECT_FALSE(press(control, 'P'));
    control.keyed = true;
    send(control, UI_EventType::RightUp, 20, 45);
    EXPECT_THAT(handler.calls, IsEmpty());
}

TEST_F(UiValueControlDrawTest, ShowsAnUnderlinedNumber) {
    for (const bool keyed : {false, true}) {
        control.keyed = keyed;
        expectDraws(control, [&] {
            fill(slot(3), 5, 40, 380, 18);
            text(15, 54, "Radius");
            master.DrawText(195, 54, 12, slot(9), "0.25");
            line(slot(9), 1, 193, 55, 193 + 32, 55);
            if (keyed) outline(slot(9), 5, 40, 380, 18);
        });
    }
    EXPECT_EQ(control.numberWidth, 32);
}

TEST_F(UiValueControlDrawTest, ShowsPercentsWithTheirDecimals) {
    control.percentFormat = true;
    control.value.decimals = 1;
    expectDraws(control, [&] {
        fill(slot(3), 5, 40, 380, 18);
        text(15, 54, "Radius");
        master.DrawText(195, 54, 12, slot(9), "25.0%");
        line(slot(9), 1, 193, 55, 193 + 40, 55);
    });
}

TEST_F(UiValueControlDrawTest, ShowsWhatIsTyped) {
    control.editing = true;
    control.editText = "0.2";
    expectDraws(control, [&] {
        fill(slot(3), 5, 40, 380, 18);
        text(15, 54, "Radius");
        master.DrawText(195, 54, 14, {1, 1, 1, 1}, "0.2|");
    });
}
