// Measures of the key timeline, shared by its sources. Pixels.
#pragma once

constexpr int kHeaderHeight = 36;  // the controls along the upper edge
constexpr int kControlHeight = 26, kControlGap = 6;
constexpr int kSelectionWidth = 520;
constexpr int kModeButtonWidth = 74;
constexpr int kTempoWidth = 210;
constexpr int kListWidth = 270;  // the list of tracks on the left
constexpr int kListRow = 18;
constexpr int kRulerHeight = 22;
constexpr int kKeyReach = 6;  // a press so near to a key's middle hits it
