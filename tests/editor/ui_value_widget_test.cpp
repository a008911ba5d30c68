#include "editor/ui_value_widget.h"

#include <random>

#include "editor/ui_checkbox.h"
#include "editor/ui_color_selector.h"
#include "editor/ui_direction.h"
#include "editor/ui_panel.h"
#include "editor/ui_position.h"
#include "editor/ui_selection.h"
#include "editor/ui_text_box.h"
#include "platform/debug_output.h"
#include "platform/user_dialogs.h"
#include "support/core_nodes.h"
#include "widget_fixture.h"

namespace {

using testing::ElementsAre;

template <typename Value>
const Value& ValueOf(const Engine& engine, Node& node, const std::string& name) {
    for (const auto& value : *engine.values.find(&node)) {
        if (value->name == name) return dynamic_cast<const Value&>(*value);
    }
    throw std::out_of_range(name);
}

// Widgets on the values of a node, on a panel as the editor has them.
class ValueWidgetTest : public WidgetTest {
  protected:
    ValueWidgetTest() { master.AddTopLevel(&panel); }
    void message(std::uint32_t number, int value, int x, int y) {
        WindowMessage m;
        m.message = number;
        m.value = value;
        m.x = x;
        m.y = y;
        master.Dispatch(m);
    }
    void key(int virtualKey, int x, int y) {
        message(kMessageMouseMove, 0, x, y);
        message(kMessageKeyDown, virtualKey, x, y);
        message(kMessageKeyUp, virtualKey, x, y);
    }
    UI_ValueControl* addControl(const std::string& name, int y) {
        auto* control = new UI_ValueControl(name, 5, y, 380, true);
        control->value = ValueOf<ValueFloat>(engine, node, name);
        panel.AddChild(control);
        return control;
    }

    TestEngine engine;
    TestNode& node = engine.makeNode("A");
    UI_Panel panel{100, 100, 390, 600, false};
};

// The widgets of all kinds, bound to nothing.
struct UnboundWidgets {
    UI_Slider slider{"Red", 0};
    UI_Checkbox checkbox{ValueBool("", ""), 0};
    UI_TextBox box{ValueString("", ""), 0, 0, 100};
    UI_ColorSelector selector{ValueVec4("", ""), 0};
    UI_Selection selection{ValueInt("", ""), 0, 100};
    UI_Direction direction{ValueVec2("", ""), 0};
    UI_Position position{ValueVec2("", ""), 0};
    UI_ValueControl control{"", 0, 0, 100, true};
    std::vector<UI_Object*> all{&slider,    &checkbox,  &box,      &selector,
                                &selection, &direction, &position, &control};
};

class UnboundWidgetDrawTest : public WidgetDrawTest {};

}  // namespace

TEST_F(UnboundWidgetDrawTest, DrawsItsBackground) {
    UnboundWidgets widgets;
    for (UI_Object* widget : widgets.all) {
        widget->SetMaster(&master);
        begin(kBackground);
        widget->Draw();
        const Picture drawn = end();
        EXPECT_LE(Difference(drawn.at(widget->x + 1, widget->y + 1), slot(3)), kBlendTolerance);
    }
}

TEST_F(ValueWidgetTest, TakesUpWhetherItsValueIsAnimated) {
    float number = 0;
    UI_ValueControl control("Label", 0, 0, 380, true);
    control.value = BoundValue<ValueFloat>(&number, handler);
    handler.animated = "n7/Size";
    control.SyncKeyed();
    EXPECT_TRUE(control.keyed);
    handler.animated = "n7/Label";
    control.SyncKeyed();
    EXPECT_FALSE(control.keyed);
    control.keyed = true;
    control.value.handler = nullptr;
    control.SyncKeyed();
    EXPECT_TRUE(control.keyed);
}

TEST_F(ValueWidgetTest, TurnsKeyedWithoutAHandlerToo) {
    float vector[2] = {0, 1}, color[4] = {};
    std::string text;
    ValueVec2 vec2("V", "n");
    vec2.data = vector;
    ValueVec4 vec4("C", "n");
    vec4.data = color;
    ValueString string("S", "n");
    string.data = &text;
    UI_Direction direction(vec2, 0);
    UI_Position position(vec2, 0);
    UI_ColorSelector selector(vec4, 0);
    UI_TextBox box(string, 0, 0, 100);
    for (UI_Object* widget :
         std::initializer_list<UI_Object*>{&direction, &position, &selector, &box}) {
        widget->SetMaster(&master);
        press(*widget, 'S', 1, 1);
        EXPECT_TRUE(widget->keyed);
        press(*widget, 'P', 1, 1);
        send(*widget, UI_EventType::RightUp, 1, 1);
        press(*widget, 's', 1, 1);
        EXPECT_FALSE(widget->keyed);
    }
}

TEST_F(ValueWidgetTest, WithoutAValueTakesNoEvents) {
    UnboundWidgets widgets;
    for (UI_Object* widget : widgets.all) {
        widget->SetMaster(&master);
        for (int kind = 1; kind <= 12; ++kind) {
            EXPECT_FALSE(send(*widget, static_cast<UI_EventType>(kind), 60, 10, 'S'));
        }
        EXPECT_EQ(master.captured, nullptr);
    }
}

