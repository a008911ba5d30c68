#include "editor/ui_panel.h"

#include <gmock/gmock.h>

#include "editor/ui_image_panel.h"
#include "ui_fixture.h"

namespace {

using testing::ElementsAre;

constexpr Vec4 kBackground = {0.25f, 0.5f, 0.125f, 1};
constexpr Vec4 kGreen = {0, 1, 0, 1};

class Child : public UI_Object {
  public:
    Child(std::vector<std::string>& log, std::string who, int left, int top, int w, int h)
        : log_(&log), who_(std::move(who)) {
        SetPosition(left, top);
        SetSize(w, h);
    }
    ~Child() override { log_->push_back("gone " + who_); }
    void Draw() override {
        master->SetColor(kGreen);
        master->FillRect(x, y, width, height);
    }
    bool HandleEvent(UI_Event* /*event*/) override {
        log_->push_back(who_);
        return consumes;
    }
    bool consumes = false;

  private:
    std::vector<std::string>* log_;
    std::string who_;
};

class OwnEvents : public UI_Panel {
  public:
    using UI_Panel::UI_Panel;
    bool HandleOwnEvent(UI_Event* /*event*/) override {
        ++ownEvents;
        return true;
    }
    int ownEvents = 0;
};

class Listener : public UI_Evt_ValueChanged {
  public:
    void OnValueEdited(UI_Object* /*sender*/) override {}
    void OnCommand(UI_Object* sender, int argument) override {
        commands.emplace_back(sender, argument);
    }
    std::vector<std::pair<UI_Object*, int>> commands;
};

UI_Event At(UI_EventType type, int x, int y, int value = 0) {
    return {type, value, x, y, false, false};
}

class UiPanelDrawTest : public UiTest {
  protected:
    // The panel's scissor rectangle is laid out for a screen 1080 high.
    void SetUp() override {
        UiTest::SetUp();
        useSize(160, 1080);
    }
    // Columns x - 1 to x + w - 1 and rows y + 2 to y + h: what a panel lets through.
    static void clipToPanel(Picture& picture, int x, int y, int w, int h) {
        picture.clip = [=](int px, int py) {
            return px >= x - 1 && px < x + w && py >= y + 2 && py <= y + h;
        };
    }
    Picture drawn(UI_Object& widget) {
        begin(kBackground);
        widget.Draw();
        return end();
    }
    Vec4 slot(int index) const { return master.colorSlots[index]; }
    // Blends text as the text renderer draws it; its own tests compare that with FreeType.
    Picture textAlone(int x, int y, const Vec4& color, const std::string& text) {
        begin();
        master.DrawText(x, y, 12, {1, 1, 1, 1}, text);
        glBlendFunc(GL_ONE, GL_ZERO);
        Picture picture = end();
        for (Vec4& pixel : picture.pixels) pixel = {color.r, color.g, color.b, pixel.a};
        return picture;
    }
    static void blendAll(Picture& picture, const Picture& over) {
        for (int y = 0; y < picture.height; ++y) {
            for (int x = 0; x < picture.width; ++x) picture.blend(x, y, over.at(x, y));
        }
    }
};

class UiPanelTest : public testing::Test {
  protected:
    UiPanelTest() { master.AddTopLevel(&panel); }
    std::vector<std::string> log;
    UI_Master master;
    Listener listener;
    OwnEvents panel{100, 50, 200, 120, false};
};

}  // namespace

TEST_F(UiPanelDrawTest, WithoutATitleIsAFilledFrame) {
    UI_Panel panel(20, 500, 100, 80, false);
    master.AddTopLevel(&panel);
    Picture expected = blank(kBackground);
    clipToPanel(expected, 20, 500, 100, 80);
    expected.fill(20, 500, 100, 80, slot(1));
    expected.outline(20, 500, 100, 80, slot(2));
    ExpectSamePicture(drawn(panel), expected);
}

TEST_F(UiPanelDrawTest, WithATitleHasABarAPlateAndItsName) {
    for (const bool closable : {false, true}) {
        UI_Panel panel(20, 300, 120, 90, closable);
        panel.title = "id";
        master.displayNames["id"] = "Alias";
        master.AddTopLevel(&panel);
        const int plate = master.MeasureText(12, "Alias") + 4;
        const Picture title = textAlone(32, 312, {0, 0, 0, 1}, "Alias");
        const Picture cross = textAlone(126, 312, {0, 0, 0, 1}, "X");
        Picture expected = blank(kBackground);
        clipToPanel(expected, 20, 300, 120, 90);
        expected.fill(20, 307, 120, 83, slot(1));
        expected.fill(20, 300, 120, 14, slot(1));
        expected.outline(20, 307, 120, 83, slot(2));
        expected.fill(30, 300, plate, 14, slot(9));
        blendAll(expected, title);
        if (closable) {
            expected.fill(125, 300, 10, 14, slot(9));
            blendAll(expected, cross);
        }
        ExpectSamePicture(drawn(panel), expected);
    }
}

