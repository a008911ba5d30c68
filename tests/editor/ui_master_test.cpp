#include "editor/ui_master.h"

#include <gmock/gmock.h>

#include "platform/window.h"
#include "ui_fixture.h"

namespace {

using testing::ElementsAre;

// Notes what it is told and asked to draw.
class Recorder : public UI_Object {
  public:
    Recorder(std::vector<std::string>& log, std::string who, int left, int top)
        : log_(log), who_(std::move(who)) {
        SetPosition(left, top);
        SetSize(20, 10);
    }
    void Draw() override { log_.push_back("draw " + who_); }
    bool HandleEvent(UI_Event* event) override {
        log_.push_back(who_);
        last = *event;
        return consumes;
    }
    using UI_Object::releaseCapture;
    using UI_Object::takeCapture;

    UI_Event last;
    bool consumes = false;

  private:
    std::vector<std::string>& log_;
    std::string who_;
};

class UiMasterTest : public testing::Test {
  protected:
    UiMasterTest() {
        master.AddTopLevel(&a);
        master.AddTopLevel(&b);
        master.AddTopLevel(&c);
    }
    void send(std::uint32_t message, int value, int x = 0, int y = 0) {
        log.clear();
        WindowMessage m;
        m.message = message;
        m.value = value;
        m.x = x;
        m.y = y;
        master.Dispatch(m);
    }

    std::vector<std::string> log;
    UI_Master master;
    Recorder a{log, "a", 0, 0};
    Recorder b{log, "b", 10, 0};
    Recorder c{log, "c", 100, 100};
};

class UiDrawAllTest : public UiTest {};

}  // namespace

TEST_F(UiMasterTest, TranslatesEveryMessage) {
    const std::pair<std::uint32_t, UI_EventType> table[] = {
        {512, UI_EventType::MouseMove}, {513, UI_EventType::LeftDown},
        {514, UI_EventType::LeftUp},    {519, UI_EventType::MiddleDown},
        {520, UI_EventType::MiddleUp},  {516, UI_EventType::RightDown},
        {517, UI_EventType::RightUp},   {515, UI_EventType::LeftDoubleClick},
        {522, UI_EventType::Wheel},     {256, UI_EventType::KeyDown},
        {257, UI_EventType::KeyUp},     {258, UI_EventType::CharInput}};
    int number = 1;
    for (const UI_EventType type :
         {UI_EventType::MouseMove, UI_EventType::LeftDown, UI_EventType::LeftUp,
          UI_EventType::MiddleDown, UI_EventType::MiddleUp, UI_EventType::RightDown,
          UI_EventType::RightUp, UI_EventType::LeftDoubleClick, UI_EventType::Wheel,
          UI_EventType::KeyDown, UI_EventType::KeyUp, UI_EventType::CharInput}) {
        EXPECT_EQ(static_cast<int>(type), number++);
    }
    for (const auto& [message, type] : table) {
        send(message, 77, 5, 5);
        ASSERT_FALSE(log.empty()) << message;
        EXPECT_EQ(a.last.type, type) << message;
        EXPECT_EQ(a.last.value, 77);
    }
}

TEST_F(UiMasterTest, IgnoresOtherMessages) {
    send(512, 0, 5, 5);
    for (const std::uint32_t message : {0u, 16u, 518u, 521u, 523u, 259u}) {
        send(message, 1, 100, 100);
        EXPECT_TRUE(log.empty()) << message;
    }
    EXPECT_EQ(master.mouseX, 5);
}

TEST_F(UiMasterTest, SendsMouseEventsToWidgetsUnderThePointerInOrder) {
    send(513, 0, 15, 5);
    EXPECT_THAT(log, ElementsAre("a", "b"));
    a.consumes = true;
    send(513, 0, 15, 5);
    EXPECT_THAT(log, ElementsAre("a"));
    send(513, 0, 50, 50);
    EXPECT_TRUE(log.empty());
}

TEST_F(UiMasterTest, SendsKeysToAllWidgetsUntilOneConsumes) {
    send(512, 0, 500, 500);
    send(256, 65);
    EXPECT_THAT(log, ElementsAre("a", "b", "c"));
    b.consumes = true;
    send(257, 65);
    EXPECT_THAT(log, ElementsAre("a", "b"));
}

TEST_F(UiMasterTest, SendsCharactersWhereThePointerIs) {
    send(512, 0, 105, 105);
    send(258, 'x');
    EXPECT_THAT(log, ElementsAre("c"));
    EXPECT_EQ(c.last.value, 'x');
}

