// The melodies, as degrees of the scale on a grid of sixteenth notes. Depends on nothing; constant
// tables.
#pragma once

#include <span>

namespace music {

struct ThemeNote {
    int step;    // from the theme's first bar
    int length;  // in steps
    int degree;  // 0 is the key's root below the middle of the lead's range
};

// Eight bars over kThemeChords: the song's main tune, heard in the main part and in the climax.
std::span<const ThemeNote> mainTheme();
// Eight bars over kLiftChords: the quicker second tune.
std::span<const ThemeNote> secondTheme();
// Sixteen bars over kBridgeChords: slow, for the electric piano.
std::span<const ThemeNote> bridgeTheme();
// Eight bars over kBreakChords: the main tune's opening, remembered by bells.
std::span<const ThemeNote> breakTheme();

}  // namespace music