TEST_F(UiPanelDrawTest, CutsItsChildrenAndOutlinesAKeyedPanelUncut) {
    std::vector<std::string> log;
    UI_Panel panel(20, 500, 100, 80, false);
    panel.keyed = true;
    master.AddTopLevel(&panel);
    panel.AddChild(new Child(log, "large", -15, -10, 130, 60));
    Picture expected = blank(kBackground);
    clipToPanel(expected, 20, 500, 100, 80);
    expected.fill(20, 500, 100, 80, slot(1));
    expected.fill(5, 490, 130, 60, kGreen);
    expected.outline(20, 500, 100, 80, slot(2));
    expected.clip = nullptr;
    expected.outline(20, 500, 100, 80, slot(9));
    ExpectSamePicture(drawn(panel), expected);
}

TEST_F(UiPanelDrawTest, InsideAnotherPanelHasAScissorRectangleOfItsOwn) {
    UI_Panel outer(20, 500, 60, 80, false);
    auto* inner = new UI_Panel(40, 20, 90, 30, false);
    master.AddTopLevel(&outer);
    outer.AddChild(inner);
    Picture expected = blank(kBackground);
    clipToPanel(expected, 20, 500, 60, 80);
    expected.fill(20, 500, 60, 80, slot(1));
    clipToPanel(expected, 60, 520, 90, 30);
    expected.fill(60, 520, 90, 30, slot(1));
    expected.outline(60, 520, 90, 30, slot(2));
    clipToPanel(expected, 20, 500, 60, 80);
    expected.outline(20, 500, 60, 80, slot(2));
    ExpectSamePicture(drawn(outer), expected);
}

TEST_F(UiPanelDrawTest, KeepsWithinTheScissorLimits) {
    UI_Panel panel(20, 500, 100, 80, false);
    master.AddTopLevel(&panel);
    master.scissorLimits[0] = 40;
    master.scissorLimits[1] = 510;
    master.scissorLimits[2] = 50;
    master.scissorLimits[3] = 30;
    Picture expected = blank(kBackground);
    expected.clip = [](int px, int py) {
        return px >= 40 && px < 90 && 1079 - py >= 510 && 1079 - py < 540;
    };
    expected.fill(20, 500, 100, 80, slot(1));
    ExpectSamePicture(drawn(panel), expected);
}

TEST_F(UiPanelDrawTest, HiddenDrawsNothing) {
    UI_Panel panel(20, 500, 100, 80, false);
    panel.hidden = true;
    panel.keyed = true;
    master.AddTopLevel(&panel);
    ExpectSamePicture(drawn(panel), blank(kBackground), 0);
}

TEST_F(UiPanelDrawTest, DrawsFiveHundredWidgetsInFewCalls) {
    std::vector<std::string> log;
    UI_Panel panel(0, 0, 160, 1080, true);
    panel.title = "many";
    master.AddTopLevel(&panel);
    class Row : public Child {
      public:
        using Child::Child;
        void Draw() override {
            Child::Draw();
            master->OutlineRect(x, y, width, height);
            master->DrawText(x + 3, y + 14, 12, kBackground, "Parameter 0.25");
        }
    };
    for (int i = 0; i < 500; ++i) panel.AddChild(new Row(log, "row", 5, 20 + 2 * i, 140, 18));
    begin();
    panel.Draw();
    end();
    EXPECT_LE(master.drawCalls(), 20);
    EXPECT_GE(master.drawCalls(), 1);
}

TEST_F(UiPanelTest, ReportsAReleaseInTheCloseBoxEvenWithoutOne) {
    panel.listener = &listener;
    for (const auto& [x, y] : {std::pair{285, 50}, {295, 64}, {290, 57}}) {
        UI_Event event = At(UI_EventType::LeftUp, x, y);
        EXPECT_TRUE(panel.HandleEvent(&event));
    }
    EXPECT_EQ(listener.commands.size(), 3u);
    EXPECT_EQ(listener.commands[0], (std::pair<UI_Object*, int>(&panel, 0)));
    for (const auto& [x, y] : {std::pair{284, 57}, {296, 57}, {290, 65}, {290, 49}}) {
        UI_Event event = At(UI_EventType::LeftUp, x, y);
        panel.HandleEvent(&event);
    }
    UI_Event press = At(UI_EventType::LeftDown, 290, 57);
    panel.HandleEvent(&press);
    EXPECT_EQ(listener.commands.size(), 3u);
}

