#include "platform/sound_decoder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "support/picture_files.h"
#include "support/sound_files.h"
#include "support/temp_folder.h"

namespace {

std::vector<std::int16_t> Noise(std::size_t count) {
    std::vector<std::int16_t> samples;
    std::uint32_t state = 1;
    for (std::size_t i = 0; i < count; ++i) {
        state = state * 1664525 + 1013904223;
        samples.push_back(static_cast<std::int16_t>(state >> 16));
    }
    samples[0] = 32767;
    samples[1] = -32768;
    return samples;
}

bool DecodeBytes(const std::vector<std::uint8_t>& file, DecodedSound& sound) {
    const std::atomic<bool> never = false;
    std::string reason;
    const bool decoded = DecodeSoundBytes(file, never, sound, reason);
    EXPECT_EQ(decoded, reason.empty()) << reason;
    return decoded;
}

// The strength of a tone of `herz` in the first channel: 1 for a full-scale sine.
double ToneStrength(const DecodedSound& sound, double herz) {
    double real = 0, imaginary = 0;
    const std::size_t frames = sound.samples.size() / sound.channels;
    for (std::size_t i = 0; i < frames; ++i) {
        const double angle = 2 * M_PI * herz * static_cast<double>(i) / sound.framesPerSecond;
        real += sound.samples[i * sound.channels] * std::cos(angle);
        imaginary += sound.samples[i * sound.channels] * std::sin(angle);
    }
    return 2 * std::hypot(real, imaginary) / static_cast<double>(frames) / 32768;
}

}  // namespace

class SoundDecoder : public ::testing::Test {
  protected:
    TempFolder folder_;
    WorkingFolder inside_{folder_.path()};
    DecodedSound sound_;
    std::string reason_;
};

TEST_F(SoundDecoder, GivesTheExactSamplesOfWavAndFlac) {
    const std::vector<std::int16_t> samples = Noise(20000);
    for (const int channels : {1, 2}) {
        for (const SoundKind kind : {SoundKind::Wav, SoundKind::Flac}) {
            ASSERT_TRUE(MakeSoundFile("a.snd", kind, channels, 44100, samples));
            ASSERT_TRUE(DecodeSoundFile("A.SND", sound_, reason_)) << reason_;
            EXPECT_EQ(sound_.channels, static_cast<std::uint32_t>(channels));
            EXPECT_EQ(sound_.framesPerSecond, 44100u);
            EXPECT_TRUE(sound_.samples == samples);
        }
    }
}

TEST_F(SoundDecoder, TakesFloatsOfOneForFullScale) {
    const std::vector<std::int16_t> samples = Noise(2000);
    ASSERT_TRUE(MakeSoundFile("a.wav", SoundKind::WavFloat, 2, 48000, samples));
    ASSERT_TRUE(DecodeSoundFile("a.wav", sound_, reason_)) << reason_;
    ASSERT_EQ(sound_.samples.size(), samples.size());
    for (std::size_t i = 0; i < samples.size(); ++i) {
        EXPECT_EQ(sound_.samples[i], samples[i]);
    }
}

TEST_F(SoundDecoder, LimitsFloatsPastFullScaleAndTakesNoNumberForSilence) {
    ASSERT_TRUE(MakeSoundFile("a.wav", SoundKind::WavFloat, 1, 48000, {1, 1, 1, 1}));
    std::string content = folder_.read("a.wav");
    const float values[] = {2.0f, -1e30f, std::nanf(""), 0.5f};
    std::memcpy(content.data() + content.size() - sizeof values, values, sizeof values);
    folder_.write("a.wav", content);
    ASSERT_TRUE(DecodeSoundFile("a.wav", sound_, reason_)) << reason_;
    EXPECT_EQ(sound_.samples, (std::vector<std::int16_t>{32767, -32768, 0, 16384}));
}

TEST_F(SoundDecoder, KeepsATonesPitchLengthAndLoudnessThroughOggAndMp3) {
    const std::vector<std::int16_t> tone = ToneSamples(440, 1.0, 44100);
    for (const SoundKind kind : {SoundKind::OggVorbis, SoundKind::Mp3}) {
        ASSERT_TRUE(MakeSoundFile("a.bin", kind, 1, 44100, tone));
        ASSERT_TRUE(DecodeSoundFile("a.bin", sound_, reason_)) << reason_;
        // MP3 adds up to a few frames of 1152 samples at the ends.
        EXPECT_NEAR(static_cast<double>(sound_.samples.size() / sound_.channels), 44100.0, 3000.0);
        // The encoders lose some of the tone, and silence is added: 20000 / 32768 at the start.
        EXPECT_NEAR(ToneStrength(sound_, 440), 20000.0 / 32768, 0.06);
        EXPECT_LT(ToneStrength(sound_, 660), 0.01);
    }
}

TEST_F(SoundDecoder, PlaysTrackerModules) {
    ASSERT_TRUE(DecodeBytes(MakeModule(), sound_));
    EXPECT_EQ(sound_.channels, 2u);
    EXPECT_EQ(sound_.framesPerSecond, 48000u);
    // 64 rows of 6 ticks of 20 ms are 7.68 s; libopenmpt lets the last note ring for 0.1 s more.
    EXPECT_NEAR(static_cast<double>(sound_.samples.size()) / 2 / 48000, 7.73, 0.06);
    const auto [low, high] = std::minmax_element(sound_.samples.begin(), sound_.samples.end());
    EXPECT_GT(*high, 1000);
    EXPECT_LT(*low, -1000);
}

