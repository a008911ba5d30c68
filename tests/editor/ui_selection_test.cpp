#include "editor/ui_selection.h"

#include "widget_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

ValueInt Choice(std::int32_t* index, KeyframeRecorder& handler) {
    ValueInt value = BoundValue<ValueInt>(index, handler);
    value.options = {"one", "two", "three"};
    value.defaultValue = 2;
    return value;
}

// At 5, 40 and 380 wide: the field begins at 131, the rows of the list under 70.
class UiSelectionTest : public WidgetTest {
  protected:
    UiSelectionTest() {
        selection.listener = &listener;
        master.AddTopLevel(&selection);
    }
    void open() {
        EXPECT_FALSE(send(selection, UI_EventType::LeftDown, 200, 50));
        ASSERT_TRUE(selection.open);
    }
    std::int32_t index = 1;
    UI_Selection selection{Choice(&index, handler), 40, 380};
};

class UiSelectionDrawTest : public WidgetDrawTest {
  protected:
    void closed(const std::string& option) {
        fill(slot(3), 5, 40, 380, 30);
        line(slot(7), 1.5f, 360, 45, 380, 45);
        line(slot(7), 1.5f, 380, 45, 370, 65);
        line(slot(7), 1.5f, 360, 45, 370, 65);
        text(15, 60, "Size");
        fill(slot(4), 131, 42, 380 - 126 - 35, 26);
        text(136, 60, option);
    }
};

}  // namespace

TEST_F(UiSelectionTest, ChoosesTheRowWhereTheButtonIsReleased) {
    open();
    EXPECT_EQ(master.captured, &selection);
    EXPECT_TRUE(master.capturedOnTop);
    EXPECT_EQ(selection.hoverRow, 1);
    EXPECT_FALSE(send(selection, UI_EventType::MouseMove, 200, 40 + 75));
    EXPECT_EQ(selection.hoverRow, 2);
    EXPECT_EQ(index, 1);
    EXPECT_FALSE(send(selection, UI_EventType::LeftUp, 200, 40 + 75));
    EXPECT_EQ(index, 2);
    EXPECT_FALSE(selection.open);
    EXPECT_EQ(master.captured, nullptr);
    EXPECT_THAT(listener.edited, ElementsAre(&selection));
}

TEST_F(UiSelectionTest, AClickWithoutAMoveKeepsTheChoice) {
    open();
    send(selection, UI_EventType::LeftUp, 200, 50);
    EXPECT_EQ(index, 1);
    EXPECT_FALSE(selection.open);
}

TEST_F(UiSelectionTest, CountsRowsUnderItselfOnly) {
    open();
    const std::pair<int, int> rows[] = {{-50, -1}, {30, -1}, {31, 0},  {52, 0},   {53, 1},
                                        {72, 1},   {73, 2},  {104, 3}, {105, -1}, {900, -1}};
    for (const auto& [below, row] : rows) {
        send(selection, UI_EventType::MouseMove, 200, 40 + below);
        EXPECT_EQ(selection.hoverRow, row) << below;
    }
}

TEST_F(UiSelectionTest, KeepsTheRowWhileThePointerIsBesideTheField) {
    open();
    send(selection, UI_EventType::MouseMove, 200, 40 + 75);
    for (const int x : {0, 131, 385, 900}) {
        send(selection, UI_EventType::MouseMove, x, 40 + 35);
        EXPECT_EQ(selection.hoverRow, 2) << x;
    }
    for (const int x : {132, 384}) {
        selection.hoverRow = 2;
        send(selection, UI_EventType::MouseMove, x, 40 + 35);
        EXPECT_EQ(selection.hoverRow, 0) << x;
    }
}

TEST_F(UiSelectionTest, ChoosesNothingWithoutAValidRow) {
    for (const int below : {20, 104, 500}) {
        open();
        send(selection, UI_EventType::MouseMove, 200, 40 + below);
        send(selection, UI_EventType::LeftUp, 200, 40 + below);
        EXPECT_EQ(index, 1) << below;
        EXPECT_FALSE(selection.open);
    }
    EXPECT_THAT(listener.edited, IsEmpty());
}

