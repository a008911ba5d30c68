// The drum kit. Every function adds one stroke to a buffer, beginning at the note's start frame.
// Depends on music_note.h and music_buffer.h; no state, any thread.
#pragma once

#include "music_buffer.h"
#include "music_note.h"

namespace music {

void renderKick(const Note& note, StereoBuffer& out);
void renderSnare(const Note& note, StereoBuffer& out);
void renderClap(const Note& note, StereoBuffer& out);
void renderClosedHat(const Note& note, StereoBuffer& out);
void renderOpenHat(const Note& note, StereoBuffer& out);
void renderShaker(const Note& note, StereoBuffer& out);
void renderRide(const Note& note, StereoBuffer& out);
void renderCrash(const Note& note, StereoBuffer& out);
void renderTom(const Note& note, StereoBuffer& out);

}  // namespace music
