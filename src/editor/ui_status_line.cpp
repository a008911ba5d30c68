#include "editor/ui_status_line.h"

#include "editor/ui_master.h"

namespace {

constexpr int kTextSize = 12;  // pixels

}  // namespace

UI_StatusLine::UI_StatusLine(int lineX, int lineY, int lineWidth, int lineHeight) {
    SetPosition(lineX, lineY);
    SetSize(lineWidth, lineHeight);
}

void UI_StatusLine::Tell(std::string_view text, Tone tone) {
    message = text;
    messageTone = tone;
    drawsLeft_ = kMessageDraws;
}

void UI_StatusLine::Draw() {
    if (hidden) return;
    const Vec4* colors = master->colorSlots;
    master->SetColor(colors[kColorPanel]);
    master->FillRect(x, y, width, height);
    master->SetColor(colors[kColorWidget]);
    master->FillRect(x, y, width, 1);
    const int baseline = y + height / 2 + 5;
    if (drawsLeft_ > 0) {
        --drawsLeft_;
        master->DrawText(x + 12, baseline, kTextSize,
                         messageTone == Tone::Fault ? kFaultColor : colors[kColorKeyed], message);
    } else if (hint) {
        master->DrawText(x + 12, baseline, kTextSize, colors[kColorText], hint());
    }
}
