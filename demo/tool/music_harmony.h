// The song's key and chords. Pitches are counted in degrees of the natural minor scale, 0 being the
// key's root, so that whatever is written in degrees is in key. Depends on nothing; pure functions.
#pragma once

#include <array>
#include <span>

namespace music {

// The key's root as MIDI pitches: F. The climax and all after it are a whole tone higher, in G.
inline constexpr int kBassRootPitch = 29;  // F1, 43.7 Hz
inline constexpr int kHighKeyTranspose = 2;
inline constexpr std::array<int, 7> kScaleSemitones = {0, 2, 3, 5, 7, 8, 10};

// MIDI pitch of a degree (any sign) in the octave that begins `octaves` above kBassRootPitch.
float pitchOfDegree(int degree, int octaves, int transpose);

// The degree in [low, low + 7) that has the same name as `degree`: close voicings that move little
// from chord to chord come of folding each chord's tones into the same octave.
int foldDegree(int degree, int low);

// The n-th tone of the triad on `chordRoot`, going on upwards octave after octave.
int triadDegree(int chordRoot, int tone);

// Chord roots, a bar each, by Roman numeral in F minor: i = 0, III = 2, iv = 3, v = 4, VI = 5,
// VII = 6.
inline constexpr std::array<int, 8> kSlowChords = {0, 0, 5, 5, 2, 2, 6, 6};
inline constexpr std::array<int, 8> kThemeChords = {0, 5, 2, 6, 0, 5, 3, 6};
inline constexpr std::array<int, 8> kBreakChords = {5, 6, 0, 0, 3, 5, 6, 6};
inline constexpr std::array<int, 8> kLiftChords = {5, 6, 0, 4, 5, 6, 0, 2};
inline constexpr std::array<int, 8> kPedalChords = {5, 5, 5, 5, 6, 6, 6, 6};
inline constexpr std::array<int, 16> kBridgeChords = {5, 5, 0, 0, 2, 2, 6, 6,
                                                      3, 3, 5, 5, 0, 0, 6, 6};
// The way up a whole tone: VII of the old key is VI of the new one (its second half is counted in
// the new key).
inline constexpr std::array<int, 8> kPivotChords = {5, 5, 6, 6, 5, 5, 6, 6};

}  // namespace music
