#include <array>

#include "music_filter.h"
#include "music_synths.h"
#include "music_voice.h"

namespace music {

namespace {

// What makes a wall of saws a soft pad or a hard stab.
struct WallShape {
    EnvelopeShape envelope;
    float spreadCents;
    float resonance;
    float filterSnap;         // octaves that the filter starts above its resting place
    float filterSnapSeconds;  // and how fast it comes down
    float gain;
};

// Three detuned saws a side behind a low-pass that follows the note's brightness.
void renderWall(const Note& note, const WallShape& shape, StereoBuffer& out) {
    Envelope envelope(shape.envelope, note.lengthFrames);
    StereoSpan span = out.reserve(note.startFrame, envelope.totalFrames());
    Random random(note.seed);
    SawStack<3> left(shape.spreadCents, -2.5f, random);
    SawStack<3> right(shape.spreadCents, 2.5f, random);
    left.setHertz(hertzOfPitch(note.pitch));
    right.setHertz(hertzOfPitch(note.pitch));
    StateVariableFilter filterLeft, filterRight;
    SineOscillator drift(random.unit());
    drift.setHertz(0.21f);
    Decay snap(shape.filterSnapSeconds);
    const PanGains pan(note.pan);
    const float gain = shape.gain * note.velocity;
    for (std::size_t i = 0; i < span.frames(); ++i) {
        const float sway = drift.next();
        const float snapped = snap.next();
        if (i % kControlFrames == 0) {
            const float cutoff =
                cutoffOfBrightness(brightnessAt(note, i)) * std::exp2(shape.filterSnap * snapped);
            filterLeft.set(cutoff * (1.0f + 0.15f * sway), shape.resonance);
            filterRight.set(cutoff * (1.0f - 0.15f * sway), shape.resonance);
        }
        const float level = gain * envelope.next();
        span.add(i, pan.left * level * filterLeft.low(left.next()),
                 pan.right * level * filterRight.low(right.next()));
    }
}

// One resonance of a mouth that sings "ah" (centre and strength as in textbooks of phonetics).
struct Formant {
    float hertz;
    float resonance;
    float gain;
};
constexpr std::array<Formant, 4> kFormantsAh = {
    {{730.0f, 5.0f, 1.0f}, {1090.0f, 7.0f, 0.6f}, {2440.0f, 9.0f, 0.3f}, {3400.0f, 9.0f, 0.18f}}};

// The same mouth for one ear; `size` shifts all resonances, as between two singers.
class Mouth {
  public:
    explicit Mouth(float size) {
        for (std::size_t i = 0; i < kFormantsAh.size(); ++i)
            filters_[i].set(kFormantsAh[i].hertz * size, kFormantsAh[i].resonance);
    }
    float process(float voice) {
        float sum = 0.12f * voice;
        for (std::size_t i = 0; i < kFormantsAh.size(); ++i)
            sum += kFormantsAh[i].gain * filters_[i].band(voice);
        return sum;
    }

  private:
    std::array<StateVariableFilter, kFormantsAh.size()> filters_;
};

}  // namespace

void renderPad(const Note& note, StereoBuffer& out) {
    renderWall(note, {{0.18f, 1.0f, 0.9f, 0.7f}, 22.0f, 0.8f, 0.0f, 0.1f, 1.0f}, out);
}

void renderStab(const Note& note, StereoBuffer& out) {
    renderWall(note, {{0.003f, 0.16f, 0.35f, 0.12f}, 30.0f, 1.1f, 1.6f, 0.09f, 1.6f}, out);
}

void renderChoir(const Note& note, StereoBuffer& out) {
    Envelope envelope({0.35f, 1.0f, 0.9f, 0.9f}, note.lengthFrames);
    StereoSpan span = out.reserve(note.startFrame, envelope.totalFrames());
    Random random(note.seed);
    SawStack<2> left(14.0f, -4.0f, random);
    SawStack<2> right(14.0f, 4.0f, random);
    Mouth mouthLeft(0.97f), mouthRight(1.04f);
    SineOscillator vibrato(random.unit());
    vibrato.setHertz(4.7f);
    OnePoleFilter breathLeft(5000.0f), breathRight(5000.0f);
    const PanGains pan(note.pan);
    const float hertz = hertzOfPitch(note.pitch);
    for (std::size_t i = 0; i < span.frames(); ++i) {
        const float sway = vibrato.next();
        if (i % kControlFrames == 0) {
            left.setHertz(hertz * (1.0f + 0.0035f * sway));
            right.setHertz(hertz * (1.0f - 0.0030f * sway));
        }
        const float level = 2.4f * note.velocity * envelope.next();
        span.add(i, pan.left * level * breathLeft.low(mouthLeft.process(left.next())),
                 pan.right * level * breathRight.low(mouthRight.process(right.next())));
    }
}

}  // namespace music
