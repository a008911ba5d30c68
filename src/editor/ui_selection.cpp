#include "editor/ui_selection.h"

#include <algorithm>

#include "platform/window.h"

namespace {

constexpr int kLeft = 5, kHeight = 30;  // pixels
constexpr int kArrowRoom = 35;
constexpr int kRowPitch = 20, kHoverHeight = 22;
constexpr int kFirstRow = 33;  // from the widget's top to the list's first row
constexpr int kScreenHeight = 1080;
constexpr int kBarWidth = 4;
constexpr float kLine = 1.5f;

}  // namespace

UI_Selection::UI_Selection(const ValueInt& boundTo, int selectionY, int selectionWidth)
    : UI_BoundWidget(boundTo.name, kLeft, selectionY, selectionWidth, kHeight) {
    value = boundTo;
}

void UI_Selection::TakeOptions(const ValueMultiInt& choice) {
    value.options = choice.options;
    close();
}

std::string_view UI_Selection::currentText() const {
    if (value.data == nullptr || *value.data < 0 || *value.data >= rowCount()) return "No Options";
    return value.options[static_cast<std::size_t>(*value.data)];
}

void UI_Selection::Draw() {
    const int fieldLeft = width / 3;
    fillBackground(kColorWidget);
    drawArrow();
    drawText(10, 20, label);
    useColor(kColorSelection);
    master->FillRect(x + fieldLeft, y + 2, width - fieldLeft - kArrowRoom, height - 4);
    drawText(fieldLeft + 5, 20, currentText());
    if (open && hasCapture()) drawList();
}

void UI_Selection::drawArrow() {
    const int middle = y + height / 2, right = x + width;
    useColor(kColorForeground);
    master->DrawThickLine(kLine, right - 25, middle - 10, right - 5, middle - 10);
    master->DrawThickLine(kLine, right - 5, middle - 10, right - 15, middle + 10);
    master->DrawThickLine(kLine, right - 25, middle - 10, right - 15, middle + 10);
}

void UI_Selection::drawList() {
    const int left = x + width / 3 + 5, listWidth = width - width / 3 - kArrowRoom;
    useColor(kColorSelection);
    master->FillRect(left, y + 30, listWidth, kRowPitch * rowCount() + 5);
    if (hoverRow >= scrolledRows && hoverRow < rowCount()) {
        useColor(kColorWidget);
        master->FillRect(left, y + 31 + kRowPitch * (hoverRow - scrolledRows), listWidth,
                         kHoverHeight);
    }
    int baseline = 45;
    for (int row = scrolledRows; row < rowCount(); ++row) {
        drawText(width / 3 + 10, baseline, value.options[static_cast<std::size_t>(row)]);
        baseline += kRowPitch;
    }
    drawBar(left + listWidth - kBarWidth - 1);
}

// Where in a list the rows on the screen are, when there are others.
void UI_Selection::drawBar(int left) {
    const int rows = rowCount(), seen = rowsOnScreen();
    if (seen >= rows) return;
    const int track = kRowPitch * seen;
    useColor(kColorPanelBorder);
    master->FillRect(left, y + kFirstRow + track * scrolledRows / rows, kBarWidth,
                     std::max(track * seen / rows, kBarWidth));
}

int UI_Selection::rowsOnScreen() const {
    return std::max((kScreenHeight - y - kFirstRow) / kRowPitch, 1);
}

void UI_Selection::scrollBy(int rows) {
    scrolledRows = std::clamp(scrolledRows + rows, 0, std::max(rowCount() - rowsOnScreen(), 0));
}

// The row beside the one under the pointer, brought into view.
void UI_Selection::step(int rows) {
    hoverRow = std::max(std::min(hoverRow + rows, rowCount() - 1), 0);
    scrollBy(std::min(hoverRow - scrolledRows, 0));
    scrollBy(std::max(hoverRow - scrolledRows - rowsOnScreen() + 1, 0));
}

bool UI_Selection::HandleEvent(UI_Event* event) {
    if (value.data == nullptr) return false;
    const int fieldStart = x + width / 3;
    switch (event->type) {
        case UI_EventType::LeftDown:
            if (event->x > fieldStart && takeCapture(true)) {
                open = true;
                hoverRow = *value.data;
                scrolledRows = 0;
            }
            break;
        case UI_EventType::MouseMove:
            if (open && event->x > fieldStart && event->x < x + width) hoverRow = rowAt(event->y);
            break;
        case UI_EventType::Wheel:
        case UI_EventType::KeyDown:
        case UI_EventType::KeyUp:
            if (open && hasCapture()) handleOpenList(*event);
            break;
        case UI_EventType::LeftUp:
            if (master->captured != nullptr) choose();
            break;
        case UI_EventType::RightUp:
            setIndex(value.defaultValue);
            break;
        default:
            break;
    }
    return false;
}

// A list that is longer than the screen is moved by the wheel; arrows choose, Escape closes.
void UI_Selection::handleOpenList(const UI_Event& event) {
    if (event.type == UI_EventType::Wheel) {
        scrollBy(event.value > 0 ? -1 : 1);
        hoverRow = rowAt(event.y);
    }
    if (IsKeyEvent(event, UI_EventType::KeyDown, kKeyUp)) step(-1);
    if (IsKeyEvent(event, UI_EventType::KeyDown, kKeyDown)) step(1);
    if (IsKeyEvent(event, UI_EventType::KeyUp, kKeyEscape)) close();
}

// The rows begin under the widget; -1 for a place above or below them.
int UI_Selection::rowAt(int pointY) const {
    if (pointY <= y + height || pointY >= y + 45 + kRowPitch * rowCount()) return -1;
    return (pointY - y - kFirstRow) / kRowPitch + scrolledRows;
}

void UI_Selection::choose() {
    const int row = hoverRow;
    close();
    if (row >= 0 && row < rowCount()) setIndex(row);
}

void UI_Selection::setIndex(std::int32_t index) {
    *value.data = index;
    if (listener != nullptr) listener->OnValueEdited(this);
}

void UI_Selection::close() {
    releaseCapture();
    open = false;
}