TEST_F(UiSelectionTest, OpensRightOfItsLabelAndWithFreeCapture) {
    for (const int x : {20, 131}) {
        send(selection, UI_EventType::LeftDown, x, 50);
        EXPECT_FALSE(selection.open) << x;
    }
    UI_Selection other(Choice(&index, handler), 0, 100);
    master.captured = &other;
    UI_Event event = {UI_EventType::LeftDown, 0, 200, 50, false, false};
    selection.HandleEvent(&event);
    EXPECT_FALSE(selection.open);
    // A release closes, but leaves the capture to the one that has it.
    selection.open = true;
    event.type = UI_EventType::LeftUp;
    selection.HandleEvent(&event);
    EXPECT_FALSE(selection.open);
    EXPECT_EQ(master.captured, &other);
    master.captured = nullptr;
}

TEST_F(UiSelectionTest, AReleaseWithoutCaptureIsNothing) {
    selection.hoverRow = 2;
    send(selection, UI_EventType::LeftUp, 200, 50);
    EXPECT_EQ(index, 1);
}

TEST_F(UiSelectionTest, GoesBackToItsDefault) {
    EXPECT_FALSE(send(selection, UI_EventType::RightUp, 20, 50));
    EXPECT_EQ(index, 2);
}

TEST_F(UiSelectionTest, HasNoKeyframes) {
    press(selection, 'S');
    press(selection, 'P');
    EXPECT_FALSE(selection.keyed);
    EXPECT_THAT(handler.calls, IsEmpty());
}

TEST_F(UiSelectionTest, TakesOtherOptionsAndCloses) {
    open();
    ValueMultiInt choice("Outputs", "");
    choice.options = {"a", "b"};
    selection.TakeOptions(choice);
    EXPECT_THAT(selection.value.options, ElementsAre("a", "b"));
    EXPECT_FALSE(selection.open);
    EXPECT_EQ(master.captured, nullptr);
    EXPECT_EQ(index, 1);
}

// At 5, 980: a list of twenty would end 330 pixels below the screen, which has room for three rows.
class UiLongSelectionTest : public WidgetTest {
  protected:
    UiLongSelectionTest() {
        ValueInt value = BoundValue<ValueInt>(&index, handler);
        for (int i = 0; i < 20; ++i) value.options.push_back(std::to_string(i));
        selection = std::make_unique<UI_Selection>(value, 980, 380);
        master.AddTopLevel(selection.get());
        send(*selection, UI_EventType::LeftDown, 200, 990);
    }
    void wheel(int delta, int times) {
        for (int i = 0; i < times; ++i) send(*selection, UI_EventType::Wheel, 200, 1015, delta);
    }
    std::int32_t index = 1;
    std::unique_ptr<UI_Selection> selection;
};

TEST_F(UiLongSelectionTest, TheWheelBringsTheRowsThatDoNotGoOnTheScreen) {
    send(*selection, UI_EventType::MouseMove, 200, 1015);
    EXPECT_EQ(selection->hoverRow, 0);
    wheel(-120, 1);
    EXPECT_EQ(selection->hoverRow, 1) << "the row under the pointer";
    wheel(-30, 100);
    EXPECT_EQ(selection->hoverRow, 17) << "the last is the third from the field";
    send(*selection, UI_EventType::MouseMove, 200, 1055);
    EXPECT_EQ(selection->hoverRow, 19);
    wheel(120, 3);
    EXPECT_EQ(selection->hoverRow, 14);
    send(*selection, UI_EventType::LeftUp, 200, 1015);
    EXPECT_EQ(index, 14);
    send(*selection, UI_EventType::LeftDown, 200, 990);
    send(*selection, UI_EventType::MouseMove, 200, 1015);
    EXPECT_EQ(selection->hoverRow, 0) << "it opens at its first row";
}

