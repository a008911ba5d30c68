#include "editor/ui_object.h"

#include "editor/ui_master.h"

UI_Object::~UI_Object() {
    if (master != nullptr) master->Forget(this);
}

void UI_Object::SetPosition(int newX, int newY) {
    x = newX;
    y = newY;
}

void UI_Object::SetSize(int newWidth, int newHeight) {
    width = newWidth;
    height = newHeight;
}

bool UI_Object::Contains(int pointX, int pointY) const {
    return pointX >= x && pointX <= x + width && pointY >= y && pointY <= y + height;
}

bool UI_Object::takeCapture(bool onTop) {
    if (master->captured != nullptr) return false;
    master->captured = this;
    master->capturedOnTop = onTop;
    return true;
}

bool UI_Object::hasCapture() const {
    return master != nullptr && master->captured == this;
}

void UI_Object::releaseCapture() {
    if (!hasCapture()) return;
    master->captured = nullptr;
    master->capturedOnTop = false;
}
