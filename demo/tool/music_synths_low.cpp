#include "music_filter.h"
#include "music_synths.h"
#include "music_voice.h"

namespace music {

// The rolling bass: a saw and a square an octave apart behind a filter that snaps shut, over a
// plain sine. In the middle, as everything below 150 Hz in this song.
void renderBass(const Note& note, StereoBuffer& out) {
    Envelope envelope({0.003f, 0.35f, 0.7f, 0.035f}, note.lengthFrames);
    StereoSpan span = out.reserve(note.startFrame, envelope.totalFrames());
    Random random(note.seed);
    const float hertz = hertzOfPitch(note.pitch);
    SawOscillator saw(random.unit());
    PulseOscillator square(random.unit());
    SineOscillator sub;
    saw.setHertz(hertz * 2.0f);
    square.setHertz(hertz);
    sub.setHertz(hertz);
    StateVariableFilter filter;
    Decay snap(0.075f);
    for (std::size_t i = 0; i < span.frames(); ++i) {
        const float pluck = snap.next();
        if (i % kControlFrames == 0)
            filter.set(cutoffOfBrightness(brightnessAt(note, i)) * (0.5f + 1.8f * pluck), 1.5f);
        const float tone = filter.low(0.36f * saw.next() + 0.30f * square.next());
        const float level = note.velocity * envelope.next();
        const float value = level * softClip(1.3f * tone + 0.55f * sub.next());
        span.add(i, value, value);
    }
}

// Three saws that beat against each other behind a slow filter: the long notes of the bridge.
// The growl is wide above 150 Hz; its root stays a sine in the middle.
void renderGrowlBass(const Note& note, StereoBuffer& out) {
    Envelope envelope({0.012f, 0.8f, 0.85f, 0.16f}, note.lengthFrames);
    StereoSpan span = out.reserve(note.startFrame, envelope.totalFrames());
    Random random(note.seed);
    const float hertz = hertzOfPitch(note.pitch);
    SawStack<3> left(26.0f, -5.0f, random);
    SawStack<3> right(26.0f, 5.0f, random);
    left.setHertz(hertz * 2.0f);
    right.setHertz(hertz * 2.0f);
    SineOscillator sub;
    SineOscillator wobble(0.75f);
    sub.setHertz(hertz);
    wobble.setHertz(0.5f * static_cast<float>(kBeatsPerMinute) / 60.0f);  // once in two beats
    StateVariableFilter lowLeft, lowRight;
    OnePoleFilter highLeft(150.0f), highRight(150.0f);
    for (std::size_t i = 0; i < span.frames(); ++i) {
        const float lfo = wobble.next();
        if (i % kControlFrames == 0) {
            const float cutoff = cutoffOfBrightness(brightnessAt(note, i) + 0.12f * lfo);
            lowLeft.set(cutoff, 1.8f);
            lowRight.set(cutoff * 1.06f, 1.8f);
        }
        const float level = note.velocity * envelope.next();
        const float root = 0.6f * sub.next();
        const float growlLeft = highLeft.high(softClip(1.8f * lowLeft.low(left.next())));
        const float growlRight = highRight.high(softClip(1.8f * lowRight.low(right.next())));
        span.add(i, level * (root + 0.6f * growlLeft), level * (root + 0.6f * growlRight));
    }
}

}  // namespace music
