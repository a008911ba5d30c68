#include "music_drums.h"

#include <array>
#include <cmath>

#include "music_filter.h"
#include "music_oscillator.h"
#include "music_random.h"
#include "music_voice.h"

namespace music {

namespace {

// Rises over the first half millisecond and falls to zero over the last 10 ms of a stroke.
float edgeGain(std::size_t frame, std::size_t frames) {
    const float in = static_cast<float>(frame) * (2000.0f * kSecondsPerFrame);
    const float out = static_cast<float>(frames - frame) * (100.0f * kSecondsPerFrame);
    return std::min({1.0f, in, out});
}

// Six pulses that share no harmonics: the clang of struck metal.
class Metal {
  public:
    Metal(float scale, Random& random) {
        constexpr std::array<float, 6> kHertz = {317.0f, 431.0f, 563.0f, 739.0f, 911.0f, 1187.0f};
        for (std::size_t i = 0; i < pulses_.size(); ++i) {
            pulses_[i] = PulseOscillator(random.unit());
            pulses_[i].setHertz(kHertz[i] * scale);
        }
    }
    float next() {
        float sum = 0.0f;
        for (PulseOscillator& pulse : pulses_) sum += pulse.next();
        return sum * 0.2f;
    }

  private:
    std::array<PulseOscillator, 6> pulses_;
};

struct CymbalShape {
    float lengthSeconds;
    float decaySeconds;
    float highpassHertz;
    float metalScale;
    float metalShare;  // the rest is noise
    float gain;
};

// Hats, ride and crash: metal and noise above a high-pass; noise differs between the sides.
void renderCymbal(const Note& note, const CymbalShape& shape, StereoBuffer& out) {
    StereoSpan span = out.reserve(note.startFrame, framesOfSeconds(shape.lengthSeconds));
    Random random(note.seed);
    Metal metal(shape.metalScale, random);
    Decay decay(shape.decaySeconds);
    StateVariableFilter left, right;
    const float highpass = shape.highpassHertz * lerp(0.8f, 1.2f, note.brightness);
    left.set(highpass, 0.8f);
    right.set(highpass, 0.8f);
    const PanGains pan(note.pan);
    const float gain = shape.gain * note.velocity;
    const float noiseShare = 1.0f - shape.metalShare;
    for (std::size_t i = 0; i < span.frames(); ++i) {
        const float clang = shape.metalShare * metal.next();
        const float common = clang + 0.6f * noiseShare * random.noise();
        const float side = 0.4f * noiseShare * random.noise();
        const float level = gain * decay.next() * edgeGain(i, span.frames());
        span.add(i, pan.left * level * left.high(common + side),
                 pan.right * level * right.high(common - side));
    }
}

}  // namespace

// A sine that falls from a click to the song's root, driven into soft clipping.
void renderKick(const Note& note, StereoBuffer& out) {
    StereoSpan span = out.reserve(note.startFrame, framesOfSeconds(0.42));
    const float root = hertzOfPitch(note.pitch);
    Random random(note.seed);
    Decay body(0.15f), thump(0.030f), click(0.0045f);
    OnePoleFilter clickTone(6000.0f);
    SineOscillator sine;
    for (std::size_t i = 0; i < span.frames(); ++i) {
        const float snap = click.next();
        sine.setHertz(root + 150.0f * thump.next() + 1100.0f * snap);
        const float tone = softClip(1.7f * body.next() * sine.next());
        const float tick = 0.16f * snap * clickTone.low(random.noise());
        const float value = note.velocity * edgeGain(i, span.frames()) * (tone + tick);
        span.add(i, value, value);
    }
}

void renderSnare(const Note& note, StereoBuffer& out) {
    StereoSpan span = out.reserve(note.startFrame, framesOfSeconds(0.38));
    Random random(note.seed);
    Decay bodyDecay(0.055f), wireDecay(0.085f), bend(0.02f);
    SineOscillator low, high;
    StateVariableFilter wiresLeft, wiresRight;
    wiresLeft.set(lerp(1100.0f, 2600.0f, note.brightness), 0.8f);
    wiresRight.set(lerp(1200.0f, 2700.0f, note.brightness), 0.8f);
    for (std::size_t i = 0; i < span.frames(); ++i) {
        const float pitch = 1.0f + 0.6f * bend.next();
        low.setHertz(182.0f * pitch);
        high.setHertz(331.0f * pitch);
        const float body = bodyDecay.next() * (0.75f * low.next() + 0.4f * high.next());
        const float wires = 0.62f * wireDecay.next();
        const float common = random.noise();
        const float side = 0.5f * random.noise();
        const float gain = note.velocity * edgeGain(i, span.frames());
        span.add(i, gain * softClip(body + wires * wiresLeft.high(common + side)),
                 gain * softClip(body + wires * wiresRight.high(common - side)));
    }
}

// Three short bursts, then the room: many hands that do not quite meet.
void renderClap(const Note& note, StereoBuffer& out) {
    StereoSpan span = out.reserve(note.startFrame, framesOfSeconds(0.42));
    constexpr std::size_t kBurstFrames = 528;  // 11 ms
    constexpr std::size_t kBursts = 3;
    Random random(note.seed);
    StateVariableFilter left, right;
    left.set(1450.0f, 1.3f);
    right.set(1580.0f, 1.3f);
    Decay burst(0.006f), room(0.075f);
    for (std::size_t i = 0; i < span.frames(); ++i) {
        if (i % kBurstFrames == 0 && i <= kBursts * kBurstFrames) burst = Decay(0.006f);
        const float level =
            i < kBursts * kBurstFrames ? burst.next() : 0.75f * room.next() + 0.25f * burst.next();
        const float common = random.noise();
        const float side = 0.7f * random.noise();
        const float gain = 2.3f * note.velocity * level * edgeGain(i, span.frames());
        span.add(i, gain * left.band(common + side), gain * right.band(common - side));
    }
}

void renderClosedHat(const Note& note, StereoBuffer& out) {
    renderCymbal(note, {0.16f, 0.026f, 8200.0f, 5.3f, 0.45f, 2.0f}, out);
}

void renderOpenHat(const Note& note, StereoBuffer& out) {
    renderCymbal(note, {0.42f, 0.13f, 7600.0f, 5.3f, 0.45f, 1.6f}, out);
}

void renderRide(const Note& note, StereoBuffer& out) {
    renderCymbal(note, {0.9f, 0.22f, 5200.0f, 3.1f, 0.85f, 1.2f}, out);
}

void renderCrash(const Note& note, StereoBuffer& out) {
    renderCymbal(note, {3.4f, 0.75f, 3600.0f, 3.7f, 0.35f, 1.4f}, out);
}

// Swells in and dies away: seeds in a can.
void renderShaker(const Note& note, StereoBuffer& out) {
    StereoSpan span = out.reserve(note.startFrame, framesOfSeconds(0.11));
    Random random(note.seed);
    StateVariableFilter band;
    band.set(6400.0f, 1.4f);
    const PanGains pan(note.pan);
    for (std::size_t i = 0; i < span.frames(); ++i) {
        const float along = static_cast<float>(i) / static_cast<float>(span.frames());
        const float shape = along < 0.3f ? along / 0.3f : (1.0f - along) / 0.7f;
        const float value = 1.2f * note.velocity * shape * shape * band.band(random.noise());
        span.add(i, pan.left * value, pan.right * value);
    }
}

void renderTom(const Note& note, StereoBuffer& out) {
    StereoSpan span = out.reserve(note.startFrame, framesOfSeconds(0.5));
    const float root = hertzOfPitch(note.pitch);
    Random random(note.seed);
    Decay body(0.13f), bend(0.06f), skin(0.015f);
    SineOscillator sine;
    OnePoleFilter skinTone(2500.0f);
    const PanGains pan(note.pan);
    for (std::size_t i = 0; i < span.frames(); ++i) {
        sine.setHertz(root * (1.0f + 0.8f * bend.next()));
        const float tone = softClip(1.4f * body.next() * sine.next());
        const float hit = 0.5f * skin.next() * skinTone.low(random.noise());
        const float value = note.velocity * edgeGain(i, span.frames()) * (tone + hit);
        span.add(i, pan.left * value, pan.right * value);
    }
}

}  // namespace music
