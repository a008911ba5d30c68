// The demo's music: a 230 second electronic track, composed and synthesised by this code. Depends
// on libsndfile for the file. No shared state: any thread, also several at once.
#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <vector>

inline constexpr int kMusicSampleRate = 48000;
inline constexpr float kMusicBeatsPerMinute = 120.0f;  // 0.5 s a beat, 2 s a bar of four beats
inline constexpr float kMusicSeconds = 230.0f;

struct MusicSection {
    const char* name;
    float startSeconds;  // on a bar
    float intensity;     // 0 calm to 1 all out
};

// The song's sections in order; the first begins at 0, each ends where the next begins, and the
// last at kMusicSeconds.
std::vector<MusicSection> musicSections();

// A stretch of the song, left and right interleaved, kMusicSampleRate frames a second. The same
// arguments give the same samples. Notes and echoes from up to eight seconds before are in; older
// echoes are not, so that samples can differ from the whole song's by what has died away by then.
// What lies outside the song is cut off.
std::vector<float> renderMusic(double startSeconds, double lengthSeconds);

// Synthesises the whole song into an Ogg Vorbis file. When that fails: false, and the reason in
// `error`; what has been written of the file is then removed.
bool SynthesiseMusic(const std::filesystem::path& oggFile, std::string& error);
