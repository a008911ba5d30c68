#include "music.h"

#include <sndfile.h>

#include <algorithm>
#include <memory>
#include <system_error>
#include <utility>

#include "music_arrangement.h"
#include "music_instruments.h"
#include "music_mixdown.h"
#include "music_timing.h"

static_assert(kMusicSampleRate == music::kSampleRate);
static_assert(kMusicBeatsPerMinute == music::kBeatsPerMinute);
static_assert(kMusicSeconds == music::kSongBars * music::kSecondsPerBar);

namespace {

struct SoundFileCloser {
    void operator()(SNDFILE* file) const { sf_close(file); }
};
using SoundFile = std::unique_ptr<SNDFILE, SoundFileCloser>;

constexpr double kVorbisQuality = 0.6;  // about 190 kbit/s

// Hands the samples over in small blocks: the Vorbis encoder keeps each on the stack.
bool writeFrames(SNDFILE* file, std::span<const float> interleaved) {
    constexpr std::size_t kBlockFrames = 4096;
    while (!interleaved.empty()) {
        const std::size_t count = std::min(interleaved.size(), 2 * kBlockFrames);
        const auto frames = static_cast<sf_count_t>(count / 2);
        if (sf_writef_float(file, interleaved.data(), frames) != frames) return false;
        interleaved = interleaved.subspan(count);
    }
    return true;
}

SoundFile openForWriting(const std::filesystem::path& oggFile) {
    SF_INFO info{};
    info.samplerate = music::kSampleRate;
    info.channels = 2;
    info.format = SF_FORMAT_OGG | SF_FORMAT_VORBIS;
    SoundFile file(sf_open(oggFile.c_str(), SFM_WRITE, &info));
    double quality = kVorbisQuality;
    if (file) sf_command(file.get(), SFC_SET_VBR_ENCODING_QUALITY, &quality, sizeof(quality));
    return file;
}

// Writes all bars and closes the file; whether all of it arrived.
bool writeSong(SoundFile file) {
    music::Mixdown mixdown(0);
    for (int bar = 0; bar < music::kSongBars; ++bar)
        if (!writeFrames(file.get(), mixdown.nextBar())) return false;
    return sf_close(file.release()) == 0;
}

// A cut-off song is of no use; but a device or a pipe that was named as the file stays.
void removeRemains(const std::filesystem::path& oggFile) {
    std::error_code ignored;
    if (std::filesystem::is_regular_file(oggFile, ignored))
        std::filesystem::remove(oggFile, ignored);
}

}  // namespace

std::vector<MusicSection> musicSections() {
    std::vector<MusicSection> sections;
    for (const music::SectionPlan& plan : music::songPlan()) {
        const float startSeconds = music::kSecondsPerBar * static_cast<float>(plan.firstBar);
        sections.push_back({plan.name, startSeconds, plan.intensity});
    }
    return sections;
}

std::vector<float> renderMusic(double startSeconds, double lengthSeconds) {
    const std::size_t start = music::framesOfSeconds(startSeconds);
    const std::size_t wantedEnd = music::framesOfSeconds(startSeconds + lengthSeconds);
    const std::size_t end = std::min(wantedEnd, music::kSongFrames);
    std::vector<float> samples;
    if (start >= end) return samples;
    samples.reserve(2 * (end - start));
    const int startBar = static_cast<int>(start / music::kFramesPerBar);
    const int firstBar = std::max(0, startBar - music::kLongestNoteBars);
    music::Mixdown mixdown(firstBar);
    std::size_t barStart = static_cast<std::size_t>(firstBar) * music::kFramesPerBar;
    for (; barStart < end; barStart += music::kFramesPerBar) {
        const std::span<const float> bar = mixdown.nextBar();
        const std::size_t from = std::max(start, barStart) - barStart;
        const std::size_t to = std::min(end - barStart, music::kFramesPerBar);
        if (from < to) samples.insert(samples.end(), bar.begin() + 2 * from, bar.begin() + 2 * to);
    }
    return samples;
}

bool SynthesiseMusic(const std::filesystem::path& oggFile, std::string& error) {
    SoundFile file = openForWriting(oggFile);
    if (!file) {
        error = oggFile.string() + ": " + sf_strerror(nullptr);
        return false;
    }
    if (writeSong(std::move(file))) return true;
    // libsndfile has no text for what goes wrong here; nearly always the disk is full.
    error = oggFile.string() + ": could not be written to its end";
    removeRemains(oggFile);
    return false;
}
