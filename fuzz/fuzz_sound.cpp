// Any bytes as a sound file or tracker module: no fault, no hang.
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "platform/sound_decoder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::atomic<bool> never = false;
    DecodedSound sound;
    std::string reason;
    if (!DecodeSoundBytes({bytes, size}, never, sound, reason)) {
        if (reason.empty()) std::abort();
        return 0;
    }
    if (sound.channels != 1 && sound.channels != 2) std::abort();
    if (sound.framesPerSecond == 0 || sound.samples.size() % sound.channels != 0) std::abort();
    return 0;
}
