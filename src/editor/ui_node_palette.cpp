#include "editor/ui_node_palette.h"

#include <algorithm>
#include <cstdlib>

#include "editor/fuzzy_match.h"
#include "editor/ui_master.h"
#include "platform/window.h"

namespace {

constexpr int kTextSize = 12;  // pixels
constexpr int kMargin = 10;
constexpr int kFieldTop = 26, kFieldHeight = 20;
constexpr int kRowsAWheel = 3;
constexpr std::size_t kMostTyped = 40;
constexpr Vec4 kDim = {0.6f, 0.6f, 0.6f, 1};
constexpr Vec4 kChosenRow = {0.30f, 0.23f, 0.06f, 1};

}  // namespace

bool UI_NodePalette::open(int paletteX, int paletteY, int bottom, std::vector<OfferedType> offered,
                          std::string heading) {
    if (!takeCapture(true)) return false;
    offered_ = std::move(offered);
    heading_ = std::move(heading);
    typed.clear();
    open_ = true;
    const int room = (bottom - paletteY - kTop - kEnd) / kRowHeight;
    rowsThatFit_ = std::clamp(room, kFewestRows, kMostRows);
    filter();
    SetPosition(std::max(0, std::min(paletteX, master->width - width - 1)),
                std::max(0, std::min(paletteY, bottom - height)));
    return true;
}

void UI_NodePalette::close() {
    open_ = false;
    releaseCapture();
}

const std::string& UI_NodePalette::chosen() const {
    static const std::string none;
    return chosen_ < 0 ? none : rows_[static_cast<std::size_t>(chosen_)].text;
}

void UI_NodePalette::filter() {
    rows_.clear();
    chosen_ = -1;
    scroll_ = 0;
    if (typed.find_first_not_of(' ') == std::string::npos) {
        addGroups();
    } else {
        addMatches();
    }
    for (int row = 0; row < static_cast<int>(rows_.size()) && chosen_ < 0; ++row) choose(row);
    // As long as what is left of the list; it is longest when it opens.
    SetSize(kWidth, kTop + kRowHeight * std::max(visibleRows(), 1) + kEnd);
}

// Groups in the order in which the offered types name them first.
void UI_NodePalette::addGroups() {
    const auto isOffered = [this](const std::string& name) {
        return std::any_of(offered_.begin(), offered_.end(),
                           [&](const OfferedType& type) { return type.name == name; });
    };
    for (const std::string& name : lastUsed) {
        if (!isOffered(name)) continue;
        if (rows_.empty()) rows_.push_back({"Used last", "", true});
        rows_.push_back({name, "", false});
    }
    std::vector<std::string> categories;
    for (const OfferedType& type : offered_) {
        if (std::find(categories.begin(), categories.end(), type.category) == categories.end()) {
            categories.push_back(type.category);
        }
    }
    for (const std::string& category : categories) {
        rows_.push_back({category, "", true});
        for (const OfferedType& type : offered_) {
            if (type.category == category) rows_.push_back({type.name, "", false});
        }
    }
}

// Best first. Types used last go before others that answer as well.
void UI_NodePalette::addMatches() {
    struct Match {
        int score;
        const OfferedType* type;
    };
    std::vector<Match> matches;
    for (const OfferedType& type : offered_) {
        const auto score = FuzzyScore(typed, type.name);
        if (!score) continue;
        const auto used = std::find(lastUsed.begin(), lastUsed.end(), type.name);
        matches.push_back({*score + (used == lastUsed.end() ? 0 : 3), &type});
    }
    std::stable_sort(matches.begin(), matches.end(),
                     [](const Match& a, const Match& b) { return a.score > b.score; });
    for (const Match& match : matches) {
        rows_.push_back({match.type->name, match.type->category, false});
    }
}

int UI_NodePalette::visibleRows() const {
    return std::min(static_cast<int>(rows_.size()), rowsThatFit_);
}

void UI_NodePalette::choose(int row) {
    if (row < 0 || row >= static_cast<int>(rows_.size())) return;
    if (!rows_[static_cast<std::size_t>(row)].heading) chosen_ = row;
}

// Past headings, and not past the ends.
void UI_NodePalette::move(int step) {
    const int direction = step < 0 ? -1 : 1;
    int row = chosen_;
    for (int left = std::abs(step); left > 0;) {
        row += direction;
        if (row < 0 || row >= static_cast<int>(rows_.size())) break;
        if (rows_[static_cast<std::size_t>(row)].heading) continue;
        choose(row);
        --left;
    }
    keepChosenVisible();
}

void UI_NodePalette::keepChosenVisible() {
    if (chosen_ < 0) return;
    // With the heading above the first type of a group.
    const bool first = chosen_ > 0 && rows_[static_cast<std::size_t>(chosen_ - 1)].heading;
    scroll_ = std::min(scroll_, first ? chosen_ - 1 : chosen_);
    scroll_ = std::max(scroll_, chosen_ - rowsThatFit_ + 1);
}

int UI_NodePalette::rowAt(int pixelX, int pixelY) const {
    if (pixelX < x || pixelX >= x + width || pixelY < y + kTop) return -1;
    const int line = (pixelY - y - kTop) / kRowHeight;
    return line < visibleRows() ? line + scroll_ : -1;
}

