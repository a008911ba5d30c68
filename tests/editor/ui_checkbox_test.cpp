#include "editor/ui_checkbox.h"

#include "widget_fixture.h"

namespace {

using testing::IsEmpty;

// At 5, 40: the square is 360 to 380 and 45 to 65.
class UiCheckboxTest : public WidgetTest {
  protected:
    UiCheckboxTest() { master.AddTopLevel(&box); }
    bool on = false;
    UI_Checkbox box{BoundValue<ValueBool>(&on, handler), 40};
};

class UiCheckboxDrawTest : public WidgetDrawTest {};

}  // namespace

TEST_F(UiCheckboxTest, HasItsPlace) {
    EXPECT_EQ(box.x, 5);
    EXPECT_EQ(box.width, 380);
    EXPECT_EQ(box.height, 30);
    EXPECT_EQ(box.label, "Size");
}

TEST_F(UiCheckboxTest, FlipsAtAReleaseInItsSquareOnly) {
    for (const auto& [x, y] : {std::pair{360, 45}, {380, 65}, {370, 55}}) {
        const bool before = on;
        EXPECT_FALSE(send(box, UI_EventType::LeftUp, x, y));
        EXPECT_NE(on, before);
    }
    for (const auto& [x, y] : {std::pair{359, 55}, {381, 55}, {370, 44}, {370, 66}, {20, 55}}) {
        const bool before = on;
        send(box, UI_EventType::LeftUp, x, y);
        EXPECT_EQ(on, before) << x << ", " << y;
    }
    const bool before = on;
    send(box, UI_EventType::LeftDown, 370, 55);
    EXPECT_EQ(on, before);
}

TEST_F(UiCheckboxTest, GoesBackToItsDefault) {
    box.value.defaultValue = true;
    for (const bool start : {false, true}) {
        on = start;
        EXPECT_FALSE(send(box, UI_EventType::RightUp, 20, 55));
        EXPECT_TRUE(on);
    }
}

TEST_F(UiCheckboxTest, HasNoKeyframes) {
    EXPECT_FALSE(press(box, 'S', 370, 55));
    EXPECT_FALSE(press(box, 'P', 370, 55));
    EXPECT_FALSE(box.keyed);
    EXPECT_THAT(handler.calls, IsEmpty());
}

TEST_F(UiCheckboxDrawTest, ShowsAFullOrAnEmptySquare) {
    bool on = false;
    UI_Checkbox box(BoundValue<ValueBool>(&on, handler), 40);
    master.AddTopLevel(&box);
    expectDraws(box, [&] {
        fill(slot(3), 5, 40, 380, 30);
        line(slot(7), 1.5f, 360, 45, 380, 45);
        line(slot(7), 1.5f, 380, 45, 380, 65);
        line(slot(7), 1.5f, 380, 65, 360, 65);
        line(slot(7), 1.5f, 360, 65, 360, 45);
        text(15, 60, "Size");
    });
    on = true;
    expectDraws(box, [&] {
        fill(slot(3), 5, 40, 380, 30);
        fill(slot(7), 360, 45, 20, 20);
        text(15, 60, "Size");
    });
}
