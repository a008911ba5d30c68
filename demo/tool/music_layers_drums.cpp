#include <algorithm>

#include "music_layers.h"
#include "music_oscillator.h"
#include "music_random.h"

namespace music {

namespace {

float strengthOf(char stroke) {
    switch (stroke) {
        case 'X':
            return 1.0f;
        case 'x':
            return 0.82f;
        case 'o':
            return 0.52f;
        case '-':
            return 0.28f;
        default:
            return 0.0f;
    }
}

}  // namespace

void BarWriter::drum(Instrument instrument, std::string_view pattern, float velocity, float pan) {
    const auto instrumentNumber = static_cast<std::uint32_t>(instrument);
    Random hand(static_cast<std::uint32_t>(place_.bar) * 64u + instrumentNumber);
    const std::size_t steps = std::min<std::size_t>(pattern.size(), kStepsPerBar);
    for (std::size_t step = 0; step < steps; ++step) {
        const float strength = strengthOf(pattern[step]);
        if (strength == 0.0f) continue;
        Note& note = add(instrument, step, 1);
        // No hand strikes twice alike; the kick is a machine and does.
        const float human = instrument == Instrument::Kick ? 1.0f : 0.94f + 0.06f * hand.unit();
        note.velocity = velocity * strength * human;
        note.brightness = 0.35f + 0.3f * strength;
        note.pan = pan;
        if (instrument == Instrument::Kick) note.pitch = pitchOfDegree(0, 0, place_.transpose);
    }
}

void BarWriter::snareRoll(float from, float to) {
    for (std::size_t step = 0; step < kStepsPerBar; ++step) {
        const float intensity = lerp(from, to, static_cast<float>(step) / kStepsPerBar);
        if (intensity < 0.25f ? step % 4 != 0 : intensity < 0.5f && step % 2 != 0) continue;
        Note& note = add(Instrument::Snare, step, 1);
        note.velocity = (0.25f + 0.5f * intensity) * (step % 4 == 0 ? 1.0f : 0.8f);
        note.brightness = intensity;
    }
}

void BarWriter::tomFill(int beats) {
    const std::size_t firstStep = kStepsPerBar - static_cast<std::size_t>(beats) * 4;
    constexpr std::string_view kRhythm = "x.xxx.xxx.xxxxxx";
    for (std::size_t step = firstStep; step < kStepsPerBar; ++step) {
        if (kRhythm[step] != 'x') continue;
        const float along =
            static_cast<float>(step - firstStep) / static_cast<float>(kStepsPerBar - firstStep);
        Note& note = add(Instrument::Tom, step, 1);
        note.pitch = lerp(56.0f, 41.0f, along) + static_cast<float>(place_.transpose);
        note.pan = lerp(-0.6f, 0.6f, along);
        note.velocity = lerp(0.4f, 0.65f, along);
    }
}

}  // namespace music
