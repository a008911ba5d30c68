// The song's form: which sections follow each other and what every part plays in each bar. Depends
// on music_layers.h. Pure functions of the bar's number, on any thread: any stretch of the song can
// be rendered without what comes before.
#pragma once

#include <span>
#include <vector>

#include "music_layers.h"

namespace music {

struct SectionPlan {
    const char* name;
    int firstBar;
    int bars;
    float intensity;              // 0 calm to 1 all out
    std::span<const int> chords;  // a bar each, repeated
    int transpose;                // semitones
    void (*writeBar)(BarWriter& bar);
};

// In order, without gaps, from bar 0 to kSongBars.
std::span<const SectionPlan> songPlan();

// All notes that begin in a bar of the song, in the order in which they are to be mixed.
std::vector<Note> notesOfBar(int bar);

// What the mix's high-pass filter does in a bar: it climbs before a drop, to take the low end away
// that the drop brings back.
struct MixSweep {
    float startHertz;
    float endHertz;
};
MixSweep mixSweepOfBar(int bar);

}  // namespace music
