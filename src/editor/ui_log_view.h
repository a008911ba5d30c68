// What the debug channel said: a strip with the last lines, faults in red, which a click opens to
// the full list. Main thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "editor/ui_object.h"
#include "platform/debug_output.h"

// Does the line only tell that all is as it should be? The strip leaves such lines out.
bool IsRoutineLine(std::string_view line);

struct LogLine {
    std::string text;
    bool fault = false;  // tells of something that went wrong
};

// The messages as lines; a message need not end one, and one that tells of a fault makes its lines
// faults.
std::vector<LogLine> LinesOf(const std::vector<DebugMessage>& messages);

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
    using Lines = std::vector<LogLine>;
    void drawLines(const Lines& lines, int left, int top, int columns, int rows, std::size_t last);
    int rowsOfList() const;

    Lines lines_;
    Lines stripLines_;
    std::size_t seenMessages_ = static_cast<std::size_t>(-1);
    std::size_t scrolledUp_ = 0;  // lines
};
