// Which function plays which instrument. Depends on the drum, synth and transition files; no state,
// any thread.
#pragma once

#include "music_buffer.h"
#include "music_note.h"

namespace music {

// Adds the note to `out`, whose first frame is the beginning of the note's bar.
void renderNote(const Note& note, StereoBuffer& out);

// The longest that any note sounds: a riser of four bars, or a note of two bars and its release.
inline constexpr int kLongestNoteBars = 4;

}  // namespace music
