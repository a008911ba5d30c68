#include "editor/ui_key_sheet.h"

#include <span>

#include "editor/ui_master.h"

namespace {

struct KeyLine {
    const char* keys;  // null: `text` is a heading
    const char* text;
};

constexpr KeyLine kLeftLines[] = {
    {nullptr, "Project"},
    {"Ctrl+S", "save, with a stamped backup beside it"},
    {"Ctrl+O", "load the project again from its file"},
    {"Ctrl+N", "erase everything and begin anew"},
    {"Ctrl+I", "import another project"},
    {"Ctrl+Z", "go back to the save before"},
    {"F12", "full-screen player and back"},
    {"Esc", "close what is open, or end the program"},
    {nullptr, "Time"},
    {"Space", "play and pause"},
    {"Left, Right", "one step back, forward"},
    {"Down, Up", "one second back, forward"},
    {nullptr, "Values"},
    {"drag number", "change it; with Ctrl twenty times finer"},
    {"double click", "type a number, Return takes it"},
    {"right click", "back to the default"},
    {"S", "animate the value under the pointer, or stop"},
    {"P", "write a key at the present time"},
    {"middle click", "on a text: choose a file"},
    {nullptr, "Picture"},
    {"wheel", "zoom about the pointer"},
    {"middle drag", "pan"},
    {"right click", "back to the whole picture"},
    {"drag pin", "move a place; writes a key. Shift: one axis"},
};
constexpr KeyLine kRightLines[] = {
    {nullptr, "Node canvas"},
    {"Tab", "palette of node types; also right click on empty canvas"},
    {"drag socket", "link; off an input: take the link away"},
    {"Ctrl right drag", "knife: cuts the links that it crosses"},
    {"drag empty", "select by a frame; Shift adds"},
    {"right click", "on a box: its properties"},
    {"middle drag", "pan; the wheel zooms about the pointer"},
    {"Delete", "delete the selected nodes"},
    {"Ctrl+C X V D", "copy, cut, paste, duplicate; Ctrl+A: select all"},
    {"F2", "name the node; also a double click"},
    {"E, H", "switch the node off or on (not saved); fold what is behind"},
    {"F, Home, L", "show the selected; show all; lay out, L again: back"},
    {nullptr, "Key timeline"},
    {"drag ruler", "move in time"},
    {"double click", "add a key"},
    {"drag key", "move it; snaps to beats, with Ctrl it does not"},
    {"Shift drag", "time or value only"},
    {"right click", "on a key: next of the four easings"},
    {"drag empty", "select keys by a frame"},
    {"Delete", "delete the selected keys"},
    {"wheel", "zoom time; with Ctrl values"},
    {"middle drag", "pan"},
    {"Home", "show the whole track"},
};

constexpr int kSheetX = 260, kSheetY = 120, kSheetWidth = 1400, kSheetHeight = 810;  // pixels
constexpr int kRow = 30, kKeysWidth = 150;
constexpr int kTextSize = 14;

}  // namespace

void UI_KeySheet::Open() {
    takeCapture(true);
}

void UI_KeySheet::Close() {
    releaseCapture();
}

void UI_KeySheet::Draw() {
    if (isOpen()) drawSheet();
}

void UI_KeySheet::drawSheet() {
    const Vec4* colors = master->colorSlots;
    master->SetColor({0, 0, 0, 0.6f});
    master->FillRect(0, 0, master->width, master->height);
    master->SetColor(colors[kColorPanel]);
    master->FillRect(kSheetX, kSheetY, kSheetWidth, kSheetHeight);
    master->SetColor(colors[kColorKeyed]);
    master->OutlineRect(kSheetX, kSheetY, kSheetWidth, kSheetHeight);
    const auto drawColumn = [&](int left, std::span<const KeyLine> lines) {
        int baseline = kSheetY + 50;
        for (const KeyLine& line : lines) {
            if (line.keys == nullptr) {
                master->DrawText(left, baseline + 4, kTextSize + 2, colors[kColorKeyed], line.text);
            } else {
                master->DrawText(left, baseline, kTextSize, colors[kColorText], line.keys);
                master->DrawText(left + kKeysWidth, baseline, kTextSize, {0.75f, 0.75f, 0.75f, 1},
                                 line.text);
            }
            baseline += kRow;
        }
    };
    drawColumn(kSheetX + 50, kLeftLines);
    drawColumn(kSheetX + kSheetWidth / 2 + 30, kRightLines);
}

bool UI_KeySheet::HandleEvent(UI_Event* event) {
    if (!isOpen()) return false;
    const bool press = event->type == UI_EventType::KeyDown && !event->repeat;
    if (press || event->type == UI_EventType::LeftUp || event->type == UI_EventType::RightUp) {
        Close();
    }
    return true;
}
