#include "music_filter.h"
#include "music_synths.h"
#include "music_voice.h"

namespace music {

namespace {

// The lead's pitch over time: a slide from the note before, then vibrato that comes in late.
class SungPitch {
  public:
    explicit SungPitch(const Note& note)
        : target_(note.pitch), offset_(note.glideFromPitch - note.pitch), slide_(0.022f) {
        vibrato_.setHertz(5.4f);
    }
    float next(std::size_t frame) {
        const float seconds = static_cast<float>(frame) * kSecondsPerFrame;
        const float depth = 0.16f * std::clamp((seconds - 0.22f) / 0.3f, 0.0f, 1.0f);
        return target_ + offset_ * slide_.next() + depth * vibrato_.next();
    }

  private:
    float target_;
    float offset_;
    Decay slide_;
    SineOscillator vibrato_;
};

}  // namespace

// The arpeggio: a pulse between two saws, plucked by its filter.
void renderPluck(const Note& note, StereoBuffer& out) {
    Envelope envelope({0.002f, 0.22f, 0.12f, 0.16f}, note.lengthFrames);
    StereoSpan span = out.reserve(note.startFrame, envelope.totalFrames());
    Random random(note.seed);
    SawOscillator sawLeft(random.unit());
    SawOscillator sawRight(random.unit());
    PulseOscillator pulse(random.unit());
    const float hertz = hertzOfPitch(note.pitch);
    sawLeft.setHertz(hertz * 0.9955f);
    sawRight.setHertz(hertz * 1.0045f);
    pulse.setHertz(hertz);
    pulse.setWidth(0.32f);
    StateVariableFilter left, right;
    Decay snap(0.07f);
    const PanGains pan(note.pan);
    for (std::size_t i = 0; i < span.frames(); ++i) {
        const float snapped = snap.next();
        if (i % kControlFrames == 0) {
            const float cutoff =
                cutoffOfBrightness(note.brightness) * (0.45f + 2.2f * snapped * snapped);
            left.set(cutoff, 1.9f);
            right.set(cutoff * 1.05f, 1.9f);
        }
        const float middle = 0.5f * pulse.next();
        const float level = note.velocity * envelope.next();
        span.add(i, pan.left * level * left.low(middle + 0.6f * sawLeft.next()),
                 pan.right * level * right.low(middle + 0.6f * sawRight.next()));
    }
}

void renderLead(const Note& note, StereoBuffer& out) {
    Envelope envelope({0.006f, 0.5f, 0.75f, 0.11f}, note.lengthFrames);
    StereoSpan span = out.reserve(note.startFrame, envelope.totalFrames());
    Random random(note.seed);
    SawStack<2> left(13.0f, -6.0f, random);
    SawStack<2> right(13.0f, 6.0f, random);
    PulseOscillator pulse(random.unit());
    SungPitch pitch(note);
    SineOscillator widthMotion(random.unit());
    widthMotion.setHertz(0.8f);
    StateVariableFilter filterLeft, filterRight;
    Decay snap(0.18f);
    const PanGains pan(note.pan);
    for (std::size_t i = 0; i < span.frames(); ++i) {
        const float sung = pitch.next(i);
        const float width = widthMotion.next();
        const float snapped = snap.next();
        if (i % kControlFrames == 0) {
            const float hertz = hertzOfPitch(sung);
            left.setHertz(hertz);
            right.setHertz(hertz);
            pulse.setHertz(hertz);
            pulse.setWidth(0.5f + 0.22f * width);
            const float cutoff =
                cutoffOfBrightness(brightnessAt(note, i)) * (0.8f + 0.9f * snapped);
            filterLeft.set(cutoff, 1.2f);
            filterRight.set(cutoff, 1.2f);
        }
        const float middle = 0.4f * pulse.next();
        const float level = note.velocity * envelope.next();
        span.add(i, pan.left * level * filterLeft.low(middle + 0.75f * left.next()),
                 pan.right * level * filterRight.low(middle + 0.75f * right.next()));
    }
}

// An electric piano: frequency modulation at the unison for the body, a high tine for the touch.
void renderKeys(const Note& note, StereoBuffer& out) {
    Envelope envelope({0.003f, 1.1f, 0.0f, 0.35f}, note.lengthFrames);
    StereoSpan span = out.reserve(note.startFrame, envelope.totalFrames());
    const float hertz = hertzOfPitch(note.pitch);
    SineOscillator modulator, tine, tremolo(0.25f);
    Phase carrierLeft, carrierRight;
    modulator.setHertz(hertz);
    carrierLeft.setHertz(hertz * 0.9990f);
    carrierRight.setHertz(hertz * 1.0010f);
    tine.setHertz(hertz * 7.0f);
    tremolo.setHertz(3.1f);
    Decay bodyFade(0.45f), tineFade(0.09f);
    for (std::size_t i = 0; i < span.frames(); ++i) {
        const float bend = (0.05f + 0.22f * note.brightness * bodyFade.next()) * modulator.next() +
                           0.05f * tineFade.next() * tine.next();
        const float sway = 0.22f * tremolo.next();
        const float level = note.velocity * envelope.next();
        span.add(i, level * (1.0f + sway) * sineOfTurns(carrierLeft.value() + bend),
                 level * (1.0f - sway) * sineOfTurns(carrierRight.value() + bend));
        carrierLeft.advance();
        carrierRight.advance();
    }
}

// A glass bell: modulation at an inharmonic ratio that fades faster than the tone.
void renderBell(const Note& note, StereoBuffer& out) {
    Envelope envelope({0.002f, 0.75f, 0.0f, 0.9f}, note.lengthFrames);
    StereoSpan span = out.reserve(note.startFrame, envelope.totalFrames());
    const float hertz = hertzOfPitch(note.pitch);
    SineOscillator modulatorLeft, modulatorRight(0.25f);
    Phase carrier;
    modulatorLeft.setHertz(hertz * 3.497f);
    modulatorRight.setHertz(hertz * 3.503f);
    carrier.setHertz(hertz);
    Decay shimmer(0.32f);
    const PanGains pan(note.pan);
    for (std::size_t i = 0; i < span.frames(); ++i) {
        const float bend = 0.26f * note.brightness * shimmer.next();
        const float level = note.velocity * envelope.next();
        span.add(i, pan.left * level * sineOfTurns(carrier.value() + bend * modulatorLeft.next()),
                 pan.right * level * sineOfTurns(carrier.value() + bend * modulatorRight.next()));
        carrier.advance();
    }
}

}  // namespace music
