#include "platform/sound_decoder.h"

#include <sndfile.h>
#include <libopenmpt/libopenmpt.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <memory>
#include <ostream>
#include <vector>

#include "platform/files.h"

namespace {

using FileBytes = std::span<const std::uint8_t>;

constexpr std::uint32_t kMostSeconds = 10 * 60;
constexpr std::size_t kBlockFrames = 4096;
constexpr int kLowestRate = 1000;
constexpr int kHighestRate = 192000;
constexpr int kMostChannels = 32;

// Samples of 16 bits come back from float as exactly what they were.
std::int16_t ToSample(float value) {
    if (std::isnan(value)) return 0;
    return static_cast<std::int16_t>(
        std::lrintf(std::clamp(value * 32768.0f, -32768.0f, 32767.0f)));
}

// A file in memory, as libsndfile reads it.
struct SoundSource {
    FileBytes file;
    sf_count_t at = 0;

    sf_count_t size() const { return static_cast<sf_count_t>(file.size()); }
    static SoundSource& of(void* self) { return *static_cast<SoundSource*>(self); }

    static sf_count_t length(void* self) { return of(self).size(); }
    static sf_count_t tell(void* self) { return of(self).at; }
    static sf_count_t write(const void*, sf_count_t, void*) { return 0; }
    static sf_count_t seek(sf_count_t offset, int whence, void* self) {
        SoundSource& source = of(self);
        const sf_count_t base = whence == SEEK_CUR   ? source.at
                                : whence == SEEK_END ? source.size()
                                                     : 0;
        // Offsets of broken files may be any number.
        if (offset < -base || offset > source.size() - base) return -1;
        source.at = base + offset;
        return source.at;
    }
    static sf_count_t read(void* to, sf_count_t count, void* self) {
        SoundSource& source = of(self);
        const sf_count_t taken = std::clamp<sf_count_t>(count, 0, source.size() - source.at);
        if (taken > 0) std::memcpy(to, source.file.data() + source.at, static_cast<size_t>(taken));
        source.at += taken;
        return taken;
    }
};

struct SoundFileCloser {
    void operator()(SNDFILE* file) const { sf_close(file); }
};
using SoundFileHandle = std::unique_ptr<SNDFILE, SoundFileCloser>;

// How much of a channel goes to the left and to the right.
struct ChannelShare {
    float left = 0, right = 0;
};

ChannelShare ShareOf(int place, std::size_t index) {
    constexpr float kSurround = 0.70710678f;  // 3 decibels less
    switch (place) {
        case SF_CHANNEL_MAP_LEFT:
        case SF_CHANNEL_MAP_FRONT_LEFT:
            return {1, 0};
        case SF_CHANNEL_MAP_RIGHT:
        case SF_CHANNEL_MAP_FRONT_RIGHT:
            return {0, 1};
        case SF_CHANNEL_MAP_REAR_LEFT:
        case SF_CHANNEL_MAP_SIDE_LEFT:
            return {kSurround, 0};
        case SF_CHANNEL_MAP_REAR_RIGHT:
        case SF_CHANNEL_MAP_SIDE_RIGHT:
            return {0, kSurround};
        case SF_CHANNEL_MAP_CENTER:
        case SF_CHANNEL_MAP_FRONT_CENTER:
        case SF_CHANNEL_MAP_REAR_CENTER:
            return {kSurround, kSurround};
        case SF_CHANNEL_MAP_LFE:
            return {0, 0};
        default:  // the file does not say: the first two are left and right
            return index == 0   ? ChannelShare{1, 0}
                   : index == 1 ? ChannelShare{0, 1}
                                : ChannelShare{0, 0};
    }
}

// Turns blocks of any number of channels into one or two.
class Mixer {
  public:
    Mixer(SNDFILE* file, int channels) : shares_(static_cast<std::size_t>(channels)) {
        std::vector<int> places(shares_.size(), SF_CHANNEL_MAP_INVALID);
        const int bytes = static_cast<int>(places.size() * sizeof(int));
        if (sf_command(file, SFC_GET_CHANNEL_MAP_INFO, places.data(), bytes) != SF_TRUE) {
            std::fill(places.begin(), places.end(), SF_CHANNEL_MAP_INVALID);
        }
        float left = 0, right = 0;
        for (std::size_t i = 0; i < shares_.size(); ++i) {
            shares_[i] = ShareOf(places[i], i);
            left += shares_[i].left;
            right += shares_[i].right;
        }
        // Loud in all channels at once is still no louder than a sample can be.
        const float loudest = std::max({left, right, 1.0f});
        for (ChannelShare& share : shares_) {
            share.left /= loudest;
            share.right /= loudest;
        }
    }

    void append(std::span<const float> block, std::vector<std::int16_t>& samples) const {
        if (shares_.size() <= 2) {
            for (const float value : block) samples.push_back(ToSample(value));
            return;
        }
        for (; block.size() >= shares_.size(); block = block.subspan(shares_.size())) {
            float left = 0, right = 0;
            for (std::size_t i = 0; i < shares_.size(); ++i) {
                left += shares_[i].left * block[i];
                right += shares_[i].right * block[i];
            }
            samples.push_back(ToSample(left));
            samples.push_back(ToSample(right));
        }
    }

