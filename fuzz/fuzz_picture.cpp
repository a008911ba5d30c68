// Any bytes as a picture file: no fault, no hang, no memory out of proportion; and what is decoded
// has a size that fits its kind.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "platform/picture_decoder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    std::string reason;
    const auto picture = DecodePictureBytes(bytes, size, &reason);
    if (!picture) {
        if (reason.empty()) std::abort();
        return 0;
    }
    if (picture->channels != 3 && picture->channels != 4) std::abort();
    const std::size_t count = std::size_t{picture->width} * picture->height * picture->channels;
    if (count == 0) std::abort();
    // Every byte is there to be read.
    std::uint8_t all = 0;
    for (std::size_t i = 0; i < count; ++i)
        all = static_cast<std::uint8_t>(all ^ picture->pixels[i]);
    volatile std::uint8_t seen = all;
    static_cast<void>(seen);
    return 0;
}
