// Writes one bar of one part (a bass line, an arpeggio, a drum pattern) as notes. Depends on
// music_note.h, music_harmony.h and music_themes.h; a writer lives for one bar, on one thread.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "music_harmony.h"
#include "music_note.h"
#include "music_themes.h"
#include "music_timing.h"

namespace music {

// Where a bar stands in its section and in the harmony.
struct BarPlace {
    int bar = 0;           // of the song
    int barInSection = 0;  // from 0
    int sectionBars = 8;
    int chordRoot = 0;  // degree
    int transpose = 0;  // semitones

    // How much of the section has gone at the bar's start and end, 0 to 1.
    float progress() const { return static_cast<float>(barInSection) / sectionBars; }
    float endProgress() const { return static_cast<float>(barInSection + 1) / sectionBars; }
};

struct Level {
    float velocity = 1.0f;
    float brightness = 0.5f;
    float endBrightness = 0.5f;

    static Level steady(float velocity, float brightness) {
        return {velocity, brightness, brightness};
    }
};

class BarWriter {
  public:
    BarWriter(const BarPlace& place, std::vector<Note>& notes) : place_(place), notes_(notes) {}
    const BarPlace& place() const { return place_; }

    // Drums (music_layers_drums.cpp). A pattern has one character a sixteenth, and rests after its
    // end: 'X' is struck with full strength, 'x' normally, 'o' softly, '-' as a ghost, else rest.
    void drum(Instrument instrument, std::string_view pattern, float velocity = 1.0f,
              float pan = 0.0f);
    // Snare strokes that come closer and louder: `from` and `to` are the roll's intensity at the
    // bar's ends; below 0.5 eighths, above sixteenths.
    void snareRoll(float from, float to);
    // Tumbling toms in the bar's last `beats` beats.
    void tomFill(int beats);

    // Chords and patterns (music_layers.cpp).
    void pad(const Level& level, bool withSeventh = false);
    void choir(float velocity);
    void stabs(std::string_view pattern, const Level& level);
    void arpeggio(const Level& level, int octaves = 3);
    void sparseBells(float velocity);
    void offbeatBass(const Level& level);
    void rollingBass(const Level& level);
    void longBass(const Level& level);
    // The chord's root as one sustained low note, without growl.
    void subBass(float velocity);

    // Melodies: the bar of `theme` that is barInSection modulo the theme's length.
    // `degreesUp`: 0 for the tune itself, -2 for the third below, 7 for an octave up.
    void melody(Instrument instrument, std::span<const ThemeNote> theme, const Level& level,
                int degreesUp = 0, float pan = 0.0f);

    // Transitions; `bars` may reach beyond this bar.
    void riser(int bars, float velocity);
    void reverseCymbal(int beats, float velocity);  // ends with the bar
    void downlifter(int bars, float velocity);
    void impact(float velocity);
    void wind(float velocity, float brightness);

  private:
    Note& add(Instrument instrument, std::size_t startStep, std::size_t lengthSteps);
    Note& addPitched(Instrument instrument, std::size_t startStep, std::size_t lengthSteps,
                     float pitch, const Level& level);
    void bassLine(std::string_view pattern, std::string_view octavePattern, const Level& level);

    BarPlace place_;
    std::vector<Note>& notes_;
};

}  // namespace music
