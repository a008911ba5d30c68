// The pitched instruments. Every function adds one note to a buffer, beginning at the note's start
// frame. Depends on music_note.h and music_buffer.h; no state, any thread.
#pragma once

#include "music_buffer.h"
#include "music_note.h"

namespace music {

// music_synths_low.cpp
void renderBass(const Note& note, StereoBuffer& out);
void renderGrowlBass(const Note& note, StereoBuffer& out);

// music_synths_chords.cpp
void renderPad(const Note& note, StereoBuffer& out);
void renderChoir(const Note& note, StereoBuffer& out);
void renderStab(const Note& note, StereoBuffer& out);

// music_synths_melody.cpp
void renderPluck(const Note& note, StereoBuffer& out);
void renderLead(const Note& note, StereoBuffer& out);
void renderKeys(const Note& note, StereoBuffer& out);
void renderBell(const Note& note, StereoBuffer& out);

}  // namespace music