TEST_F(ValueWidgetTest, BringsAKeyOfTheValueUnderThePointerIntoTheEngine) {
    UI_ValueControl* size = addControl("Size", 25);
    UI_ValueControl* other = addControl("Size2", 55);
    engine.update(2.0f);
    node.size = 4;
    key('S', 300, 130);
    EXPECT_TRUE(size->keyed);
    EXPECT_FALSE(other->keyed);
    ASSERT_TRUE(engine.isAnimated("A", "Size"));
    ASSERT_EQ(engine.track("A").keys().size(), 1u);
    EXPECT_EQ(engine.track("A").keys()[0].value, 4);
    EXPECT_EQ(engine.track("A").keys()[0].time, 2);

    // A right press elsewhere in time brings the default there.
    engine.update(5.0f);
    message(kMessageRightUp, 0, 300, 130);
    ASSERT_EQ(engine.track("A").keys().size(), 2u);
    EXPECT_EQ(engine.track("A").keys()[1].value, 1.5f);
    engine.update(2.0f);
    EXPECT_EQ(node.size, 4);
    engine.update(5.0f);
    EXPECT_EQ(node.size, 1.5f);

    key('S', 300, 130);
    EXPECT_FALSE(engine.isAnimated("A", "Size"));
}

TEST_F(ValueWidgetTest, ADragOfAnAnimatedColorOutlivesTheNextFrame) {
    auto* selector = new UI_ColorSelector(ValueOf<ValueVec4>(engine, node, "Tint"), 25);
    panel.AddChild(selector);
    key('S', 120, 150);
    selector->SyncKeyed();
    ASSERT_TRUE(selector->keyed);
    const int track = 105 + 100 + 100 + 93;  // left end of the tracks on the screen
    message(kMessageMouseMove, 0, track + 10, 140);
    message(kMessageLeftDown, 0, track + 10, 140);
    message(kMessageMouseMove, 0, track + 182, 140);
    engine.update(0.0f);
    EXPECT_EQ(node.tint[0], 1);
    message(kMessageLeftUp, 0, track + 182, 140);
    engine.update(0.0f);
    EXPECT_EQ(node.tint[0], 1);
    EXPECT_EQ(node.tint[1], 0.2f);
}

TEST_F(ValueWidgetTest, GivesTheCaptureBackWhenThePanelGoes) {
    auto other = std::make_unique<UI_Panel>(0, 0, 50, 50, false);
    auto* box = new UI_TextBox(ValueOf<ValueString>(engine, node, "Text"), 5, 5, 40);
    master.AddTopLevel(other.get());
    other->AddChild(box);
    message(kMessageLeftUp, 0, 20, 20);
    ASSERT_EQ(master.captured, box);
    other.reset();
    EXPECT_EQ(master.captured, nullptr);
    message(kMessageCharacter, 'a', 20, 20);
}

TEST_F(ValueWidgetTest, HoldsItsLimitsInAnyOrderOfGestures) {
    const FileDialogHandler before =
        SetFileDialogHandler([](std::string_view) { return std::string(1500, 'f'); });
    const DebugCapture silent;
    addControl("Size", 25);
    addControl("Frozen", 55);
    auto* box = new UI_TextBox(ValueOf<ValueString>(engine, node, "Text"), 5, 85, 380);
    auto* selection = new UI_Selection(ValueOf<ValueInt>(engine, node, "Mode"), 115, 380);
    panel.AddChild(box);
    panel.AddChild(selection);
    panel.AddChild(new UI_ColorSelector(ValueOf<ValueVec4>(engine, node, "Tint"), 145));
    panel.AddChild(new UI_Direction(ValueOf<ValueVec2>(engine, node, "Place"), 275));
    panel.AddChild(new UI_Position(ValueOf<ValueVec2>(engine, node, "Place"), 475));
    panel.AddChild(new UI_Checkbox(ValueOf<ValueBool>(engine, node, "On"), 515));
    constexpr std::uint32_t kMessages[] = {
        kMessageMouseMove, kMessageLeftDown, kMessageLeftUp,     kMessageLeftDoubleClick,
        kMessageRightDown, kMessageRightUp,  kMessageMiddleDown, kMessageMiddleUp,
        kMessageWheel,     kMessageKeyDown,  kMessageKeyUp,      kMessageCharacter,
        kMessageMouseMove, kMessageMouseMove};
    constexpr int kKeys[] = {8, 13, 17, 27, 'S', 's', 'P', '7', '.', '-', 'a', -1, 70000};
    std::mt19937 random(7);
    const auto below = [&random](int count) {
        return static_cast<int>(random() % static_cast<unsigned>(count));
    };
    int captures = 0;
    for (int i = 0; i < 60000; ++i) {
        const std::uint32_t number = kMessages[below(std::size(kMessages))];
        message(number, kKeys[below(std::size(kKeys))], 90 + below(420), 90 + below(700));
        captures += master.captured != nullptr ? 1 : 0;
        if (i % 100 == 0) engine.update(static_cast<float>(below(9)));
        ASSERT_LE(box->buffer.size(), UI_TextBox::kMostBytes);
        ASSERT_TRUE(node.mode >= 0 && node.mode < 3);
        ASSERT_TRUE(node.size >= -1 && node.size <= 5) << node.size;
    }
    EXPECT_GT(captures, 1000);
    SetFileDialogHandler(before);
}
