// What tests of value widgets share: gestures played on a widget as the hub would play them, a
// handler and a listener that write down what they are told, and a comparison of what a widget
// draws with the same drawn operation by operation.
#pragma once

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

#include "core/value_object.h"
#include "keyframe_recorder.h"
#include "platform/window.h"
#include "ui_fixture.h"

// Counts edits and notes commands.
class WidgetListener : public UI_Evt_ValueChanged {
  public:
    void OnValueEdited(UI_Object* sender) override { edited.push_back(sender); }
    void OnCommand(UI_Object* sender, int argument) override {
        commands.emplace_back(sender, argument);
    }
    std::vector<UI_Object*> edited;
    std::vector<std::pair<UI_Object*, int>> commands;
};

// The parameter "Size" of the node "n7", animated through `handler`.
template <typename Value>
Value BoundValue(decltype(Value::data) data, KeyframeRecorder& handler) {
    Value value("Size", "n7");
    value.data = data;
    value.handler = &handler;
    return value;
}

// Gestures. The widget under test is `target`; whatever has the capture gets the event instead.
class WidgetTest : public testing::Test {
  protected:
    bool send(UI_Object& target, UI_EventType type, int x, int y, int value = 0) {
        UI_Event event = {type, value, x, y, false, false};
        UI_Object& receiver = master.captured == nullptr ? target : *master.captured;
        return receiver.HandleEvent(&event);
    }
    bool press(UI_Object& target, int key, int x = 0, int y = 0) {
        return send(target, UI_EventType::KeyDown, x, y, key);
    }
    bool release(UI_Object& target, int key, int x = 0, int y = 0) {
        return send(target, UI_EventType::KeyUp, x, y, key);
    }
    void type(UI_Object& target, const std::string& characters) {
        for (const char c : characters) {
            send(target, UI_EventType::CharInput, 0, 0, static_cast<unsigned char>(c));
        }
    }

    KeyframeRecorder handler;
    WidgetListener listener;
    UI_Master master;
};

class WidgetDrawTest : public UiTest {
  protected:
    static constexpr Vec4 kBackground = {0.25f, 0.5f, 0.125f, 1};

    void SetUp() override {
        UiTest::SetUp();
        useSize(480, 260);
    }

    // The operations are tested on their own: with the same numbers they give the same pixels.
    void expectDraws(UI_Object& widget, const std::function<void()>& operations) {
        begin(kBackground);
        widget.Draw();
        const Picture drawn = end();
        begin(kBackground);
        operations();
        const Picture expected = end();
        EXPECT_GT(Difference(expected.at(widget.x + 1, widget.y + 1), kBackground), 0.01)
            << "the comparison must say something";
        ExpectSamePicture(drawn, expected, 0);
    }

    Vec4 slot(int index) const { return master.colorSlots[index]; }
    void fill(const Vec4& color, int x, int y, int w, int h) {
        master.SetColor(color);
        master.FillRect(x, y, w, h);
    }
    void line(const Vec4& color, float lineWidth, int x1, int y1, int x2, int y2) {
        master.SetColor(color);
        master.DrawThickLine(lineWidth, x1, y1, x2, y2);
    }
    void outline(const Vec4& color, int x, int y, int w, int h) {
        master.SetColor(color);
        master.OutlineRect(x, y, w, h);
    }
    void text(int x, int y, const std::string& content) {
        master.DrawText(x, y, 12, slot(0), content);
    }

    KeyframeRecorder handler;
};
