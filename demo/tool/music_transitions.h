// The sounds that carry one section into the next: risers, reversed cymbals, falling noise,
// impacts, wind. Depends on music_note.h and music_buffer.h; no state, any thread.
#pragma once

#include "music_buffer.h"
#include "music_note.h"

namespace music {

// Noise and saws that climb for the note's length and stop dead at its end.
void renderRiser(const Note& note, StereoBuffer& out);
void renderReverseCymbal(const Note& note, StereoBuffer& out);
// Noise that falls from the top to nothing over the note's length.
void renderDownlifter(const Note& note, StereoBuffer& out);
// A boom that sinks below the bass.
void renderImpact(const Note& note, StereoBuffer& out);
void renderWind(const Note& note, StereoBuffer& out);

}  // namespace music
