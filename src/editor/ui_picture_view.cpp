#include "editor/ui_picture_view.h"

#include <algorithm>

#include "editor/ui_clip.h"
#include "editor/ui_image_panel.h"

namespace {

constexpr int kMargin = 4;  // pixels, for the picture's outline
constexpr Vec4 kSurround = {0.08f, 0.08f, 0.08f, 1};

}  // namespace

UI_PictureView::UI_PictureView(UI_ImagePanel& shownPanel) : panel_(shownPanel) {}

void UI_PictureView::Place(int viewX, int viewY, int viewWidth, int viewHeight) {
    SetPosition(viewX, viewY);
    SetSize(viewWidth, viewHeight);
    const int w = std::min(viewWidth - 2 * kMargin, (viewHeight - 2 * kMargin) * 16 / 9);
    const int h = w * 9 / 16;
    panel_.SetPosition(viewX + (viewWidth - w) / 2, viewY + (viewHeight - h) / 2);
    panel_.SetSize(w, h);
    panel_.clip = {true, viewX, viewY, viewWidth, viewHeight};
}

void UI_PictureView::Draw() {
    master->SetColor(kSurround);
    master->FillRect(x, y, width, height);
    panel_.DrawInView();
}

bool UI_PictureView::HandleEvent(UI_Event* event) {
    return panel_.HandleEvent(event);
}

void UI_PictureView::SetMaster(UI_Master* newMaster) {
    UI_Object::SetMaster(newMaster);
    panel_.SetMaster(newMaster);
}
