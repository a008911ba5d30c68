#include "editor/ui_properties_column.h"

#include <algorithm>

#include "editor/ui_clip.h"
#include "platform/window.h"

namespace {

constexpr int kMargin = 5, kGap = 8;  // pixels
constexpr int kBarWidth = 8;          // pixels
constexpr int kPixelsAWheelNotch = 60;
constexpr Vec4 kQuiet = {0.5f, 0.5f, 0.5f, 1};

}  // namespace

UI_PropertiesColumn::UI_PropertiesColumn(int columnX, int columnY, int columnWidth,
                                         int columnHeight)
    : UI_Panel(columnX, columnY, columnWidth, columnHeight, false) {}

int UI_PropertiesColumn::contentHeight() const {
    int total = kMargin;
    for (const auto& child : children) total += child->height + kGap;
    return total;
}

void UI_PropertiesColumn::clampScroll() {
    scrolled_ = std::clamp(scrolled_, 0, std::max(0, contentHeight() - height));
}

void UI_PropertiesColumn::Arrange() {
    clampScroll();
    int top = y + kMargin - scrolled_;
    for (const auto& child : children) {
        if (child->x != x + kMargin || child->y != top) child->SetPosition(x + kMargin, top);
        top += child->height + kGap;
    }
}

void UI_PropertiesColumn::ShowPanel(const UI_Panel* panel) {
    int top = kMargin;
    for (const auto& child : children) {
        if (child.get() == panel) {
            scrolled_ = std::max(scrolled_, top + panel->height + kGap - height);
            scrolled_ = std::min(scrolled_, top - kMargin);
            break;
        }
        top += child->height + kGap;
    }
    Arrange();
}

// What is scrolled out above or below is not drawn. A panel that is partly above its column draws
// there too: what lies above and below is drawn after the column, over it.
void UI_PropertiesColumn::Draw() {
    if (hidden) return;
    Arrange();
    master->SetColor(master->colorSlots[kColorPanel]);
    master->FillRect(x, y, width, height);
    if (children.empty()) drawEmpty();
    for (std::size_t i = 0; i < children.size(); ++i) {
        const UI_Object& child = *children[i];
        if (child.y < y + height && child.y + child.height > y) children[i]->Draw();
    }
    drawBar();
    master->SetColor(master->colorSlots[kColorWidget]);
    master->OutlineRect(x, y, width, height);
}

void UI_PropertiesColumn::drawEmpty() {
    constexpr const char* kLines[] = {"Properties", "A right click on a node's box opens",
                                      "its parameters here."};
    int baseline = y + height / 2 - 30;
    for (const char* line : kLines) {
        const int lineWidth = master->MeasureText(12, line);
        master->DrawText(x + (width - lineWidth) / 2, baseline, 12, kQuiet, line);
        baseline += 20;
    }
}

void UI_PropertiesColumn::drawBar() {
    const int total = contentHeight();
    if (total <= height) return;
    const int length = std::max(24, height * height / total);
    const int top = y + (height - length) * scrolled_ / (total - height);
    master->SetColor(master->colorSlots[hasCapture() ? kColorKeyed : kColorPanelBorder]);
    master->FillRect(x + width - kBarWidth - 2, top, kBarWidth, length);
}

bool UI_PropertiesColumn::dragBar(const UI_Event& event) {
    if (hasCapture()) {
        if (event.type == UI_EventType::LeftUp) releaseCapture();
        if (event.type == UI_EventType::MouseMove) {
            scrolled_ = dragStartScroll_ + (event.y - dragStartY_) * contentHeight() / height;
            Arrange();
        }
        return true;
    }
    const bool onBar = event.x >= x + width - kBarWidth - 2 && contentHeight() > height;
    if (event.type != UI_EventType::LeftDown || !onBar || !takeCapture(true)) return false;
    dragStartY_ = event.y;
    dragStartScroll_ = scrolled_;
    return true;
}

bool UI_PropertiesColumn::HandleEvent(UI_Event* event) {
    if (hidden) return false;
    return dragBar(*event) || UI_Panel::HandleEvent(event);
}

bool UI_PropertiesColumn::HandleOwnEvent(UI_Event* event) {
    if (event->type != UI_EventType::Wheel || !Contains(event->x, event->y)) return false;
    scrolled_ -= event->value * kPixelsAWheelNotch / kWheelNotch;
    Arrange();
    return true;
}
