#include "editor/ui_panel.h"

#include <algorithm>

#include "editor/ui_image_panel.h"
#include "editor/ui_master.h"

namespace {

constexpr Vec4 kBlack = {0, 0, 0, 1};
constexpr int kTextSize = 12;  // pixels

}  // namespace

UI_Panel::UI_Panel(int panelX, int panelY, int panelWidth, int panelHeight, bool hasCloseBox)
    : closable(hasCloseBox) {
    UI_Object::SetPosition(panelX, panelY);
    SetSize(panelWidth, panelHeight);
}

UI_Panel::~UI_Panel() = default;

void UI_Panel::Draw() {
    if (hidden) return;
    // The rectangle begins one column early and two rows late: an outline has its left column
    // there, and its upper row is not seen.
    const int* limits = master->scissorLimits;
    master->PushScissor(std::max(x - 1, limits[0]), std::max(1079 - height - y, limits[1]),
                        std::min(width + 1, limits[2]), std::min(height - 1, limits[3]));
    drawInside();
    master->PopScissor();
    if (keyed) {
        master->SetColor(master->colorSlots[kColorKeyed]);
        master->OutlineRect(x, y, width, height);
    }
}

void UI_Panel::drawInside() {
    const int bar = title.empty() ? 0 : 7;
    DrawUnderlay();
    master->SetColor(master->colorSlots[kColorPanel]);
    master->FillRect(x, y + bar, width, height - bar);
    for (std::size_t i = 0; i < children.size(); ++i) children[i]->Draw();
    DrawOverlay();
    if (!title.empty()) {
        drawTitle(bar);
        return;
    }
    master->SetColor(master->colorSlots[kColorPanelBorder]);
    master->OutlineRect(x, y, width, height);
}

void UI_Panel::drawTitle(int bar) {
    const std::string& text = master->DisplayNameOf(title);
    master->SetColor(master->colorSlots[kColorPanel]);
    master->FillRect(x, y, width, 2 * bar);
    master->SetColor(master->colorSlots[kColorPanelBorder]);
    master->OutlineRect(x, y + bar, width, height - bar);
    master->SetColor(master->colorSlots[kColorKeyed]);
    master->FillRect(x + 10, y, master->MeasureText(kTextSize, text) + 4, 14);
    master->DrawText(x + 12, y + 5 + bar, kTextSize, kBlack, text);
    if (!closable) return;
    master->FillRect(x + width - 15, y, 10, 14);
    master->DrawText(x + width - 14, y + 12, kTextSize, kBlack, "X");
}

bool UI_Panel::HandleOwnEvent(UI_Event* /*event*/) {
    return false;
}

// A panel without a close box reports too.
bool UI_Panel::releasesInCloseBox(const UI_Event& event) const {
    return event.type == UI_EventType::LeftUp && event.x >= x + width - 15 &&
           event.x <= x + width - 5 && event.y >= y && event.y <= y + 14;
}

bool UI_Panel::HandleEvent(UI_Event* event) {
    if (hidden) return false;
    if (listener != nullptr && releasesInCloseBox(*event)) {
        listener->OnCommand(this, 0);
        return true;
    }
    // By index: a child may add and remove others.
    for (std::size_t i = 0; i < children.size(); ++i) {
        if (!children[i]->Contains(event->x, event->y)) continue;
        if (children[i]->HandleEvent(event)) return true;
        break;
    }
    // Image panels get everything, so that wheel and drags work when the pointer is elsewhere; one
    // under the pointer gets its event a second time.
    bool consumed = false;
    for (std::size_t i = 0; i < children.size(); ++i) {
        auto* imagePanel = dynamic_cast<UI_ImagePanel*>(children[i].get());
        if (imagePanel != nullptr) consumed = imagePanel->HandleEvent(event);
    }
    return consumed || HandleOwnEvent(event);
}

void UI_Panel::SetPosition(int newX, int newY) {
    for (const auto& child : children) {
        child->SetPosition(child->x + newX - x, child->y + newY - y);
    }
    UI_Object::SetPosition(newX, newY);
}

void UI_Panel::SetMaster(UI_Master* newMaster) {
    UI_Object::SetMaster(newMaster);
    for (const auto& child : children) child->SetMaster(newMaster);
}

bool UI_Panel::Holds(const UI_Object* widget) const {
    return UI_Object::Holds(widget) ||
           std::any_of(children.begin(), children.end(),
                       [widget](const auto& child) { return child->Holds(widget); });
}

void UI_Panel::AddChild(UI_Object* child) {
    const auto isChild = [child](const auto& known) { return known.get() == child; };
    if (child == nullptr || std::any_of(children.begin(), children.end(), isChild)) return;
    child->SetMaster(master);
    child->SetPosition(child->x + x, child->y + y);
    children.emplace_back(child);
}

std::unique_ptr<UI_Object> UI_Panel::RemoveChild(UI_Object* child) {
    for (auto place = children.begin(); place != children.end(); ++place) {
        if (place->get() != child) continue;
        std::unique_ptr<UI_Object> removed = std::move(*place);
        children.erase(place);
        return removed;
    }
    return nullptr;
}
