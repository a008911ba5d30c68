#include "music_harmony.h"

namespace music {

namespace {

constexpr int kDegrees = static_cast<int>(kScaleSemitones.size());

// Division that rounds towards minus infinity, so that degrees below the root fall an octave down.
int octaveOfDegree(int degree) {
    return (degree >= 0 ? degree : degree - kDegrees + 1) / kDegrees;
}

}  // namespace

float pitchOfDegree(int degree, int octaves, int transpose) {
    const int octave = octaveOfDegree(degree);
    const int semitones = kScaleSemitones[static_cast<std::size_t>(degree - octave * kDegrees)];
    return static_cast<float>(kBassRootPitch + transpose + 12 * (octave + octaves) + semitones);
}

int foldDegree(int degree, int low) {
    const int above = degree - low;
    return low + above - octaveOfDegree(above) * kDegrees;
}

int triadDegree(int chordRoot, int tone) {
    return chordRoot + 2 * (tone % 3) + kDegrees * (tone / 3);
}

}  // namespace music
