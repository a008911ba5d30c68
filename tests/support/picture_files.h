// Picture files that the tests make themselves, of kinds that are taken and of kinds that are not.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

using FileContent = std::vector<std::uint8_t>;

// Bytes without any pattern, the same for the same size and seed.
std::vector<std::uint8_t> NoisePixels(std::uint32_t width, std::uint32_t height,
                                      std::uint32_t channels, std::uint32_t seed = 1);
// A picture that changes slowly, as photographs do; JPEG keeps it nearly as it is.
std::vector<std::uint8_t> SmoothPixels(std::uint32_t width, std::uint32_t height,
                                       std::uint32_t channels);

struct PngKind {
    int colorType = 2;  // 0 grey, 2 RGB, 3 palette, 4 grey and alpha, 6 RGBA
    int bits = 8;
    bool interlaced = false;
    bool transparentColor = false;  // a tRNS chunk
    int filters = 0;                // of libpng's PNG_FILTER_...; 0: as libpng chooses
    std::uint32_t dataChunk = 0;    // most bytes of an IDAT chunk; 0: as libpng chooses
};
// `rows`: height rows of the kind's own size, packed.
FileContent MakePng(std::uint32_t width, std::uint32_t height, const PngKind& kind,
                    const std::vector<std::uint8_t>& rows);

// The check sum of PNG chunks (CRC-32).
std::uint32_t PngCheckSum(std::span<const std::uint8_t> bytes);

// `channels`: 1 grey, 3 colour, 4 CMYK.
FileContent MakeJpeg(std::uint32_t width, std::uint32_t height, int channels,
                     const std::vector<std::uint8_t>& pixels, bool progressive = false);

struct TiffFields {
    int photometric = 2;  // 1 grey, 2 RGB, 3 palette, 5 CMYK
    int samples = 3;
    int bits = 8;
    bool planar = false;
    bool tiled = false;
    int compression = 1;  // 1 none, 5 LZW, 8 deflate, 32773 PackBits
    int extraSample = 2;  // for 4 samples: 0 unknown, 1 associated alpha, 2 alpha
};
FileContent MakeTiff(std::uint32_t width, std::uint32_t height, const TiffFields& fields,
                     const std::vector<std::uint8_t>& pixels);

struct BmpFields {
    std::uint16_t bits = 24;
    std::uint32_t headerSize = 40;
    std::uint32_t compression = 0;
    bool topRowFirst = false;
    std::uint32_t masks[4] = {0x00FF0000, 0x0000FF00, 0x000000FF, 0xFF000000};
};
// `pixels`: RGB or RGBA as `bits` says, top row first; they are stored by the masks.
FileContent MakeBmp(std::uint32_t width, std::uint32_t height, const BmpFields& fields,
                    const std::vector<std::uint8_t>& pixels);