TEST_F(UiMasterTest, TakesTheTurnOfTheWheelAsASigned16BitWord) {
    send(512, 0, 105, 103);
    send(522, 0x7FFF8001, 5, 5);
    EXPECT_EQ(c.last.value, -32767);
}

TEST_F(UiMasterTest, GivesTheWheelTheLastMousePosition) {
    send(512, 0, 105, 103);
    send(522, -120, 5, 5);
    EXPECT_THAT(log, ElementsAre("c"));
    EXPECT_EQ(c.last.value, -120);
    EXPECT_EQ(c.last.x, 105);
    EXPECT_EQ(c.last.y, 103);
}

TEST_F(UiMasterTest, KeepsShiftUntilCtrlComesUp) {
    send(256, kKeyShift, 0, 0);
    EXPECT_TRUE(a.last.shift);
    EXPECT_FALSE(a.last.ctrl);
    send(257, kKeyShift);
    EXPECT_TRUE(a.last.shift) << "shift coming up clears nothing";
    send(256, kKeyControl);
    EXPECT_TRUE(a.last.ctrl && a.last.shift);
    send(257, kKeyControl);
    EXPECT_FALSE(a.last.ctrl || a.last.shift);
}

TEST_F(UiMasterTest, AsksTheWindowForTheShiftKeyWhereThereIsOne) {
    EXPECT_FALSE(master.shiftKeyDown());
    master.shiftHeld = true;
    EXPECT_TRUE(master.shiftKeyDown());
    master.readShiftKey = [] { return false; };
    EXPECT_FALSE(master.shiftKeyDown());
}

TEST_F(UiMasterTest, SendsEverythingToTheWidgetWithCapture) {
    EXPECT_TRUE(c.takeCapture(true));
    EXPECT_FALSE(a.takeCapture(true)) << "taken already";
    for (const std::uint32_t message : {512u, 256u, 258u, 522u}) {
        send(message, 1, 15, 5);
        EXPECT_THAT(log, ElementsAre("c")) << message;
    }
    a.releaseCapture();
    EXPECT_EQ(master.captured, &c) << "only its holder gives it back";
    c.releaseCapture();
    EXPECT_EQ(master.captured, nullptr);
    EXPECT_FALSE(master.capturedOnTop);
}

TEST_F(UiMasterTest, ForgetsAWidgetThatGoes) {
    auto widget = std::make_unique<Recorder>(log, "short-lived", 0, 0);
    master.AddTopLevel(widget.get());
    widget->takeCapture(true);
    widget.reset();
    EXPECT_EQ(master.captured, nullptr);
    send(513, 0, 5, 5);
    EXPECT_THAT(log, ElementsAre("a"));
}

TEST_F(UiMasterTest, CountsTheRightAndBottomEdgeAsInside) {
    EXPECT_TRUE(c.Contains(100, 100));
    EXPECT_TRUE(c.Contains(120, 110));
    EXPECT_FALSE(c.Contains(121, 105));
    EXPECT_FALSE(c.Contains(105, 111));
    EXPECT_FALSE(c.Contains(99, 105));
}

TEST_F(UiMasterTest, ShowsTheIdWhereThereIsNoName) {
    master.displayNames["n1"] = "Glow";
    master.displayNames["n2"] = "";
    EXPECT_EQ(master.DisplayNameOf("n1"), "Glow");
    EXPECT_EQ(master.DisplayNameOf("n2"), "n2");
    EXPECT_EQ(master.DisplayNameOf("n3"), "n3");
}

TEST_F(UiMasterTest, WidgetsAreThirtyHighUnlessTheySayOtherwise) {
    EXPECT_EQ(a.GetHeight(), 30);
    EXPECT_EQ(a.master, &master);
}

TEST_F(UiDrawAllTest, DrawsTheCapturedWidgetLastAndOnlyOnTop) {
    std::vector<std::string> log;
    Recorder a(log, "a", 0, 0), b(log, "b", 0, 0), c(log, "c", 0, 0);
    for (Recorder* widget : {&a, &b, &c}) master.AddTopLevel(widget);
    begin();
    master.DrawAll();
    EXPECT_THAT(log, ElementsAre("draw a", "draw b", "draw c"));
    log.clear();
    a.takeCapture(true);
    master.DrawAll();
    EXPECT_THAT(log, ElementsAre("draw b", "draw c", "draw a"));
    log.clear();
    a.releaseCapture();
    b.takeCapture(false);
    master.DrawAll();
    EXPECT_THAT(log, ElementsAre("draw a", "draw c"));
    end();
    for (Recorder* widget : {&a, &b, &c}) master.Forget(widget);
}