TEST_F(UiLongSelectionTest, ArrowsGoRowByRowAndBringThemIntoView) {
    for (int i = 0; i < 4; ++i) press(*selection, kKeyDown);
    EXPECT_EQ(selection->hoverRow, 5);
    EXPECT_EQ(selection->scrolledRows, 3);
    for (int i = 0; i < 40; ++i) press(*selection, kKeyDown);
    EXPECT_EQ(selection->hoverRow, 19);
    EXPECT_EQ(selection->scrolledRows, 17);
    for (int i = 0; i < 40; ++i) press(*selection, kKeyUp);
    EXPECT_EQ(selection->hoverRow, 0);
    EXPECT_EQ(selection->scrolledRows, 0);
    press(*selection, kKeyDown);
    send(*selection, UI_EventType::LeftUp, 200, 990);
    EXPECT_EQ(index, 1);
}

TEST_F(UiLongSelectionTest, EscapeClosesWithoutAChoice) {
    wheel(-120, 5);
    press(*selection, kKeyEscape);
    release(*selection, kKeyEscape);
    EXPECT_FALSE(selection->open);
    EXPECT_EQ(master.captured, nullptr);
    EXPECT_EQ(index, 1);
    EXPECT_THAT(listener.edited, IsEmpty());
}

TEST_F(UiSelectionTest, AListThatGoesOnTheScreenDoesNotScroll) {
    open();
    send(selection, UI_EventType::Wheel, 200, 40 + 55, -120);
    EXPECT_EQ(selection.scrolledRows, 0);
    EXPECT_EQ(selection.hoverRow, 1);
}

TEST_F(UiSelectionDrawTest, ALongListShowsItsRowsFromTheOneScrolledToAndWhereTheyAre) {
    std::int32_t index = 0;
    ValueInt value = BoundValue<ValueInt>(&index, handler);
    for (int i = 0; i < 100; ++i) value.options.push_back(std::to_string(i));
    UI_Selection selection(value, 40, 380);
    master.AddTopLevel(&selection);
    master.captured = &selection;
    selection.open = true;
    selection.scrolledRows = 25;  // of the 50 that do not go on the screen
    selection.hoverRow = 26;
    expectDraws(selection, [&] {
        closed("0");
        fill(slot(4), 136, 70, 219, 2005);
        fill(slot(3), 136, 71 + 20, 219, 22);
        for (int row = 0; row < 10; ++row) text(141, 85 + 20 * row, std::to_string(25 + row));
        fill(slot(2), 350, 73 + 1000 / 4, 4, 500);
    });
}

TEST_F(UiSelectionDrawTest, ShowsTheChoice) {
    std::int32_t index = 1;
    UI_Selection selection(Choice(&index, handler), 40, 380);
    master.AddTopLevel(&selection);
    expectDraws(selection, [&] { closed("two"); });
    for (const std::int32_t outside : {-1, 3, 2147483647}) {
        index = outside;
        expectDraws(selection, [&] { closed("No Options"); });
    }
    index = 1;
    selection.open = true;
    expectDraws(selection, [&] { closed("two"); });
}

TEST_F(UiSelectionDrawTest, ShowsTheListWhileItHasTheCapture) {
    std::int32_t index = 0;
    UI_Selection selection(Choice(&index, handler), 40, 380);
    master.AddTopLevel(&selection);
    master.captured = &selection;
    selection.open = true;
    for (const int row : {2, -1, 3}) {
        selection.hoverRow = row;
        expectDraws(selection, [&] {
            closed("one");
            fill(slot(4), 136, 70, 219, 65);
            if (row == 2) fill(slot(3), 136, 71 + 40, 219, 22);
            text(141, 85, "one");
            text(141, 105, "two");
            text(141, 125, "three");
        });
    }
}
