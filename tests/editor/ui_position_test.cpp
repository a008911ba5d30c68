#include "editor/ui_position.h"

#include "widget_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// At 5, 40: X from 5, Y from 195, both from 60 to 78; their numbers begin at 100 and 290.
class UiPositionTest : public WidgetTest {
  protected:
    UiPositionTest() {
        ValueVec2 value = BoundValue<ValueVec2>(place, handler);
        value.defaultValue[0] = 7;
        value.defaultValue[1] = 8;
        position = std::make_unique<UI_Position>(value, 40);
        master.AddTopLevel(position.get());
    }
    float place[2] = {0.5f, 0.25f};
    std::unique_ptr<UI_Position> position;
};

class UiPositionDrawTest : public WidgetDrawTest {};

}  // namespace

TEST_F(UiPositionTest, HasItsPlaceAndTwoNumbers) {
    EXPECT_EQ(position->x, 5);
    EXPECT_EQ(position->width, 380);
    EXPECT_EQ(position->GetHeight(), 40);
    for (const UI_ValueControl* control : {&position->controlX, &position->controlY}) {
        EXPECT_EQ(control->value.min, -99999);
        EXPECT_EQ(control->value.max, 99999);
        EXPECT_EQ(control->value.decimals, 3);
        EXPECT_EQ(control->width, 190);
        EXPECT_EQ(control->height, 18);
        EXPECT_FALSE(control->keyable);
        EXPECT_EQ(control->value.handler, nullptr);
        EXPECT_EQ(control->master, &master);
    }
}

TEST_F(UiPositionTest, TypesEitherNumber) {
    EXPECT_FALSE(send(*position, UI_EventType::LeftDoubleClick, 250, 65));
    EXPECT_EQ(master.captured, &position->controlY);
    position->controlY.editText = "200000";
    release(*position, kKeyReturn);
    EXPECT_THAT(place, ElementsAre(0.5f, 99999.0f));
    send(*position, UI_EventType::LeftDoubleClick, 20, 65);
    position->controlX.editText = "-2.5";
    release(*position, kKeyReturn);
    EXPECT_THAT(place, ElementsAre(-2.5f, 99999.0f));
    EXPECT_THAT(handler.calls, IsEmpty());
}

TEST_F(UiPositionTest, WritesAKeyForEachChangeOfAnAnimatedPlace) {
    position->keyed = true;
    send(*position, UI_EventType::LeftDown, 102, 65);
    EXPECT_EQ(master.captured, &position->controlX);
    EXPECT_THAT(handler.calls, IsEmpty());
    send(*position, UI_EventType::MouseMove, 103, 65);
    EXPECT_THAT(handler.calls, ElementsAre("key n7/Size"));
    EXPECT_FLOAT_EQ(place[0], 0.5f + 199998.0f / 100);
    send(*position, UI_EventType::LeftUp, 103, 65);
    EXPECT_EQ(handler.calls.size(), 1u);
}

TEST_F(UiPositionTest, ResetsOneNumberOverItAndBothElsewhere) {
    position->keyed = true;
    EXPECT_FALSE(send(*position, UI_EventType::RightUp, 250, 65));
    EXPECT_THAT(place, ElementsAre(0.5f, 8.0f));
    EXPECT_THAT(handler.calls, ElementsAre("key n7/Size"));
    EXPECT_FALSE(send(*position, UI_EventType::RightUp, 250, 50));
    EXPECT_THAT(place, ElementsAre(7.0f, 8.0f));
    EXPECT_EQ(handler.calls.size(), 2u);
}

TEST_F(UiPositionTest, KeysThePlaceAsAWholeAlsoOverANumber) {
    EXPECT_FALSE(press(*position, 'S', 250, 65));
    EXPECT_TRUE(position->keyed);
    press(*position, 'P', 250, 65);
    press(*position, 's', 20, 45);
    EXPECT_THAT(handler.calls, ElementsAre("add n7/Size", "key n7/Size", "remove n7/Size"));
}

TEST_F(UiPositionTest, TakesItsNumbersAlong) {
    position->SetPosition(100, 200);
    send(*position, UI_EventType::LeftDoubleClick, 300, 225);
    EXPECT_TRUE(position->controlY.editing);
}

TEST_F(UiPositionTest, GivesTheCaptureBackWhenItGoesWhileTyping) {
    send(*position, UI_EventType::LeftDoubleClick, 250, 65);
    position.reset();
    EXPECT_EQ(master.captured, nullptr);
}

TEST_F(UiPositionDrawTest, ShowsLabelAndNumbers) {
    float place[2] = {0.5f, -12.25f};
    UI_Position position(BoundValue<ValueVec2>(place, handler), 40);
    master.AddTopLevel(&position);
    for (const bool keyed : {false, true}) {
        position.keyed = keyed;
        expectDraws(position, [&] {
            fill(slot(3), 5, 40, 380, 40);
            text(15, 58, "Size");
            text(15, 74, "X");
            master.DrawText(100, 74, 12, slot(9), "0.500");
            line(slot(9), 1, 98, 75, 98 + 40, 75);
            text(205, 74, "Y");
            master.DrawText(290, 74, 12, slot(9), "-12.250");
            line(slot(9), 1, 288, 75, 288 + 56, 75);
            if (keyed) outline(slot(9), 5, 40, 380, 40);
        });
    }
}
