#include "editor/ui_color_selector.h"

#include "widget_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// At 5, 40: sliders from 105 at 45, 75, 105, 135; tracks from 198 to 380.
class UiColorSelectorTest : public WidgetTest {
  protected:
    UiColorSelectorTest() {
        const float defaults[4] = {0.1f, 0.2f, 0.3f, 0.4f};
        std::copy(defaults, defaults + 4, selector.value.defaultValue);
        master.AddTopLevel(&selector);
    }
    float color[4] = {0.5f, 0.5f, 0.5f, 1};
    UI_ColorSelector selector{BoundValue<ValueVec4>(color, handler), 40};
};

class UiColorSelectorDrawTest : public WidgetDrawTest {};

}  // namespace

TEST_F(UiColorSelectorTest, HasItsPlaceAndSliders) {
    EXPECT_EQ(selector.x, 5);
    EXPECT_EQ(selector.width, 380);
    EXPECT_EQ(selector.height, 130);
    EXPECT_EQ(selector.GetHeight(), 130);
    const char* names[] = {"Red", "Green", "Blue", "Alpha"};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(selector.sliders[i].label, names[i]);
        EXPECT_EQ(selector.sliders[i].x, 105);
        EXPECT_EQ(selector.sliders[i].y, 45 + 30 * i);
        EXPECT_EQ(selector.sliders[i].value.data, color + i);
        EXPECT_EQ(selector.sliders[i].value.max, 1);
        EXPECT_EQ(selector.sliders[i].value.decimals, 2);
        EXPECT_EQ(selector.sliders[i].master, &master);
    }
}

TEST_F(UiColorSelectorTest, DragsOneComponentAndKeepsTheOthers) {
    EXPECT_TRUE(send(selector, UI_EventType::LeftDown, 198 + 91, 90));
    EXPECT_EQ(master.captured, &selector.sliders[1]);
    send(selector, UI_EventType::MouseMove, 380, 200);
    EXPECT_THAT(color, ElementsAre(0.5f, 1.0f, 0.5f, 1.0f));
    send(selector, UI_EventType::LeftUp, 380, 200);
    EXPECT_EQ(master.captured, nullptr);
    EXPECT_THAT(handler.calls, IsEmpty());
}

TEST_F(UiColorSelectorTest, WritesOneKeyForEachMoveOfADrag) {
    selector.keyed = true;
    send(selector, UI_EventType::LeftDown, 198 + 91, 90);
    EXPECT_THAT(handler.calls, ElementsAre("key n7/Size"));
    send(selector, UI_EventType::MouseMove, 380, 200);
    EXPECT_THAT(handler.calls, ElementsAre("key n7/Size", "key n7/Size"));
    send(selector, UI_EventType::LeftUp, 380, 200);
    EXPECT_EQ(handler.calls.size(), 2u);
}

TEST_F(UiColorSelectorTest, AMoveOverASliderIsNoChange) {
    selector.keyed = true;
    EXPECT_FALSE(send(selector, UI_EventType::MouseMove, 250, 90));
    EXPECT_THAT(handler.calls, IsEmpty());
}

TEST_F(UiColorSelectorTest, ResetsOneComponentOverItsSliderAndAllElsewhere) {
    EXPECT_TRUE(send(selector, UI_EventType::RightUp, 250, 120));
    EXPECT_THAT(color, ElementsAre(0.5f, 0.5f, 0.3f, 1.0f));
    send(selector, UI_EventType::RightUp, 50, 120);
    EXPECT_THAT(color, ElementsAre(0.1f, 0.2f, 0.3f, 0.4f));
    EXPECT_THAT(handler.calls, IsEmpty());
    selector.keyed = true;
    send(selector, UI_EventType::RightUp, 250, 120);
    send(selector, UI_EventType::RightUp, 50, 120);
    EXPECT_THAT(handler.calls, ElementsAre("key n7/Size", "key n7/Size"));
}

TEST_F(UiColorSelectorTest, KeysTheColorAsAWholeAlsoOverASlider) {
    EXPECT_TRUE(press(selector, 'S', 250, 90));
    EXPECT_TRUE(selector.keyed);
    EXPECT_FALSE(selector.sliders[1].keyed);
    press(selector, 'P', 250, 90);
    EXPECT_TRUE(press(selector, 's', 50, 90));
    EXPECT_FALSE(selector.keyed);
    EXPECT_THAT(handler.calls, ElementsAre("add n7/Size", "key n7/Size", "remove n7/Size"));
}

TEST_F(UiColorSelectorTest, LeavesItsSlidersAloneWhileAnotherHasTheCapture) {
    UI_Slider other("Other", 0);
    master.captured = &other;
    UI_Event event = {UI_EventType::LeftDown, 0, 250, 90, false, false};
    EXPECT_FALSE(selector.HandleEvent(&event));
    EXPECT_THAT(color, ElementsAre(0.5f, 0.5f, 0.5f, 1.0f));
    master.captured = nullptr;
}

TEST_F(UiColorSelectorTest, GivesTheCaptureBackWhenItGoesDuringADrag) {
    auto gone = std::make_unique<UI_ColorSelector>(BoundValue<ValueVec4>(color, handler), 40);
    gone->SetMaster(&master);
    send(*gone, UI_EventType::LeftDown, 198 + 91, 90);
    ASSERT_NE(master.captured, nullptr);
    gone.reset();
    EXPECT_EQ(master.captured, nullptr);
}

TEST_F(UiColorSelectorDrawTest, ShowsSlidersAndASwatchOverAChessboard) {
    float color[4] = {1, 0.5f, 0.25f, 0.5f};
    UI_ColorSelector selector(BoundValue<ValueVec4>(color, handler), 40);
    master.AddTopLevel(&selector);
    UI_Slider sliders[4] = {{"Red", 45}, {"Green", 75}, {"Blue", 105}, {"Alpha", 135}};
    for (int i = 0; i < 4; ++i) {
        sliders[i].value.data = color + i;
        sliders[i].SetMaster(&master);
    }
    for (const bool keyed : {false, true}) {
        selector.keyed = keyed;
        expectDraws(selector, [&] {
            fill(slot(3), 5, 40, 380, 130);
            text(10, 55, "Size");
            for (UI_Slider& slider : sliders) slider.Draw();
            fill({0, 0, 0, 1}, 10, 60, 90, 100);
            for (int cell = 0; cell < 90; cell += 2) {
                fill({1, 1, 1, 1}, 10 + 10 * (cell % 9), 60 + 10 * (cell / 9), 10, 10);
            }
            fill({1, 0.5f, 0.25f, 0.5f}, 10, 60, 90, 100);
            if (keyed) outline(slot(9), 5, 40, 380, 130);
        });
    }
}
