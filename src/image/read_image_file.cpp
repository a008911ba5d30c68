#include "image/read_image_file.h"

#include <cstddef>

#include "platform/picture_decoder.h"

namespace {

// r, g and b times a / 255 in single precision, cut to integers.
void MultiplyByAlpha(std::uint8_t* pixels, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i, pixels += 4) {
        const float factor = static_cast<float>(pixels[3]) / 255.0f;
        for (int c = 0; c < 3; ++c) {
            pixels[c] = static_cast<std::uint8_t>(static_cast<float>(pixels[c]) * factor);
        }
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
