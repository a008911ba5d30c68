// One of several choices: press on the field, drag to a row of the list that opens, release. What
// does not go on the screen below the field comes with the wheel or the arrow keys. Main thread.
#pragma once

#include <string_view>

#include "editor/ui_value_widget.h"

class UI_Selection : public UI_BoundWidget<ValueInt> {
  public:
    UI_Selection(const ValueInt& boundTo, int selectionY, int selectionWidth);

    void Draw() override;
    // Never consumes; tells the listener of a choice.
    bool HandleEvent(UI_Event* event) override;
    // Takes the labels over and closes the list; `value.data` and its number stay.
    void TakeOptions(const ValueMultiInt& choice);

    int hoverRow = -1;  // -1: none
    bool open = false;
    int scrolledRows = 0;  // above the first row that is shown

  private:
    int rowCount() const { return static_cast<int>(value.options.size()); }
    std::string_view currentText() const;
    void drawArrow();
    void drawList();
    void drawBar(int left);
    void handleOpenList(const UI_Event& event);
    int rowsOnScreen() const;
    void scrollBy(int rows);
    void step(int rows);
    int rowAt(int pointY) const;
    void choose();
    void setIndex(std::int32_t index);
    void close();
};