TEST_F(UiPanelTest, WithoutAListenerTheCloseBoxIsNothing) {
    UI_Event event = At(UI_EventType::LeftUp, 290, 57);
    panel.HandleEvent(&event);
    EXPECT_EQ(panel.ownEvents, 1);
}

TEST_F(UiPanelTest, GivesAnEventToTheFirstChildUnderThePointerOnly) {
    auto* first = new Child(log, "first", 10, 10, 50, 20);
    auto* second = new Child(log, "second", 20, 10, 50, 20);
    panel.AddChild(first);
    panel.AddChild(second);
    second->consumes = true;
    UI_Event event = At(UI_EventType::LeftDown, 135, 65);
    EXPECT_TRUE(panel.HandleEvent(&event)) << "the panel's own handling consumes";
    EXPECT_THAT(log, ElementsAre("first"));
    EXPECT_EQ(panel.ownEvents, 1);
    first->consumes = true;
    EXPECT_TRUE(panel.HandleEvent(&event));
    EXPECT_EQ(panel.ownEvents, 1);
}

TEST_F(UiPanelTest, GivesEveryEventToItsImagePanels) {
    auto* image = new UI_ImagePanel("view", 10, 10, 50, 50, false);
    panel.AddChild(image);
    UI_Event move = At(UI_EventType::MouseMove, 250, 150);
    panel.HandleEvent(&move);
    EXPECT_EQ(image->lastMouseX, 250);
    UI_Event wheel = At(UI_EventType::Wheel, 250, 150, 120);
    panel.HandleEvent(&wheel);
    EXPECT_FLOAT_EQ(image->view[0], 1.1f);
    UI_Event inside = At(UI_EventType::Wheel, 120, 70, 120);
    panel.HandleEvent(&inside);
    EXPECT_FLOAT_EQ(image->view[0], 1.1f * 1.1f * 1.1f) << "once as child, once as image panel";
    EXPECT_EQ(panel.ownEvents, 3);
}

TEST_F(UiPanelTest, HiddenTakesNoEvents) {
    panel.hidden = true;
    panel.listener = &listener;
    panel.AddChild(new Child(log, "child", 0, 0, 200, 120));
    UI_Event event = At(UI_EventType::LeftUp, 290, 57);
    EXPECT_FALSE(panel.HandleEvent(&event));
    EXPECT_TRUE(listener.commands.empty());
    EXPECT_TRUE(log.empty());
}

TEST_F(UiPanelTest, PlacesChildrenRelativeToItselfAndTakesThemAlong) {
    auto* child = new Child(log, "child", 10, 15, 5, 5);
    panel.AddChild(child);
    EXPECT_EQ(child->x, 110);
    EXPECT_EQ(child->y, 65);
    EXPECT_EQ(child->master, &master);
    panel.SetPosition(30, 40);
    EXPECT_EQ(child->x, 40);
    EXPECT_EQ(child->y, 55);
    EXPECT_EQ(panel.x, 30);
    EXPECT_EQ(panel.y, 40);
}

TEST_F(UiPanelTest, HandsARemovedChildBackAlive) {
    auto* child = new Child(log, "child", 10, 15, 5, 5);
    Child stranger(log, "stranger", 0, 0, 1, 1);
    panel.AddChild(nullptr);
    panel.AddChild(child);
    panel.AddChild(child);
    EXPECT_EQ(panel.children.size(), 1u);
    EXPECT_EQ(panel.RemoveChild(&stranger), nullptr);
    const std::unique_ptr<UI_Object> removed = panel.RemoveChild(child);
    EXPECT_EQ(removed.get(), child);
    EXPECT_TRUE(panel.children.empty());
    EXPECT_TRUE(log.empty());
}

TEST_F(UiPanelTest, DeletesItsChildrenWithItself) {
    {
        UI_Panel inner(0, 0, 10, 10, false);
        inner.AddChild(new Child(log, "child", 0, 0, 1, 1));
    }
    EXPECT_THAT(log, ElementsAre("gone child"));
}

TEST_F(UiPanelTest, HandsItsMasterToChildrenThatWereAddedBefore) {
    UI_Panel late(0, 0, 10, 10, false);
    auto* child = new Child(log, "child", 0, 0, 1, 1);
    late.AddChild(child);
    EXPECT_EQ(child->master, nullptr);
    master.AddTopLevel(&late);
    EXPECT_EQ(child->master, &master);
}