TEST_F(SoundDecoder, MixesManyChannelsDownToTwo) {
    // 6 channels of a WAV without a map; only the first two can be placed.
    std::vector<std::int16_t> samples;
    for (int frame = 0; frame < 100; ++frame) {
        for (const std::int16_t value : {1000, 2000, 0, 0, 0, 0}) samples.push_back(value);
    }
    ASSERT_TRUE(MakeSoundFile("a.wav", SoundKind::Wav, 6, 44100, samples));
    ASSERT_TRUE(DecodeSoundFile("a.wav", sound_, reason_)) << reason_;
    EXPECT_EQ(sound_.channels, 2u);
    ASSERT_EQ(sound_.samples.size(), 200u);
    EXPECT_GT(sound_.samples[0], 0);
    EXPECT_NEAR(sound_.samples[1], 2 * sound_.samples[0], 1);  // each is rounded on its own
}

TEST_F(SoundDecoder, TakesASoundOfOneFrame) {
    ASSERT_TRUE(MakeSoundFile("a.wav", SoundKind::Wav, 2, 44100, {5, -6}));
    ASSERT_TRUE(DecodeSoundFile("a.wav", sound_, reason_)) << reason_;
    EXPECT_EQ(sound_.samples, (std::vector<std::int16_t>{5, -6}));
}

TEST_F(SoundDecoder, GivesAReasonForFilesWithoutSound) {
    EXPECT_FALSE(DecodeSoundFile("missing.mp3", sound_, reason_));
    EXPECT_EQ(reason_, "the file cannot be read");
    EXPECT_FALSE(DecodeSoundFile(".\\", sound_, reason_));
    folder_.write("text.mp3", "this is no sound, and it is long enough to be looked at twice");
    reason_.clear();
    EXPECT_FALSE(DecodeSoundFile("text.mp3", sound_, reason_));
    EXPECT_FALSE(reason_.empty());
    EXPECT_EQ(reason_.find('\n'), std::string::npos);
    ASSERT_TRUE(MakeSoundFile("empty.wav", SoundKind::Wav, 2, 44100, {}));
    EXPECT_FALSE(DecodeSoundFile("empty.wav", sound_, reason_));
    EXPECT_TRUE(sound_.samples.empty());
}

TEST_F(SoundDecoder, StopsAtTenMinutes) {
    // 11 minutes at the lowest rate taken.
    const std::vector<std::int16_t> samples(11 * 60 * 1000, 1);
    ASSERT_TRUE(MakeSoundFile("long.wav", SoundKind::Wav, 1, 1000, samples));
    ASSERT_TRUE(DecodeSoundFile("long.wav", sound_, reason_)) << reason_;
    EXPECT_EQ(sound_.samples.size(), 10u * 60 * 1000);
}

TEST_F(SoundDecoder, GivesUpWhenItIsCancelled) {
    ASSERT_TRUE(MakeSoundFile("a.wav", SoundKind::Wav, 1, 44100, Noise(100000)));
    const std::atomic<bool> cancelled = true;
    EXPECT_FALSE(DecodeSoundFile("a.wav", cancelled, sound_, reason_));
    EXPECT_TRUE(sound_.samples.empty());
}

TEST_F(SoundDecoder, DoesNoHarmWithCutOrChangedFiles) {
    const std::vector<std::int16_t> tone = ToneSamples(300, 0.05, 22050);
    std::uint32_t random = 3;
    for (const SoundKind kind :
         {SoundKind::Wav, SoundKind::Flac, SoundKind::OggVorbis, SoundKind::Mp3}) {
        ASSERT_TRUE(MakeSoundFile("a.bin", kind, 1, 22050, tone));
        const std::string content = folder_.read("a.bin");
        const std::atomic<bool> never = false;
        for (std::size_t size = 0; size < content.size(); size += 1 + content.size() / 100) {
            const std::vector<std::uint8_t> cut(content.begin(),
                                                content.begin() + static_cast<long>(size));
            DecodeSoundBytes(cut, never, sound_, reason_);
            std::vector<std::uint8_t> changed(content.begin(), content.end());
            random = random * 1664525 + 1013904223;
            changed[size] = static_cast<std::uint8_t>(random >> 24);
            DecodeSoundBytes(changed, never, sound_, reason_);
            if (!sound_.samples.empty()) {
                EXPECT_GE(sound_.channels, 1u);
                EXPECT_LE(sound_.channels, 2u);
                EXPECT_GT(sound_.framesPerSecond, 0u);
            }
        }
    }
}

TEST_F(SoundDecoder, DoesNoHarmWithCutOrRandomModules) {
    const std::vector<std::uint8_t> whole = MakeModule();
    const std::atomic<bool> never = false;
    for (std::size_t size = 0; size < whole.size(); size += 37) {
        const std::vector<std::uint8_t> cut(whole.begin(), whole.begin() + static_cast<long>(size));
        DecodeSoundBytes(cut, never, sound_, reason_);
    }
    for (std::uint32_t seed = 0; seed < 50; ++seed) {
        const FileContent noise = NoisePixels(500, 4, 1, seed);
        EXPECT_FALSE(DecodeSoundBytes(noise, never, sound_, reason_));
    }
}