  private:
    std::vector<ChannelShare> shares_;
};

void DecodeBlocks(SNDFILE* file, const SF_INFO& info, const std::atomic<bool>& cancelled,
                  DecodedSound& sound) {
    const Mixer mixer(file, info.channels);
    std::vector<float> block(kBlockFrames * static_cast<std::size_t>(info.channels));
    std::size_t framesLeft = std::size_t{kMostSeconds} * sound.framesPerSecond;
    while (framesLeft > 0 && !cancelled) {
        const std::size_t wanted = std::min(framesLeft, kBlockFrames);
        const sf_count_t got = sf_readf_float(file, block.data(), static_cast<sf_count_t>(wanted));
        if (got <= 0) return;
        const std::size_t frames = std::min(static_cast<std::size_t>(got), wanted);
        const std::size_t values = frames * static_cast<std::size_t>(info.channels);
        mixer.append(std::span(block).first(values), sound.samples);
        framesLeft -= frames;
    }
}

enum class Outcome { Decoded, Failed, UnknownKind };

Outcome DecodeSampled(FileBytes file, const std::atomic<bool>& cancelled, DecodedSound& sound,
                      std::string& reason) {
    SoundSource source{.file = file};
    SF_VIRTUAL_IO access = {.get_filelen = SoundSource::length,
                            .seek = SoundSource::seek,
                            .read = SoundSource::read,
                            .write = SoundSource::write,
                            .tell = SoundSource::tell};
    SF_INFO info = {};
    const SoundFileHandle handle(sf_open_virtual(&access, SFM_READ, &info, &source));
    if (!handle) {
        reason = sf_strerror(nullptr);
        return Outcome::UnknownKind;
    }
    if (info.channels < 1 || info.channels > kMostChannels || info.samplerate < kLowestRate ||
        info.samplerate > kHighestRate) {
        reason = "a sound of this rate or number of channels cannot be played";
        return Outcome::Failed;
    }
    sound.channels = info.channels == 1 ? 1 : 2;
    sound.framesPerSecond = static_cast<std::uint32_t>(info.samplerate);
    // Memory ahead only where the file is long enough for what it tells.
    const auto frames = static_cast<std::uint64_t>(std::max<sf_count_t>(info.frames, 0));
    const std::uint64_t mostFrames = std::uint64_t{kMostSeconds} * sound.framesPerSecond;
    constexpr std::uint64_t kBelievedRatio = 16;
    if (frames < file.size() * kBelievedRatio) {
        sound.samples.reserve(std::min(frames, mostFrames) * sound.channels);
    }
    DecodeBlocks(handle.get(), info, cancelled, sound);
    if (!sound.samples.empty()) return Outcome::Decoded;
    reason = "the file holds no sound";
    return Outcome::Failed;
}

Outcome DecodeModule(FileBytes file, const std::atomic<bool>& cancelled, DecodedSound& sound) {
    constexpr std::uint32_t kRate = 48000;
    try {
        std::ostream quiet(nullptr);
        openmpt::module module(file.data(), file.size(), quiet);
        module.set_repeat_count(0);
        sound.channels = 2;
        sound.framesPerSecond = kRate;
        std::array<std::int16_t, kBlockFrames * 2> block;
        std::size_t framesLeft = std::size_t{kMostSeconds} * kRate;
        while (framesLeft > 0 && !cancelled) {
            const std::size_t wanted = std::min(framesLeft, kBlockFrames);
            const std::size_t got =
                module.read_interleaved_stereo(std::int32_t{kRate}, wanted, block.data());
            if (got == 0) break;
            sound.samples.insert(sound.samples.end(), block.begin(), block.begin() + got * 2);
            framesLeft -= got;
        }
    } catch (const std::exception&) {
        return Outcome::UnknownKind;
    }
    return sound.samples.empty() ? Outcome::Failed : Outcome::Decoded;
}

}  // namespace

bool DecodeSoundBytes(FileBytes file, const std::atomic<bool>& cancelled, DecodedSound& sound,
                      std::string& reason) {
    sound = {};
    Outcome outcome = DecodeSampled(file, cancelled, sound, reason);
    if (outcome == Outcome::UnknownKind) {
        outcome = DecodeModule(file, cancelled, sound);
        if (outcome == Outcome::Failed) reason = "the module holds no sound";
    }
    if (outcome == Outcome::Decoded && !cancelled) {
        reason.clear();
        return true;
    }
    if (cancelled) reason = "cancelled";
    while (!reason.empty() && (reason.back() == '\n' || reason.back() == '.')) reason.pop_back();
    sound = {};
    return false;
}

bool DecodeSoundFile(std::string_view windowsName, const std::atomic<bool>& cancelled,
                     DecodedSound& sound, std::string& reason) {
    constexpr std::uint64_t kMaxSoundBytes = std::uint64_t{1} << 30;
    const auto file = ReadWholeFile(windowsName, kMaxSoundBytes);
    if (!file) {
        sound = {};
        reason = "the file cannot be read";
        return false;
    }
    return DecodeSoundBytes(*file, cancelled, sound, reason);
}

bool DecodeSoundFile(std::string_view windowsName, DecodedSound& sound, std::string& reason) {
    const std::atomic<bool> never = false;
    return DecodeSoundFile(windowsName, never, sound, reason);
}
