#include "editor/ui_slider.h"

#include <limits>

#include "widget_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// At 105, 40 the track runs from 198 to 380.
constexpr int kStart = 198, kTrack = 182;

class UiSliderTest : public WidgetTest {
  protected:
    UiSliderTest() {
        slider.value = BoundValue<ValueFloat>(&number, handler);
        slider.value.min = 10;
        slider.value.max = 30;
        slider.value.defaultValue = 15;
        slider.listener = &listener;
        master.AddTopLevel(&slider);
    }
    static float at(float pixels) { return 10 + 20 * pixels / kTrack; }

    float number = 20;
    UI_Slider slider{"Red", 40};
};

class UiSliderDrawTest : public WidgetDrawTest {};

}  // namespace

TEST_F(UiSliderTest, HasItsPlaceAndDefaults) {
    const UI_Slider fresh("Red", 40);
    EXPECT_EQ(fresh.x, 105);
    EXPECT_EQ(fresh.y, 40);
    EXPECT_EQ(fresh.width, 280);
    EXPECT_EQ(fresh.height, 30);
    EXPECT_EQ(fresh.GetHeight(), 30);
    EXPECT_EQ(fresh.value.min, 0);
    EXPECT_EQ(fresh.value.max, 1);
    EXPECT_EQ(fresh.value.defaultValue, 0.5f);
    EXPECT_EQ(fresh.fineFactor, 1);
}

TEST_F(UiSliderTest, DragsWithThePointer) {
    EXPECT_TRUE(send(slider, UI_EventType::LeftDown, kStart + 91, 50));
    EXPECT_EQ(master.captured, &slider);
    EXPECT_FALSE(master.capturedOnTop);
    EXPECT_FLOAT_EQ(number, 20);
    EXPECT_TRUE(send(slider, UI_EventType::MouseMove, kStart + 40, 900));
    EXPECT_FLOAT_EQ(number, at(40));
    EXPECT_TRUE(send(slider, UI_EventType::LeftUp, kStart + 40, 900));
    EXPECT_EQ(master.captured, nullptr);
    send(slider, UI_EventType::MouseMove, kStart + 100, 50);
    EXPECT_FLOAT_EQ(number, at(40));
    EXPECT_EQ(listener.edited.size(), 2u);
}

TEST_F(UiSliderTest, KeepsADragOnTheTrack) {
    send(slider, UI_EventType::LeftDown, kStart, 50);
    EXPECT_FLOAT_EQ(number, 10);
    send(slider, UI_EventType::MouseMove, 1900, 50);
    EXPECT_FLOAT_EQ(number, 30);
    send(slider, UI_EventType::MouseMove, 0, 50);
    EXPECT_FLOAT_EQ(number, 10);
}

TEST_F(UiSliderTest, BeginsOnItsTrackOnlyAndWithFreeCapture) {
    for (const int x : {kStart - 1, kStart + kTrack + 1}) {
        EXPECT_FALSE(send(slider, UI_EventType::LeftDown, x, 50));
        EXPECT_FALSE(slider.dragging);
    }
    for (const int x : {kStart, kStart + kTrack}) {
        EXPECT_TRUE(send(slider, UI_EventType::LeftDown, x, 50));
        send(slider, UI_EventType::LeftUp, x, 50);
    }
    UI_Slider other("Other", 0);
    master.captured = &other;
    UI_Event event = {UI_EventType::LeftDown, 0, kStart + 10, 50, false, false};
    EXPECT_FALSE(slider.HandleEvent(&event));
    EXPECT_FALSE(slider.dragging);
    master.captured = nullptr;
}

TEST_F(UiSliderTest, FollowsAtATwentiethWithCtrl) {
    send(slider, UI_EventType::LeftDown, kStart + 100, 50);
    EXPECT_TRUE(press(slider, kKeyControl));
    send(slider, UI_EventType::MouseMove, kStart + 130, 50);
    EXPECT_FLOAT_EQ(slider.handle, 101.5f);
    EXPECT_FLOAT_EQ(number, at(101.5f));
    send(slider, UI_EventType::MouseMove, kStart + 130, 50);
    EXPECT_FLOAT_EQ(slider.handle, 101.5f + 28.5f * 0.05f);
    EXPECT_TRUE(release(slider, kKeyControl));
    EXPECT_FLOAT_EQ(slider.handle, 102);
    EXPECT_FLOAT_EQ(number, at(102));
    send(slider, UI_EventType::MouseMove, kStart + 130, 50);
    EXPECT_FLOAT_EQ(number, at(130));
}

