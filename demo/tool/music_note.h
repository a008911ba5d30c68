// What the score says and the instruments play: one note. Depends on nothing; plain data.
#pragma once

#include <cstddef>
#include <cstdint>

namespace music {

enum class Instrument {
    // music_drums.h
    Kick,
    Snare,
    Clap,
    ClosedHat,
    OpenHat,
    Shaker,
    Ride,
    Crash,
    Tom,
    // music_synths.h
    Bass,
    GrowlBass,
    Pad,
    Choir,
    Stab,
    Pluck,
    Lead,
    Keys,
    Bell,
    // music_transitions.h
    Riser,
    ReverseCymbal,
    Downlifter,
    Impact,
    Wind,
};

struct Note {
    Instrument instrument = Instrument::Kick;
    std::size_t startFrame = 0;    // from the beginning of the note's bar
    std::size_t lengthFrames = 0;  // while the key is down; drums ring as long as they do
    float pitch = 60.0f;           // MIDI
    float glideFromPitch = 60.0f;  // the lead slides from here; equal to `pitch` where it does not
    float velocity = 1.0f;
    // 0 dull to 1 bright, moving from the note's start to its end.
    float brightness = 0.5f;
    float endBrightness = 0.5f;
    float pan = 0.0f;        // -1 left to 1 right
    std::uint32_t seed = 1;  // of phases and noise: differs from note to note
};

}  // namespace music
