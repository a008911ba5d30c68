#include "music_transitions.h"

#include <cmath>

#include "music_filter.h"
#include "music_oscillator.h"
#include "music_random.h"
#include "music_voice.h"

namespace music {

namespace {

// How far along the note a frame is, 0 to 1.
float along(std::size_t frame, std::size_t frames) {
    return static_cast<float>(frame) / static_cast<float>(frames);
}

// From `from` to `to` Hertz in equal musical intervals.
float sweepHertz(float from, float to, float amount) {
    return from * std::pow(to / from, amount);
}

// 1, but for the last 4 ms of a note, where it falls to 0 instead of clicking.
float endGain(std::size_t frame, std::size_t frames) {
    return std::min(1.0f, static_cast<float>(frames - frame) * (250.0f * kSecondsPerFrame));
}

}  // namespace

void renderRiser(const Note& note, StereoBuffer& out) {
    StereoSpan span = out.reserve(note.startFrame, note.lengthFrames);
    Random random(note.seed);
    StateVariableFilter noiseLeft, noiseRight;
    SawOscillator sawLeft(random.unit());
    SawOscillator sawRight(random.unit());
    StateVariableFilter sawFilterLeft, sawFilterRight;
    SineOscillator tremolo;
    const float root = hertzOfPitch(note.pitch);
    for (std::size_t i = 0; i < span.frames(); ++i) {
        const float position = along(i, span.frames());
        if (i % kControlFrames == 0) {
            noiseLeft.set(sweepHertz(350.0f, 9000.0f, position), 1.6f);
            noiseRight.set(sweepHertz(380.0f, 9600.0f, position), 1.6f);
            const float pitch = root * std::exp2(position * position);  // up an octave
            sawLeft.setHertz(pitch * 0.994f);
            sawRight.setHertz(pitch * 1.006f);
            sawFilterLeft.set(sweepHertz(200.0f, 6000.0f, position), 0.9f);
            sawFilterRight.set(sweepHertz(200.0f, 6000.0f, position), 0.9f);
            tremolo.setHertz(lerp(2.0f, 16.0f, position * position));
        }
        const float pulse = 1.0f - 0.35f * position * (1.0f + tremolo.next());
        const float level = note.velocity * (0.04f + 0.96f * position * position) * pulse *
                            endGain(i, span.frames());
        const float noiseA = random.noise();
        const float noiseB = random.noise();
        span.add(
            i, level * (0.9f * noiseLeft.band(noiseA) + 0.22f * sawFilterLeft.low(sawLeft.next())),
            level * (0.9f * noiseRight.band(noiseB) + 0.22f * sawFilterRight.low(sawRight.next())));
    }
}

void renderReverseCymbal(const Note& note, StereoBuffer& out) {
    StereoSpan span = out.reserve(note.startFrame, note.lengthFrames);
    Random random(note.seed);
    StateVariableFilter left, right;
    left.set(3800.0f, 0.8f);
    right.set(4100.0f, 0.8f);
    for (std::size_t i = 0; i < span.frames(); ++i) {
        const float position = along(i, span.frames());
        const float level = note.velocity * std::pow(position, 4.0f) * endGain(i, span.frames());
        const float noiseA = random.noise();
        const float noiseB = random.noise();
        span.add(i, level * left.high(noiseA), level * right.high(noiseB));
    }
}

void renderDownlifter(const Note& note, StereoBuffer& out) {
    StereoSpan span = out.reserve(note.startFrame, note.lengthFrames);
    Random random(note.seed);
    StateVariableFilter left, right;
    for (std::size_t i = 0; i < span.frames(); ++i) {
        const float position = along(i, span.frames());
        if (i % kControlFrames == 0) {
            left.set(sweepHertz(9000.0f, 180.0f, position), 1.4f);
            right.set(sweepHertz(8200.0f, 200.0f, position), 1.4f);
        }
        const float rest = 1.0f - position;
        const float attack = std::min(1.0f, static_cast<float>(i) * (200.0f * kSecondsPerFrame));
        const float level = 0.7f * note.velocity * rest * rest * attack;
        const float noiseA = random.noise();
        const float noiseB = random.noise();
        span.add(i, level * left.band(noiseA), level * right.band(noiseB));
    }
}

void renderImpact(const Note& note, StereoBuffer& out) {
    StereoSpan span = out.reserve(note.startFrame, framesOfSeconds(2.8));
    Random random(note.seed);
    const float root = hertzOfPitch(note.pitch);
    Decay boom(0.7f), fall(0.22f), crack(0.09f);
    SineOscillator sine;
    StateVariableFilter left, right;
    left.set(900.0f, 0.7f);
    right.set(1000.0f, 0.7f);
    for (std::size_t i = 0; i < span.frames(); ++i) {
        sine.setHertz(root * (1.0f + 2.2f * fall.next()));
        const float attack = std::min(1.0f, static_cast<float>(i) * (500.0f * kSecondsPerFrame));
        const float level = note.velocity * attack * endGain(i, span.frames());
        const float tone = 0.8f * softClip(1.5f * boom.next() * sine.next());
        const float noise = 1.1f * crack.next();
        const float noiseA = random.noise();
        const float noiseB = random.noise();
        span.add(i, level * (tone + noise * left.low(noiseA)),
                 level * (tone + noise * right.low(noiseB)));
    }
}

// Fades in and out over its whole length, so that two that overlap by half make a steady wind.
void renderWind(const Note& note, StereoBuffer& out) {
    StereoSpan span = out.reserve(note.startFrame, note.lengthFrames);
    Random random(note.seed);
    StateVariableFilter left, right;
    SineOscillator gustLeft(random.unit());
    SineOscillator gustRight(random.unit());
    gustLeft.setHertz(0.31f);
    gustRight.setHertz(0.23f);
    float gainLeft = 0.0f;
    float gainRight = 0.0f;
    for (std::size_t i = 0; i < span.frames(); ++i) {
        const float a = gustLeft.next();
        const float b = gustRight.next();
        if (i % kControlFrames == 0) {
            const float base = lerp(500.0f, 2200.0f, note.brightness);
            left.set(base * (1.0f + 0.4f * a), 2.2f);
            right.set(base * (1.0f + 0.4f * b), 2.2f);
            gainLeft = 0.7f + 0.3f * a;
            gainRight = 0.7f + 0.3f * b;
        }
        const float position = along(i, span.frames());
        const float level = note.velocity * 4.0f * position * (1.0f - position);
        const float noiseA = random.noise();
        const float noiseB = random.noise();
        span.add(i, level * gainLeft * left.band(noiseA), level * gainRight * right.band(noiseB));
    }
}

}  // namespace music
