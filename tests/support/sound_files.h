// Sound files that the tests make themselves.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

enum class SoundKind { Wav, WavFloat, Flac, OggVorbis, Mp3 };

// `samples`: interleaved, full scale 16 bits. False when this machine cannot encode the kind.
bool MakeSoundFile(const std::string& path, SoundKind kind, int channels, int framesPerSecond,
                   const std::vector<std::int16_t>& samples);

// A tone, mono.
std::vector<std::int16_t> ToneSamples(double herz, double seconds, int framesPerSecond);

// A ProTracker module of one pattern of 64 rows that plays a square wave on its first row; it lasts
// about 7.7 seconds.
std::vector<std::uint8_t> MakeModule();
