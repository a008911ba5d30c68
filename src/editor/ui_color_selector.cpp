#include "editor/ui_color_selector.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr int kLeft = 5, kWidth = 380, kHeight = 130;  // pixels
constexpr int kSliderLeft = 100, kSliderTop = 5, kSliderPitch = 30;
constexpr int kSwatchLeft = 5, kSwatchTop = 20, kSwatchWidth = 90, kSwatchHeight = 100;
constexpr int kCheck = 10;
constexpr Vec4 kBlack = {0, 0, 0, 1};
constexpr Vec4 kWhite = {1, 1, 1, 1};

}  // namespace

UI_ColorSelector::UI_ColorSelector(const ValueVec4& boundTo, int selectorY)
    : UI_BoundWidget(boundTo.name, kLeft, selectorY, kWidth, kHeight) {
    value = boundTo;
    for (UI_Slider& slider : sliders) slider.listener = this;
    bindSliders();
}

void UI_ColorSelector::SetMaster(UI_Master* newMaster) {
    UI_BoundWidget::SetMaster(newMaster);
    for (UI_Slider& slider : sliders) slider.SetMaster(newMaster);
}

bool UI_ColorSelector::Holds(const UI_Object* widget) const {
    return UI_BoundWidget::Holds(widget) ||
           std::any_of(std::begin(sliders), std::end(sliders),
                       [widget](const UI_Slider& slider) { return widget == &slider; });
}

// The sliders have no handler of their own: the colour is keyed as a whole.
void UI_ColorSelector::bindSliders() {
    int component = 0;
    for (UI_Slider& slider : sliders) {
        slider.SetPosition(x + kSliderLeft, y + kSliderTop + kSliderPitch * component);
        slider.keyed = false;
        slider.value.data = value.data == nullptr ? nullptr : value.data + component;
        slider.value.min = 0;
        slider.value.max = 1;
        slider.value.defaultValue = value.defaultValue[component];
        slider.value.decimals = 2;
        ++component;
    }
}

void UI_ColorSelector::Draw() {
    bindSliders();
    fillBackground(kColorWidget);
    drawText(5, 15, label);
    for (UI_Slider& slider : sliders) slider.Draw();
    drawSwatch();
    drawKeyedOutline();
}

// The colour over a chessboard, which shows through as far as its alpha lets it.
void UI_ColorSelector::drawSwatch() {
    if (value.data == nullptr) return;
    const int left = x + kSwatchLeft, top = y + kSwatchTop;
    master->SetColor(kBlack);
    master->FillRect(left, top, kSwatchWidth, kSwatchHeight);
    master->SetColor(kWhite);
    for (int row = 0; row < kSwatchHeight / kCheck; ++row) {
        for (int column = row % 2; column < kSwatchWidth / kCheck; column += 2) {
            master->FillRect(left + kCheck * column, top + kCheck * row, kCheck, kCheck);
        }
    }
    master->SetColor({value.data[0], value.data[1], value.data[2], value.data[3]});
    master->FillRect(left, top, kSwatchWidth, kSwatchHeight);
}

bool UI_ColorSelector::HandleEvent(UI_Event* event) {
    if (value.data == nullptr) return false;
    if (toggleKeyed(*event)) return true;
    const bool consumed = master->captured == nullptr && sendToSlider(event);
    const bool resets = event->type == UI_EventType::RightUp && !consumed;
    if (resets) std::copy(std::begin(value.defaultValue), std::end(value.defaultValue), value.data);
    keepKeyframes(*event, resets);
    return consumed || resets;
}

bool UI_ColorSelector::sendToSlider(UI_Event* event) {
    bindSliders();
    for (UI_Slider& slider : sliders) {
        if (slider.Contains(event->x, event->y)) return slider.HandleEvent(event);
    }
    return false;
}

void UI_ColorSelector::OnValueEdited(UI_Object* /*sender*/) {
    if (keyed) writeKeyframe();
}
