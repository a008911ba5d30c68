// What the debug channel said: a strip with the last lines, faults in red, which a click opens to
// the full list. Main thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "editor/ui_object.h"

// Does the line tell of something that went wrong?
bool IsFaultLine(std::string_view line);

// Does the line only tell that all is as it should be? The strip leaves such lines out.
bool IsRoutineLine(std::string_view line);

// The messages' texts as lines; a message need not end one.
std::vector<std::string> LinesOf(const std::vector<std::string>& messages);

class UI_LogView : public UI_Object {
  public:
    UI_LogView(int stripX, int stripY, int stripWidth, int stripHeight);

    void Draw() override;  // the strip
    bool HandleEvent(UI_Event* event) override;

    // The list lies over other widgets: who owns the view draws it last and asks it first.
    void DrawList();
    bool HandleListEvent(const UI_Event& event);

    bool open = false;

  private:
    void refresh();
    using Lines = std::vector<std::string>;
    void drawLines(const Lines& lines, int left, int top, int columns, int rows, std::size_t last);
    int rowsOfList() const;

    Lines lines_;
    Lines stripLines_;
    std::size_t seenMessages_ = static_cast<std::size_t>(-1);
    std::size_t scrolledUp_ = 0;  // lines
};
