// Decodes picture files: PNG, JPEG, TIFF and BMP, told apart by their first bytes. Only 8-bit RGB
// and RGBA sources (JPEG: colour only) are taken; palette, grey, 16-bit and other kinds are
// refused. Depends on libpng, libdeflate, libjpeg, libtiff and SDL2; any thread; no state.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct DecodedPicture {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t channels = 0;              // 3: R, G, B; 4: R, G, B, A (not premultiplied)
    std::unique_ptr<std::uint8_t[]> pixels;  // width * height * channels bytes, top row first
};

// Nothing when the file is missing, broken, cut short or of a refused kind; `reason` (may be null)
// then tells why in a few words, without the file's name. Hostile sizes are refused before memory
// is taken for them: no more is allocated than the file's length can account for.
std::optional<DecodedPicture> DecodePicture(std::string_view windowsName, std::string* reason);
std::optional<DecodedPicture> DecodePictureBytes(const std::uint8_t* bytes, std::size_t size,
                                                 std::string* reason);

// Writers for shots and tests. `pixels`: width * height * channels (3 or 4), top row first.
bool WritePng(std::string_view windowsName, std::uint32_t width, std::uint32_t height,
              std::uint32_t channels, const std::uint8_t* pixels);
// 32-bit float RGBA OpenEXR, top row first.
bool WriteExr(std::string_view windowsName, std::uint32_t width, std::uint32_t height,
              const float* rgba);