TEST_F(UiSliderTest, EndsTheFineFactorWithTheDrag) {
    send(slider, UI_EventType::LeftDown, kStart + 100, 50);
    press(slider, kKeyControl);
    send(slider, UI_EventType::LeftUp, kStart + 100, 50);
    EXPECT_EQ(slider.fineFactor, 1);
}

TEST_F(UiSliderTest, GoesBackToItsDefault) {
    EXPECT_TRUE(send(slider, UI_EventType::RightUp, 110, 50));
    EXPECT_EQ(number, 15);
    EXPECT_EQ(listener.edited.size(), 1u);
    // Before anything is drawn anew.
    EXPECT_FALSE(send(slider, UI_EventType::MouseMove, 110, 50));
    EXPECT_FLOAT_EQ(number, 15);
}

TEST_F(UiSliderTest, TakesUpAValueThatOthersSet) {
    send(slider, UI_EventType::MouseMove, 110, 50);
    number = 27;
    send(slider, UI_EventType::MouseMove, 111, 50);
    EXPECT_FLOAT_EQ(number, 27);
}

TEST_F(UiSliderTest, LeavesAValueOutsideItsRangeUntilItIsDragged) {
    number = 100;
    send(slider, UI_EventType::MouseMove, 110, 50);
    EXPECT_FLOAT_EQ(number, 100);
    EXPECT_GT(slider.handle, kTrack);
    send(slider, UI_EventType::LeftDown, kStart + 50, 50);
    EXPECT_FLOAT_EQ(number, at(50));
}

TEST_F(UiSliderTest, WritesKeysWhenKeyed) {
    send(slider, UI_EventType::LeftDown, kStart + 50, 50);
    EXPECT_THAT(handler.calls, IsEmpty());
    slider.keyed = true;
    send(slider, UI_EventType::MouseMove, kStart + 60, 50);
    EXPECT_THAT(handler.calls, ElementsAre("key n7/Size"));
    send(slider, UI_EventType::LeftUp, kStart + 60, 50);
    EXPECT_EQ(handler.calls.size(), 1u) << "a release changes nothing";
}

TEST_F(UiSliderTest, SurvivesNumbersThatAreNone) {
    slider.value.max = slider.value.min;
    send(slider, UI_EventType::LeftDown, kStart + 50, 50);
    EXPECT_EQ(number, 10);
    send(slider, UI_EventType::LeftUp, kStart + 50, 50);
    number = std::numeric_limits<float>::quiet_NaN();
    slider.value.max = 30;
    send(slider, UI_EventType::MouseMove, kStart + 50, 50);
    send(slider, UI_EventType::LeftDown, kStart + 50, 50);
    EXPECT_FLOAT_EQ(number, at(50));
}

TEST_F(UiSliderDrawTest, ShowsItsTrackHandleAndNumber) {
    float number = 0.75f;
    UI_Slider slider("Red", 40);
    slider.value.data = &number;
    master.AddTopLevel(&slider);
    for (const bool keyed : {false, true}) {
        slider.keyed = keyed;
        expectDraws(slider, [&] {
            fill(slot(3), 105, 40, 280, 30);
            line(slot(7), 1, 198, 55, 380, 55);
            line(slot(7), 1, 198, 52, 198, 58);
            line(slot(7), 1, 380, 52, 380, 58);
            line(slot(7), 2, 198 + 136, 45, 198 + 136, 65);
            text(115, 60, "Red");
            text(158, 60, "0.75");
            if (keyed) outline(slot(9), 105, 40, 280, 30);
        });
    }
}

TEST_F(UiSliderDrawTest, DrawsTheHandleOffTheTrackForAValueOutside) {
    float number = -0.5f;
    UI_Slider slider("Red", 40);
    slider.value.data = &number;
    slider.value.decimals = 3;
    master.AddTopLevel(&slider);
    expectDraws(slider, [&] {
        fill(slot(3), 105, 40, 280, 30);
        line(slot(7), 1, 198, 55, 380, 55);
        line(slot(7), 1, 198, 52, 198, 58);
        line(slot(7), 1, 380, 52, 380, 58);
        line(slot(7), 2, 107, 45, 107, 65);
        text(115, 60, "Red");
        text(158, 60, "-0.500");
    });
}
