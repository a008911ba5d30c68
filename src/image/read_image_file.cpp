#include "image/read_image_file.h"

#include <bit>
#include <cstddef>
#include <cstring>

#include "platform/picture_decoder.h"

namespace {

// r, g and b times a / 255 in single precision, cut to integers. Whole pixels in one word each, so
// that the compiler takes several at a time.
void MultiplyByAlpha(std::uint8_t* pixels, std::size_t count) {
    static_assert(std::endian::native == std::endian::little, "alpha is the highest byte");
    for (std::size_t i = 0; i < count; ++i) {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, pixels + 4 * i, 4);
        const float factor = static_cast<float>(static_cast<std::int32_t>(pixel >> 24)) / 255.0f;
        std::uint32_t result = pixel & 0xFF000000u;
        for (int shift = 0; shift < 24; shift += 8) {
            const auto value = static_cast<float>(static_cast<std::int32_t>(pixel >> shift & 255));
            result |= static_cast<std::uint32_t>(static_cast<std::int32_t>(value * factor))
                      << shift;
        }
        std::memcpy(pixels + 4 * i, &result, 4);
    }
}

}  // namespace

void ReadImageFile(const std::string& path, std::uint32_t& width, std::uint32_t& height,
                   std::uint32_t& channels, std::unique_ptr<std::uint8_t[]>& pixels,
                   bool preMultiply, std::string* reason) {
    width = height = channels = 0;
    pixels = nullptr;
    std::optional<DecodedPicture> picture = DecodePicture(path, reason);
    if (!picture) return;
    width = picture->width;
    height = picture->height;
    channels = picture->channels;
    pixels = std::move(picture->pixels);
    if (preMultiply && channels == 4) {
        MultiplyByAlpha(pixels.get(), static_cast<std::size_t>(width) * height);
    }
}
