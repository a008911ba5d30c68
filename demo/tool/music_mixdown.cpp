#include "music_mixdown.h"

#include <algorithm>
#include <cmath>

#include "music_instruments.h"

namespace music {

// Shares of a bus that go straight to the mix, to the echoes and to the hall; `duck`: how far the
// kick pushes it down.
struct Mixdown::BusSettings {
    float gain;
    float duck;
    float delaySend;
    float reverbSend;
};

const std::array<Mixdown::BusSettings, Mixdown::kBusCount> Mixdown::kSettings = {{
    {0.62f, 0.00f, 0.00f, 0.00f},  // kick
    {0.44f, 0.10f, 0.00f, 0.10f},  // drums
    {0.42f, 0.65f, 0.00f, 0.00f},  // bass
    {0.24f, 0.60f, 0.00f, 0.24f},  // chords
    {0.26f, 0.40f, 0.34f, 0.22f},  // arpeggio
    {0.31f, 0.22f, 0.30f, 0.24f},  // lead
    {0.19f, 0.20f, 0.40f, 0.45f},  // bells and keys
    {0.58f, 0.30f, 0.00f, 0.25f},  // transitions
}};

Mixdown::BusIndex Mixdown::busOf(Instrument instrument) {
    switch (instrument) {
        case Instrument::Kick:
            return kKick;
        case Instrument::Snare:
        case Instrument::Clap:
        case Instrument::ClosedHat:
        case Instrument::OpenHat:
        case Instrument::Shaker:
        case Instrument::Ride:
        case Instrument::Crash:
        case Instrument::Tom:
            return kDrums;
        case Instrument::Bass:
        case Instrument::GrowlBass:
            return kBass;
        case Instrument::Pad:
        case Instrument::Choir:
        case Instrument::Stab:
            return kChords;
        case Instrument::Pluck:
            return kArpeggio;
        case Instrument::Lead:
            return kLead;
        case Instrument::Keys:
        case Instrument::Bell:
            return kBells;
        case Instrument::Riser:
        case Instrument::ReverseCymbal:
        case Instrument::Downlifter:
        case Instrument::Impact:
        case Instrument::Wind:
            return kSpace;
    }
    return kSpace;
}

Mixdown::Mixdown(int firstBar)
    : bar_(firstBar),
      buses_(kBusCount, StereoBuffer((1 + kLongestNoteBars) * kFramesPerBar)),
      ducking_(kFramesPerBar),
      left_(kFramesPerBar),
      right_(kFramesPerBar),
      interleaved_(2 * kFramesPerBar),
      delay_(0.42f),
      reverb_(2.6f),
      limiter_(kCeiling, 0.12f) {}

std::span<const float> Mixdown::nextBar() {
    playNotes();
    fillDucking();
    mixBuses();
    master();
    for (StereoBuffer& bus : buses_) bus.dropFront(kFramesPerBar);
    ++bar_;
    return interleaved_;
}

void Mixdown::playNotes() {
    kickFrames_.clear();
    for (const Note& note : notesOfBar(bar_)) {
        if (note.instrument == Instrument::Kick) kickFrames_.push_back(note.startFrame);
        renderNote(note, buses_[busOf(note.instrument)]);
    }
    std::sort(kickFrames_.begin(), kickFrames_.end());
}

void Mixdown::fillDucking() {
    auto kick = kickFrames_.begin();
    for (std::size_t frame = 0; frame < kFramesPerBar; ++frame) {
        for (; kick != kickFrames_.end() && *kick == frame; ++kick) ducker_.trigger();
        ducking_[frame] = ducker_.next();
    }
}

void Mixdown::mixBuses() {
    constexpr float kDelayReturn = 0.9f;
    constexpr float kDelayToReverb = 0.25f;
    constexpr float kReverbReturn = 0.5f;
    constexpr float kReverbDuck = 0.35f;
    for (std::size_t frame = 0; frame < kFramesPerBar; ++frame) {
        StereoSample dry, toDelay, toReverb;
        for (std::size_t i = 0; i < kBusCount; ++i) {
            const BusSettings& bus = kSettings[i];
            const float gain = bus.gain * (1.0f - bus.duck * ducking_[frame]);
            const float left = gain * buses_[i].left()[frame];
            const float right = gain * buses_[i].right()[frame];
            dry.left += left;
            dry.right += right;
            toDelay.left += bus.delaySend * left;
            toDelay.right += bus.delaySend * right;
            toReverb.left += bus.reverbSend * left;
            toReverb.right += bus.reverbSend * right;
        }
        const StereoSample echo = delay_.process(toDelay);
        const StereoSample hall = reverb_.process({toReverb.left + kDelayToReverb * echo.left,
                                                   toReverb.right + kDelayToReverb * echo.right});
        const float hallGain = kReverbReturn * (1.0f - kReverbDuck * ducking_[frame]);
        left_[frame] = dry.left + kDelayReturn * echo.left + hallGain * hall.left;
        right_[frame] = dry.right + kDelayReturn * echo.right + hallGain * hall.right;
    }
}

void Mixdown::master() {
    constexpr std::size_t kControlFrames = 32;
    constexpr float kDrive = 0.82f;
    const MixSweep sweep = mixSweepOfBar(bar_);
    for (std::size_t frame = 0; frame < kFramesPerBar; ++frame) {
        if (frame % kControlFrames == 0) {
            const float along = static_cast<float>(frame) / kFramesPerBar;
            const float hertz = lerp(sweep.startHertz, sweep.endHertz, along);
            highpassLeft_.set(hertz, 0.7f);
            highpassRight_.set(hertz, 0.7f);
        }
        // Rounds the tallest peaks before the limiter has to duck the whole mix for them.
        left_[frame] = softClip(kDrive * highpassLeft_.high(left_[frame]));
        right_[frame] = softClip(kDrive * highpassRight_.high(right_[frame]));
    }
    fadeOut();
    limiter_.process(left_, right_);
    for (std::size_t frame = 0; frame < kFramesPerBar; ++frame) {
        interleaved_[2 * frame] = left_[frame];
        interleaved_[2 * frame + 1] = right_[frame];
    }
}

// The last chord's ring goes to exact silence a little before the song's last frame.
void Mixdown::fadeOut() {
    constexpr float kFadeStartSeconds = 225.5f;
    constexpr float kFadeEndSeconds = 229.9f;
    const float barSeconds = kSecondsPerBar * static_cast<float>(bar_);
    if (barSeconds + kSecondsPerBar <= kFadeStartSeconds) return;
    for (std::size_t frame = 0; frame < kFramesPerBar; ++frame) {
        const float seconds = barSeconds + static_cast<float>(frame) * kSecondsPerFrame;
        const float left = (kFadeEndSeconds - seconds) / (kFadeEndSeconds - kFadeStartSeconds);
        const float gain = std::clamp(left, 0.0f, 1.0f);
        left_[frame] *= gain * gain;
        right_[frame] *= gain * gain;
    }
}

}  // namespace music
