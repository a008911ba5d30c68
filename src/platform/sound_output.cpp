#include "platform/sound_output.h"

#include <AL/alext.h>

#include <limits>

#include "platform/debug_output.h"

namespace {

constexpr std::size_t kBytesOfStereoFrame = 2 * sizeof(std::int16_t);

// The sound is to reach the speakers as it is: no head model, no limiter.
constexpr ALCint kContextAttributes[] = {ALC_HRTF_SOFT, ALC_FALSE, ALC_OUTPUT_LIMITER_SOFT,
                                         ALC_FALSE, 0};

}  // namespace

std::unique_ptr<SoundOutput> SoundOutput::open() {
    std::unique_ptr<SoundOutput> output(new SoundOutput);
    output->device_ = alcOpenDevice(nullptr);
    if (output->device_ == nullptr) {
        DebugFault("No sound device: nothing will be heard\n");
        output->device_ = alcOpenDevice("No Output");
    }
    if (output->device_ == nullptr || !output->start()) return nullptr;
    return output;
}

bool SoundOutput::start() {
    context_ = alcCreateContext(device_, kContextAttributes);
    if (context_ == nullptr || alcMakeContextCurrent(context_) == ALC_FALSE) return false;
    alGetError();
    alGenSources(1, &source_);
    if (alGetError() != AL_NO_ERROR) return false;
    alSourcei(source_, AL_SOURCE_RELATIVE, AL_TRUE);
    if (alIsExtensionPresent("AL_SOFT_direct_channels") != AL_FALSE) {
        alSourcei(source_, AL_DIRECT_CHANNELS_SOFT, AL_TRUE);
    }
    preferBestResampler();
    return true;
}

void SoundOutput::preferBestResampler() {
    if (alIsExtensionPresent("AL_SOFT_source_resampler") == AL_FALSE) return;
    const ALint count = alGetInteger(AL_NUM_RESAMPLERS_SOFT);
    // They are listed from the quickest to the best.
    if (count > 0) alSourcei(source_, AL_SOURCE_RESAMPLER_SOFT, count - 1);
    alGetError();
}

SoundOutput::~SoundOutput() {
    if (context_ != nullptr) {
        clearSound();
        if (source_ != 0) alDeleteSources(1, &source_);
        alcMakeContextCurrent(nullptr);
        alcDestroyContext(context_);
    }
    if (device_ != nullptr) alcCloseDevice(device_);
}

bool SoundOutput::connected() const {
    if (alcIsExtensionPresent(device_, "ALC_EXT_disconnect") == ALC_FALSE) return true;
    ALCint connected = ALC_TRUE;
    alcGetIntegerv(device_, ALC_CONNECTED, 1, &connected);
    return connected != ALC_FALSE;
}

bool SoundOutput::setSound(std::span<const std::int16_t> stereo, std::uint32_t framesPerSecond) {
    clearSound();
    if (stereo.size_bytes() > std::size_t{std::numeric_limits<ALsizei>::max()}) return false;
    alGetError();
    alGenBuffers(1, &buffer_);
    if (alGetError() != AL_NO_ERROR) {
        buffer_ = 0;
        return false;
    }
    alBufferData(buffer_, AL_FORMAT_STEREO16, stereo.data(),
                 static_cast<ALsizei>(stereo.size_bytes()), static_cast<ALsizei>(framesPerSecond));
    alSourcei(source_, AL_BUFFER, static_cast<ALint>(buffer_));
    if (alGetError() != AL_NO_ERROR) {
        clearSound();
        return false;
    }
    frameCount_ = stereo.size_bytes() / kBytesOfStereoFrame;
    return true;
}

void SoundOutput::clearSound() {
    alSourceStop(source_);
    alSourcei(source_, AL_BUFFER, 0);
    if (buffer_ != 0) alDeleteBuffers(1, &buffer_);
    buffer_ = 0;
    frameCount_ = 0;
}

void SoundOutput::playFrom(std::uint64_t frame) {
    stop();
    if (frame >= frameCount_) return;
    alSourcei(source_, AL_SAMPLE_OFFSET, static_cast<ALint>(frame));
    alSourcePlay(source_);
}

void SoundOutput::pause() {
    alSourcePause(source_);
}

bool SoundOutput::resume() {
    ALint state = 0;
    alGetSourcei(source_, AL_SOURCE_STATE, &state);
    if (state != AL_PAUSED) return false;
    alSourcePlay(source_);
    return true;
}

void SoundOutput::stop() {
    alSourceStop(source_);
}

std::optional<std::uint64_t> SoundOutput::frame() const {
    ALint state = 0;
    alGetSourcei(source_, AL_SOURCE_STATE, &state);
    if (state != AL_PLAYING && state != AL_PAUSED) return {};
    ALint offset = 0;
    alGetSourcei(source_, AL_SAMPLE_OFFSET, &offset);
    return static_cast<std::uint64_t>(offset);
}
