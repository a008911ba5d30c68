// The line at the foot of the authoring screen: what the gestures under the pointer do, and those
// that are under way.
#include "editor/ui_hints.h"

#include "authoring_fixture.h"
#include "editor/ui_color_selector.h"
#include "editor/ui_slider.h"

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

class UiHintTest : public AuthoringTest {
  protected:
    std::string hintAt(int x, int y) {
        send(kMessageMouseMove, x, y);
        return ui.HintOfMoment();
    }
    std::string hintAt(const UI_Object& widget) {
        return hintAt(widget.x + widget.width / 2, widget.y + widget.height / 2);
    }
    // What the canvas says where nothing is on it.
    std::string canvasHint() {
        return hintAt(ui.nodeCanvas->x + 900, ui.nodeCanvas->y + ui.nodeCanvas->height - 8);
    }
    template <typename Widget>
    Widget* firstOn(const UI_Panel& panel) {
        for (const auto& child : panel.children) {
            if (auto* widget = dynamic_cast<Widget*>(child.get())) return widget;
        }
        return nullptr;
    }
};

}  // namespace

TEST_F(UiHintTest, TellsOfTheWidgetUnderThePointer) {
    makeScene();
    edit();
    ui.OpenPanel("a");
    ui.DrawFrame();
    EXPECT_EQ(hintAt(*ui.saveButton), ui.saveButton->tooltip);
    EXPECT_THAT(hintAt(*ui.pathBox1), HasSubstr("choose a file"));
    EXPECT_THAT(hintAt(*ui.outputSelector), HasSubstr("drag to a row"));
    EXPECT_THAT(hintAt(*ui.imagePanel), HasSubstr("Wheel: zoom"));
    const auto* color = firstOn<UI_ColorSelector>(*ui.openPanels.at("a"));
    ASSERT_NE(color, nullptr);
    EXPECT_THAT(hintAt(*color), HasSubstr("four sliders"));
    EXPECT_THAT(canvasHint(), Not(IsEmpty()));
    ui.SetLayoutMode(kLayoutKeyTimeline);
    EXPECT_THAT(hintAt(ui.keyTimeline->x + 800, ui.keyTimeline->y + 200), HasSubstr("ruler"));
}

TEST_F(UiHintTest, TellsOfTheWidgetThatIsSeenNotOfAHiddenOneInItsPlace) {
    makeScene();
    edit();
    ui.SetLayoutMode(kLayoutNeither);
    const int x = ui.imagePanel->x + ui.imagePanel->width / 2, y = ui.nodeCanvas->y + 100;
    ASSERT_TRUE(ui.nodeCanvas->Contains(x, y));
    EXPECT_THAT(hintAt(x, y), HasSubstr("Wheel: zoom"));
}

TEST_F(UiHintTest, StaysWithASliderWhileItIsDragged) {
    makeScene();
    edit();
    ui.OpenPanel("a");
    ui.DrawFrame();
    const auto* color = firstOn<UI_ColorSelector>(*ui.openPanels.at("a"));
    ASSERT_NE(color, nullptr);
    send(kMessageLeftDown, color->x + 270, color->y + 20);
    ASSERT_NE(dynamic_cast<const UI_Slider*>(ui.master.captured), nullptr);
    EXPECT_THAT(hintAt(700, 900), HasSubstr("sliders (Ctrl: finer)"));
    send(kMessageLeftUp, 700, 900);
}

// Wherever the pointer is.
TEST_F(UiHintTest, TellsOfTheListOfTypesAndOfANameWhileTheyAreOpen) {
    makeScene();
    edit();
    const int x = ui.nodeCanvas->x + 900, y = ui.nodeCanvas->y + 100;
    send(kMessageMouseMove, x, y);
    send(kMessageKeyDown, x, y, kKeyTab);
    EXPECT_THAT(hintAt(*ui.imagePanel), HasSubstr("Return or a click: make the node"));
    send(kMessageKeyUp, 0, 0, kKeyTab);
    send(kMessageKeyDown, 0, 0, kKeyEscape);
    EXPECT_THAT(hintAt(*ui.imagePanel), HasSubstr("Wheel: zoom"));

    ui.nodeCanvas->select({"b"});
    send(kMessageMouseMove, x, y);
    send(kMessageKeyDown, x, y, kKeyF2);
    ASSERT_NE(ui.master.captured, nullptr);
    EXPECT_THAT(hintAt(*ui.imagePanel), HasSubstr("Type the name"));
    send(kMessageMouseMove, x, y);
    send(kMessageKeyDown, x, y, kKeyEscape);
    EXPECT_THAT(ui.HintOfMoment(), Not(HasSubstr("name (none")));
    EXPECT_THAT(ui.HintOfMoment(), Not(IsEmpty()));
}

TEST_F(UiHintTest, IsTheCanvassWhileABoxIsDragged) {
    makeScene();
    edit();
    const std::string ofPlayer = "F1: all keys";
    const UI_Node& box = *ui.nodeCanvas->boxOf("b");
    const CanvasView& view = ui.nodeCanvas->view;
    send(kMessageLeftDown, view.screenX(box.x + 80), view.screenY(box.y + 10));
    send(kMessageMouseMove, view.screenX(box.x + 80) + 20, view.screenY(box.y + 10));
    ASSERT_NE(ui.master.captured, nullptr);
    EXPECT_TRUE(IsOfNodeCanvas(*ui.master.captured));
    EXPECT_THAT(ui.HintOfMoment(), Not(HasSubstr(ofPlayer)));
    send(kMessageLeftUp, view.screenX(box.x + 80) + 20, view.screenY(box.y + 10));
}
