#include "music_layers.h"

#include <array>

namespace music {

namespace {

constexpr int kThemeOctaves = 3;  // above the bass root: F4

}  // namespace

Note& BarWriter::add(Instrument instrument, std::size_t startStep, std::size_t lengthSteps) {
    Note& note = notes_.emplace_back();
    note.instrument = instrument;
    note.startFrame = startStep * kFramesPerStep;
    note.lengthFrames = lengthSteps * kFramesPerStep;
    note.seed =
        static_cast<std::uint32_t>(place_.bar) * 1024u + static_cast<std::uint32_t>(notes_.size());
    return note;
}

Note& BarWriter::addPitched(Instrument instrument, std::size_t startStep, std::size_t lengthSteps,
                            float pitch, const Level& level) {
    Note& note = add(instrument, startStep, lengthSteps);
    note.pitch = pitch;
    note.glideFromPitch = pitch;
    note.velocity = level.velocity;
    note.brightness = level.brightness;
    note.endBrightness = level.endBrightness;
    return note;
}

void BarWriter::pad(const Level& level, bool withSeventh) {
    constexpr std::array<float, 5> kPans = {0.0f, -0.5f, 0.5f, -0.25f, 0.3f};
    const auto voice = [&](int degree, int octaves, std::size_t index) {
        Note& note = addPitched(Instrument::Pad, 0, kStepsPerBar,
                                pitchOfDegree(degree, octaves, place_.transpose), level);
        note.pan = kPans[index];
    };
    voice(foldDegree(place_.chordRoot, -2), 1, 0);
    const std::size_t tones = withSeventh ? 4 : 3;
    for (std::size_t tone = 0; tone < tones; ++tone)
        voice(foldDegree(place_.chordRoot + 2 * static_cast<int>(tone), -1), 2, tone + 1);
}

void BarWriter::choir(float velocity) {
    constexpr std::array<float, 3> kPans = {-0.6f, 0.0f, 0.6f};
    for (std::size_t tone = 0; tone < kPans.size(); ++tone) {
        const int degree = foldDegree(triadDegree(place_.chordRoot, static_cast<int>(tone)), 2);
        Note& note =
            addPitched(Instrument::Choir, 0, kStepsPerBar,
                       pitchOfDegree(degree, 2, place_.transpose), Level::steady(velocity, 0.5f));
        note.pan = kPans[tone];
    }
}

void BarWriter::stabs(std::string_view pattern, const Level& level) {
    constexpr std::array<float, 4> kPans = {-0.4f, 0.4f, -0.15f, 0.2f};
    for (std::size_t step = 0; step < pattern.size(); ++step) {
        if (pattern[step] != 'x') continue;
        for (std::size_t tone = 0; tone < kPans.size(); ++tone) {
            const int degree =
                foldDegree(triadDegree(place_.chordRoot, static_cast<int>(tone)), tone < 3 ? 0 : 7);
            Note& note = addPitched(Instrument::Stab, step, 2,
                                    pitchOfDegree(degree, 2, place_.transpose), level);
            note.pan = kPans[tone];
        }
    }
}

void BarWriter::arpeggio(const Level& level, int octaves) {
    // Which tone of the chord sounds on each sixteenth; accents fall in groups of 3, 3, 4, 3, 3.
    constexpr std::array<int, kStepsPerBar> kEvenBar = {0, 1, 2, 3, 4, 3, 2, 1,
                                                        0, 2, 1, 3, 2, 4, 3, 5};
    constexpr std::array<int, kStepsPerBar> kOddBar = {0, 2, 3, 1, 3, 4, 2, 4,
                                                       5, 4, 3, 2, 4, 3, 2, 1};
    constexpr std::string_view kAccents = "X..X..X...X..X..";
    const auto& tones = place_.bar % 2 == 0 ? kEvenBar : kOddBar;
    const int root = foldDegree(place_.chordRoot, -2);
    for (std::size_t step = 0; step < tones.size(); ++step) {
        const float along = static_cast<float>(step) / kStepsPerBar;
        const float bright = level.brightness + (level.endBrightness - level.brightness) * along;
        const bool accent = kAccents[step] == 'X';
        const float velocity = level.velocity * (accent ? 1.0f : 0.66f);
        Note& note =
            addPitched(Instrument::Pluck, step, 1,
                       pitchOfDegree(triadDegree(root, tones[step]), octaves, place_.transpose),
                       Level::steady(velocity, bright + (accent ? 0.04f : 0.0f)));
        note.pan = step % 2 == 0 ? -0.45f : 0.45f;
    }
}

void BarWriter::sparseBells(float velocity) {
    struct Stroke {
        std::size_t step;
        int tone;
    };
    constexpr std::array<Stroke, 5> kEvenBar = {{{0, 4}, {3, 3}, {6, 2}, {10, 3}, {14, 5}}};
    constexpr std::array<Stroke, 3> kOddBar = {{{0, 4}, {6, 3}, {12, 2}}};
    const std::span<const Stroke> strokes = place_.barInSection % 2 == 0
                                                ? std::span<const Stroke>(kEvenBar)
                                                : std::span<const Stroke>(kOddBar);
    const int root = foldDegree(place_.chordRoot, -2);
    for (const Stroke& stroke : strokes) {
        Note& note = addPitched(Instrument::Bell, stroke.step, 4,
                                pitchOfDegree(triadDegree(root, stroke.tone), 3, place_.transpose),
                                Level::steady(velocity, 0.5f));
        note.pan = 0.2f * static_cast<float>(stroke.tone - 3);
    }
}

// `octavePattern` has an 'x' on the steps that sound an octave up.
void BarWriter::bassLine(std::string_view pattern, std::string_view octavePattern,
                         const Level& level) {
    for (std::size_t step = 0; step < pattern.size(); ++step) {
        if (pattern[step] == '.') continue;
        const int octaves = octavePattern[step] == 'x' ? 1 : 0;
        const float strength = pattern[step] == 'x' ? 1.0f : 0.75f;
        const float along = static_cast<float>(step) / kStepsPerBar;
        const float bright = level.brightness + (level.endBrightness - level.brightness) * along;
        addPitched(Instrument::Bass, step, 1,
                   pitchOfDegree(place_.chordRoot, octaves, place_.transpose),
                   Level::steady(level.velocity * strength, bright));
    }
}

void BarWriter::offbeatBass(const Level& level) {
    if (place_.barInSection % 4 == 3)
        bassLine("..xo..xo..xo..xx", "..............xx", level);
    else
        bassLine("..xo..xo..x...xo", "...............x", level);
}

void BarWriter::rollingBass(const Level& level) {
    if (place_.barInSection % 2 == 1)
        bassLine(".xox.xox.xox.xxx", "............x.x.", level);
    else
        bassLine(".xox.xox.xox.xox", "...............x", level);
}

void BarWriter::longBass(const Level& level) {
    addPitched(Instrument::GrowlBass, 0, 15, pitchOfDegree(place_.chordRoot, 0, place_.transpose),
               level);
}

void BarWriter::subBass(float velocity) {
    addPitched(Instrument::Bass, 0, 15, pitchOfDegree(place_.chordRoot, 0, place_.transpose),
               Level::steady(velocity, 0.05f));
}

void BarWriter::melody(Instrument instrument, std::span<const ThemeNote> theme, const Level& level,
                       int degreesUp, float pan) {
    const int themeBars = (theme.back().step + kStepsPerBar) / kStepsPerBar;
    const int firstStep = place_.barInSection % themeBars * kStepsPerBar;
    const auto pitchOf = [&](const ThemeNote& note) {
        return pitchOfDegree(note.degree + degreesUp, kThemeOctaves, place_.transpose);
    };
    for (std::size_t i = 0; i < theme.size(); ++i) {
        const int step = theme[i].step - firstStep;
        if (step < 0 || step >= kStepsPerBar) continue;
        Note& note =
            addPitched(instrument, static_cast<std::size_t>(step),
                       static_cast<std::size_t>(theme[i].length), pitchOf(theme[i]), level);
        note.pan = pan;
        // Longer notes lean out a little; repeated short ones stay behind.
        if (theme[i].length < 3) note.velocity *= 0.85f;
        const bool follows = i > 0 && theme[i - 1].step + theme[i - 1].length == theme[i].step;
        if (follows) note.glideFromPitch = pitchOf(theme[i - 1]);
    }
}

void BarWriter::riser(int bars, float velocity) {
    addPitched(Instrument::Riser, 0, static_cast<std::size_t>(bars * kStepsPerBar),
               pitchOfDegree(0, 2, place_.transpose), Level::steady(velocity, 0.5f));
}

void BarWriter::reverseCymbal(int beats, float velocity) {
    const auto steps = static_cast<std::size_t>(beats * kStepsPerBar / kBeatsPerBar);
    add(Instrument::ReverseCymbal, kStepsPerBar - steps, steps).velocity = velocity;
}

void BarWriter::downlifter(int bars, float velocity) {
    add(Instrument::Downlifter, 0, static_cast<std::size_t>(bars * kStepsPerBar)).velocity =
        velocity;
}

void BarWriter::impact(float velocity) {
    Note& note = add(Instrument::Impact, 0, kStepsPerBar);
    note.pitch = pitchOfDegree(0, 0, place_.transpose);
    note.velocity = velocity;
}

// Two bars long, so that a wind in every bar never stills.
void BarWriter::wind(float velocity, float brightness) {
    Note& note = add(Instrument::Wind, 0, 2 * kStepsPerBar);
    note.velocity = velocity;
    note.brightness = brightness;
}

}  // namespace music
