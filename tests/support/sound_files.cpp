#include "support/sound_files.h"

#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

int FormatOf(SoundKind kind) {
    switch (kind) {
        case SoundKind::Wav:
            return SF_FORMAT_WAV | SF_FORMAT_PCM_16;
        case SoundKind::WavFloat:
            return SF_FORMAT_WAV | SF_FORMAT_FLOAT;
        case SoundKind::Flac:
            return SF_FORMAT_FLAC | SF_FORMAT_PCM_16;
        case SoundKind::OggVorbis:
            return SF_FORMAT_OGG | SF_FORMAT_VORBIS;
        case SoundKind::Mp3:
            return SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III;
    }
    return 0;
}

void AppendBigEndian(std::vector<std::uint8_t>& file, int value) {
    file.push_back(static_cast<std::uint8_t>(value >> 8));
    file.push_back(static_cast<std::uint8_t>(value));
}

}  // namespace

bool MakeSoundFile(const std::string& path, SoundKind kind, int channels, int framesPerSecond,
                   const std::vector<std::int16_t>& samples) {
    SF_INFO info = {};
    info.channels = channels;
    info.samplerate = framesPerSecond;
    info.format = FormatOf(kind);
    SNDFILE* const file = sf_open(path.c_str(), SFM_WRITE, &info);
    if (file == nullptr) return false;
    const auto frames = static_cast<sf_count_t>(samples.size()) / channels;
    sf_command(file, SFC_SET_SCALE_INT_FLOAT_WRITE, nullptr, SF_TRUE);
    const bool written = sf_writef_short(file, samples.data(), frames) == frames;
    return sf_close(file) == 0 && written;
}

std::vector<std::int16_t> ToneSamples(double herz, double seconds, int framesPerSecond) {
    std::vector<std::int16_t> samples;
    for (int i = 0; i < seconds * framesPerSecond; ++i) {
        const double angle = 2 * std::numbers::pi * herz * i / framesPerSecond;
        samples.push_back(static_cast<std::int16_t>(std::lrint(20000 * std::sin(angle))));
    }
    return samples;
}

std::vector<std::uint8_t> MakeModule() {
    constexpr int kSampleWords = 16;
    std::vector<std::uint8_t> file(20);  // the song's name
    for (int sample = 0; sample < 31; ++sample) {
        file.insert(file.end(), 22, 0);
        AppendBigEndian(file, sample == 0 ? kSampleWords : 0);
        file.push_back(0);                     // fine tune
        file.push_back(sample == 0 ? 64 : 0);  // volume
        AppendBigEndian(file, 0);              // the loop's start and length
        AppendBigEndian(file, sample == 0 ? kSampleWords : 1);
    }
    file.push_back(1);    // patterns in the order list
    file.push_back(127);  // as trackers write it
    file.insert(file.end(), 128, 0);
    for (const char c : {'M', '.', 'K', '.'}) file.push_back(static_cast<std::uint8_t>(c));
    const std::size_t patternAt = file.size();
    file.insert(file.end(), 64 * 4 * 4, 0);
    // Row 0, channel 0: the middle C (period 428) with sample 1.
    file[patternAt] = 428 >> 8;
    file[patternAt + 1] = 428 & 0xFF;
    file[patternAt + 2] = 1 << 4;
    for (int i = 0; i < kSampleWords * 2; ++i) {
        file.push_back(i < kSampleWords ? 100 : static_cast<std::uint8_t>(-100));
    }
    return file;
}
