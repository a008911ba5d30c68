#include "editor/ui_log_view.h"

#include <algorithm>

#include "editor/ui_clip.h"

namespace {

constexpr int kTextSize = 11, kRowHeight = 16, kMargin = 8, kHeading = 22;  // pixels
constexpr int kListX = 160, kListY = 90, kListWidth = 1600, kListHeight = 900;
constexpr std::size_t kRowsAWheelNotch = 3;
constexpr Vec4 kQuiet = {0.68f, 0.68f, 0.68f, 1};

}  // namespace

bool IsRoutineLine(std::string_view line) {
    return line.starts_with("Texture Memory Consumed") ||
           line.starts_with("Load Script from File") || line.ends_with("Successfully linked.");
}

std::vector<LogLine> LinesOf(const std::vector<DebugMessage>& messages) {
    std::vector<LogLine> lines;
    bool startsLine = true;
    for (const DebugMessage& message : messages) {
        for (const char c : message.text) {
            if (startsLine) lines.emplace_back();
            startsLine = c == '\n';
            if (c == '\n' || c == '\r') continue;
            lines.back().text.push_back(c == '\t' ? ' ' : c);
            lines.back().fault |= message.fault;
        }
    }
    std::erase_if(lines, [](const LogLine& line) { return line.text.empty(); });
    return lines;
}

UI_LogView::UI_LogView(int stripX, int stripY, int stripWidth, int stripHeight) {
    SetPosition(stripX, stripY);
    SetSize(stripWidth, stripHeight);
}

void UI_LogView::refresh() {
    const std::size_t count = DebugOutputCount();
    if (count == seenMessages_) return;
    seenMessages_ = count;
    lines_ = LinesOf(RecentDebugOutput());
    stripLines_.clear();
    for (const LogLine& line : lines_) {
        if (!IsRoutineLine(line.text)) stripLines_.push_back(line);
    }
}

// `rows` lines of which `last` is the one after the lowest.
void UI_LogView::drawLines(const Lines& lines, int left, int top, int columns, int rows,
                           std::size_t last) {
    const UI_Clip inside(*master, left, top, columns, rows * kRowHeight);
    const std::size_t first = last > static_cast<std::size_t>(rows)
                                  ? last - static_cast<std::size_t>(rows)
                                  : std::size_t{0};
    int baseline = top + 12;
    for (std::size_t i = first; i < last; ++i) {
        const LogLine& line = lines[i];
        master->DrawText(left, baseline, kTextSize, line.fault ? kFaultColor : kQuiet, line.text);
        baseline += kRowHeight;
    }
}

void UI_LogView::Draw() {
    refresh();
    master->SetColor(master->colorSlots[kColorSelection]);
    master->FillRect(x, y, width, height);
    drawLines(stripLines_, x + kMargin, y + 4, width - 2 * kMargin, (height - 6) / kRowHeight,
              stripLines_.size());
    if (!stripLines_.empty()) return;
    master->DrawText(x + kMargin, y + 16, kTextSize, kQuiet,
                     "All is well. A click shows all messages.");
}

bool UI_LogView::HandleEvent(UI_Event* event) {
    if (event->type != UI_EventType::LeftUp) return false;
    open = !open;
    scrolledUp_ = 0;
    return true;
}

int UI_LogView::rowsOfList() const {
    return (kListHeight - kHeading - kMargin) / kRowHeight;
}

void UI_LogView::DrawList() {
    if (!open) return;
    refresh();
    const Vec4* colors = master->colorSlots;
    master->SetColor(colors[kColorPanel]);
    master->FillRect(kListX, kListY, kListWidth, kListHeight);
    master->SetColor(colors[kColorKeyed]);
    master->OutlineRect(kListX, kListY, kListWidth, kListHeight);
    master->DrawText(kListX + kMargin, kListY + 16, 12, colors[kColorKeyed],
                     "Messages   (wheel scrolls, a click or Esc closes)");
    const auto rows = static_cast<std::size_t>(rowsOfList());
    const std::size_t most = lines_.size() > rows ? lines_.size() - rows : 0;
    scrolledUp_ = std::min(scrolledUp_, most);
    drawLines(lines_, kListX + kMargin, kListY + kHeading, kListWidth - 2 * kMargin, rowsOfList(),
              lines_.size() - scrolledUp_);
}

// A click anywhere closes the list.
bool UI_LogView::HandleListEvent(const UI_Event& event) {
    if (!open) return false;
    if (event.type == UI_EventType::Wheel) {
        const std::size_t step = event.value == 0 ? 0 : kRowsAWheelNotch;
        scrolledUp_ =
            event.value > 0 ? scrolledUp_ + step : scrolledUp_ - std::min(scrolledUp_, step);
    }
    if (event.type == UI_EventType::LeftUp || event.type == UI_EventType::RightUp) open = false;
    return event.type != UI_EventType::KeyDown && event.type != UI_EventType::KeyUp;
}
