// Any bytes as a picture file: no fault, no hang, no memory out of proportion; and what is decoded
// has a size that fits its kind. PNG files are tried a second time with the sums of their chunks
// put right, without which hardly any change would come past the first chunk.
#include <libdeflate.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/picture_decoder.h"

namespace {

void Decode(const std::uint8_t* bytes, std::size_t size) {
    std::string reason;
    const auto picture = DecodePictureBytes(bytes, size, &reason);
    if (!picture) {
        if (reason.empty()) std::abort();
        return;
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
}

// False where the bytes are no PNG file, or one whose sums are right.
bool MendSums(std::vector<std::uint8_t>& file) {
    constexpr std::size_t kSignature = 8, kAroundData = 12;
    if (file.size() < kSignature || file[0] != 0x89 || file[1] != 'P') return false;
    bool mended = false;
    for (std::size_t at = kSignature; at + kAroundData <= file.size();) {
        const std::uint8_t* const head = &file[at];
        const std::size_t size = std::size_t{head[0]} << 24 | std::size_t{head[1]} << 16 |
                                 std::size_t{head[2]} << 8 | head[3];
        if (size > file.size() - at - kAroundData) break;
        const std::uint32_t sum = libdeflate_crc32(0, head + 4, size + 4);
        at += kAroundData + size;
        for (std::size_t i = 0; i < 4; ++i) {
            const auto byte = static_cast<std::uint8_t>(sum >> (24 - 8 * i));
            mended = mended || file[at - 4 + i] != byte;
            file[at - 4 + i] = byte;
        }
    }
    return mended;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    Decode(bytes, size);
    std::vector<std::uint8_t> file(bytes, bytes + size);
    if (MendSums(file)) Decode(file.data(), file.size());
    return 0;
}
