#include <array>
#include <bit>
#include <cstddef>

#include "platform/picture_formats.h"

namespace {

constexpr std::size_t kFileHeaderSize = 14;
constexpr std::uint32_t kCoreHeaderSize = 12;  // the first kind of header, with 16-bit sizes
constexpr std::uint32_t kInfoHeaderSize = 40;
constexpr std::uint32_t kAlphaHeaderSize = 56;  // the first kind that has a mask for alpha

constexpr std::uint32_t kUncompressed = 0;
constexpr std::uint32_t kBitFields = 3;
constexpr std::uint32_t kAlphaBitFields = 6;

std::uint32_t LittleEndian(FileBytes file, std::size_t at, std::size_t size) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < size; ++i) value |= std::uint32_t{file[at + i]} << (8 * i);
    return value;
}

// What the headers tell of a picture that is of a kind taken.
struct BmpLayout {
    std::uint32_t width = 0, height = 0;
    bool topRowFirst = false;
    std::uint32_t channels = 0;
    std::array<std::uint32_t, 4> byteOfChannel = {2, 1, 0, 3};  // within a stored pixel
    std::size_t pixelsAt = 0;
};

// Finds the bytes that four masks stand for; false when a mask is no whole byte of its own.
bool FindBytes(FileBytes file, std::size_t masksAt, std::array<std::uint32_t, 4>& bytes) {
    std::uint32_t seen = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const std::uint32_t mask = LittleEndian(file, masksAt + 4 * i, 4);
        const int shift = std::countr_zero(mask);
        if (shift >= 32 || shift % 8 != 0 || mask >> shift != 0xFF) return false;
        bytes[i] = static_cast<std::uint32_t>(shift / 8);
        seen |= mask;
    }
    return seen == 0xFFFFFFFF;
}

bool ReadCoreHeader(FileBytes file, BmpLayout& layout) {
    layout.width = LittleEndian(file, kFileHeaderSize + 4, 2);
    layout.height = LittleEndian(file, kFileHeaderSize + 6, 2);
    layout.channels = 3;
    return LittleEndian(file, kFileHeaderSize + 10, 2) == 24;
}

bool ReadInfoHeader(FileBytes file, std::uint32_t headerSize, BmpLayout& layout) {
    layout.width = LittleEndian(file, kFileHeaderSize + 4, 4);
    layout.height = LittleEndian(file, kFileHeaderSize + 8, 4);
    layout.topRowFirst = (layout.height & 0x80000000) != 0;
    if (layout.topRowFirst) layout.height = ~layout.height + 1;
    const std::uint32_t bits = LittleEndian(file, kFileHeaderSize + 14, 2);
    const std::uint32_t compression = LittleEndian(file, kFileHeaderSize + 16, 4);
    if (bits == 24 && compression == kUncompressed) {
        layout.channels = 3;
        return true;
    }
    // Only masks say that the fourth byte is alpha.
    const bool masked = (compression == kBitFields && headerSize >= kAlphaHeaderSize) ||
                        compression == kAlphaBitFields;
    const std::size_t masksAt = kFileHeaderSize + kInfoHeaderSize;
    layout.channels = 4;
    return bits == 32 && masked && file.size() >= masksAt + 16 &&
           FindBytes(file, masksAt, layout.byteOfChannel);
}

bool ReadHeaders(FileBytes file, BmpLayout& layout, std::string& reason) {
    reason = "the BMP header is broken";
    if (file.size() < kFileHeaderSize + kCoreHeaderSize) return false;
    layout.pixelsAt = LittleEndian(file, 10, 4);
    const std::uint32_t headerSize = LittleEndian(file, kFileHeaderSize, 4);
    const bool core = headerSize == kCoreHeaderSize;
    if (!core && headerSize < kInfoHeaderSize) return false;
    if (headerSize > file.size() - kFileHeaderSize || layout.pixelsAt > file.size()) return false;
    if (core ? ReadCoreHeader(file, layout) : ReadInfoHeader(file, headerSize, layout)) return true;
    reason = "only 24-bit BMP files and 32-bit ones with alpha are taken";
    return false;
}

void CopyRow(const std::uint8_t* from, const BmpLayout& layout, std::uint8_t* to) {
    for (std::uint32_t x = 0; x < layout.width; ++x) {
        for (std::uint32_t c = 0; c < layout.channels; ++c) to[c] = from[layout.byteOfChannel[c]];
        from += layout.channels;
        to += layout.channels;
    }
}

}  // namespace

bool DecodeBmp(FileBytes file, DecodedPicture& picture, std::string& reason) {
    BmpLayout layout;
    if (!ReadHeaders(file, layout, reason)) return false;
    if (!AllocatePicture(layout.width, layout.height, layout.channels, file.size(), picture,
                         reason)) {
        return false;
    }
    const std::size_t rowBytes = std::size_t{layout.width} * layout.channels;
    const std::size_t storedRowBytes = (rowBytes + 3) / 4 * 4;
    if (storedRowBytes * layout.height > file.size() - layout.pixelsAt) {
        reason = "the file is cut short";
        return false;
    }
    const std::uint8_t* const stored = file.data() + layout.pixelsAt;
    for (std::size_t y = 0; y < layout.height; ++y) {
        const std::size_t storedY = layout.topRowFirst ? y : layout.height - 1 - y;
        CopyRow(stored + storedY * storedRowBytes, layout, picture.pixels.get() + y * rowBytes);
    }
    return true;
}