bool UI_NodePalette::HandleEvent(UI_Event* event) {
    if (!open_) return false;
    switch (event->type) {
        case UI_EventType::CharInput:
            if (event->value >= 32 && event->value < 127 && typed.size() < kMostTyped) {
                typed.push_back(static_cast<char>(event->value));
                filter();
            }
            break;
        case UI_EventType::KeyDown:
            handleKey(event->value);
            break;
        case UI_EventType::MouseMove:
            choose(rowAt(event->x, event->y));
            break;
        case UI_EventType::Wheel: {
            const int last = std::max(static_cast<int>(rows_.size()) - rowsThatFit_, 0);
            scroll_ += event->value > 0 ? -kRowsAWheel : kRowsAWheel;
            scroll_ = std::clamp(scroll_, 0, last);
            choose(rowAt(event->x, event->y));
            break;
        }
        case UI_EventType::LeftDown:
        case UI_EventType::LeftDoubleClick: {
            const int row = rowAt(event->x, event->y);
            if (!Contains(event->x, event->y)) {
                close();
            } else if (row >= 0 && !rows_[static_cast<std::size_t>(row)].heading) {
                choose(row);
                take();
            }
            break;
        }
        case UI_EventType::RightDown:
            close();
            break;
        default:
            break;
    }
    return true;
}

void UI_NodePalette::handleKey(int key) {
    switch (key) {
        case kKeyEscape:
            close();
            break;
        case kKeyReturn:
            take();
            break;
        case kKeyUp:
            move(-1);
            break;
        case kKeyDown:
            move(1);
            break;
        case kKeyPageUp:
            move(-rowsThatFit_);
            break;
        case kKeyPageDown:
            move(rowsThatFit_);
            break;
        case kKeyBack:
            if (typed.empty()) break;
            typed.pop_back();
            filter();
            break;
        default:
            break;
    }
}

// Enter without a type to take leaves the palette open.
void UI_NodePalette::take() {
    const std::string taken = chosen();
    if (taken.empty()) return;
    close();
    std::erase(lastUsed, taken);
    lastUsed.insert(lastUsed.begin(), taken);
    if (lastUsed.size() > kMostLastUsed) lastUsed.resize(kMostLastUsed);
    if (onTaken) onTaken(taken);
}

void UI_NodePalette::Draw() {
    if (!open_) return;
    const Vec4* colors = master->colorSlots;
    master->SetColor({0, 0, 0, 0.35f});
    master->FillRect(x + 5, y + 5, width, height);
    master->SetColor(colors[kColorSelection]);
    master->FillRect(x, y, width, height);
    master->SetColor(colors[kColorKeyed]);
    master->OutlineRect(x, y, width, height);
    master->DrawText(x + kMargin, y + 18, kTextSize, colors[kColorKeyed], heading_);
    master->SetColor(colors[kColorFocused]);
    master->FillRect(x + kMargin - 4, y + kFieldTop, width - 2 * kMargin + 8, kFieldHeight);
    const int textLeft = x + kMargin, baseline = y + kFieldTop + 14;
    master->DrawText(textLeft, baseline, kTextSize, typed.empty() ? kDim : colors[kColorText],
                     typed.empty() ? "type to search" : typed);
    master->SetColor(colors[kColorText]);
    const int cursor = typed.empty() ? -2 : master->MeasureText(kTextSize, typed) + 1;
    master->FillRect(textLeft + cursor, y + kFieldTop + 3, 1, kFieldHeight - 6);
    for (int line = 0; line < visibleRows(); ++line) {
        drawRow(scroll_ + line, y + kTop + line * kRowHeight);
    }
    if (rows_.empty())
        master->DrawText(x + kMargin, y + kTop + 14, kTextSize, kDim, "No such type");
    const int count = static_cast<int>(rows_.size());
    if (count <= rowsThatFit_) return;
    const int track = rowsThatFit_ * kRowHeight, thumb = track * rowsThatFit_ / count;
    master->SetColor(colors[kColorPanelBorder]);
    master->FillRect(x + width - 5, y + kTop + track * scroll_ / count, 3, thumb);
}

void UI_NodePalette::drawRow(int row, int top) {
    const Row& line = rows_[static_cast<std::size_t>(row)];
    const int baseline = top + 15;
    if (line.heading) {
        master->DrawText(x + kMargin, baseline, kTextSize, kDim, line.text);
        const int after = x + kMargin + master->MeasureText(kTextSize, line.text) + 8;
        master->SetColor({1, 1, 1, 0.12f});
        master->FillRect(after, top + kRowHeight / 2 + 1, x + width - kMargin - after, 1);
        return;
    }
    if (row == chosen_) {
        master->SetColor(kChosenRow);
        master->FillRect(x + 1, top, width - 8, kRowHeight);
    }
    master->DrawText(x + 2 * kMargin, baseline, kTextSize, master->colorSlots[kColorText],
                     line.text);
    if (line.category.empty()) return;
    const int categoryWidth = master->MeasureText(kTextSize, line.category);
    master->DrawText(x + width - kMargin - categoryWidth, baseline, kTextSize, kDim, line.category);
}
