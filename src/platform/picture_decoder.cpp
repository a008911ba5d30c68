#include "platform/picture_decoder.h"

#include <algorithm>
#include <array>
#include <new>
#include <vector>

#include "platform/files.h"
#include "platform/picture_formats.h"

namespace {

// No texture is longer than this on any driver, nor has more pixels than a square of half of it.
constexpr std::uint64_t kMaxSide = 32768;
constexpr std::uint64_t kMaxPixels = std::uint64_t{1} << 28;

template <std::size_t kSize>
bool StartsWith(FileBytes file, const std::array<std::uint8_t, kSize>& signature) {
    return file.size() >= kSize && std::equal(signature.begin(), signature.end(), file.begin());
}

constexpr std::array<std::uint8_t, 8> kPng = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
constexpr std::array<std::uint8_t, 3> kJpeg = {0xFF, 0xD8, 0xFF};
constexpr std::array<std::uint8_t, 4> kTiffLittleEndian = {'I', 'I', 42, 0};
constexpr std::array<std::uint8_t, 4> kTiffBigEndian = {'M', 'M', 0, 42};
constexpr std::array<std::uint8_t, 2> kBmp = {'B', 'M'};

bool DecodeAnyFormat(FileBytes file, DecodedPicture& picture, std::string& reason) {
    if (StartsWith(file, kPng)) return DecodePng(file, picture, reason);
    if (StartsWith(file, kJpeg)) return DecodeJpeg(file, picture, reason);
    if (StartsWith(file, kTiffLittleEndian) || StartsWith(file, kTiffBigEndian)) {
        return DecodeTiff(file, picture, reason);
    }
    if (StartsWith(file, kBmp)) return DecodeBmp(file, picture, reason);
    reason = "not a PNG, JPEG, TIFF or BMP file";
    return false;
}

}  // namespace

bool PictureFits(std::uint64_t width, std::uint64_t height, std::uint32_t channels,
                 std::uint64_t mostPixelBytes, std::string& reason) {
    if (width == 0 || height == 0) {
        reason = "the picture is empty";
        return false;
    }
    if (width > kMaxSide || height > kMaxSide || width * height > kMaxPixels) {
        reason = "the picture is too large";
        return false;
    }
    if (width * height * channels > mostPixelBytes) {
        reason = "the file is too short for the size that it tells";
        return false;
    }
    return true;
}

bool AllocatePicture(std::uint64_t width, std::uint64_t height, std::uint32_t channels,
                     std::uint64_t mostPixelBytes, DecodedPicture& picture, std::string& reason) {
    if (!PictureFits(width, height, channels, mostPixelBytes, reason)) return false;
    picture.pixels.reset(new (std::nothrow) std::uint8_t[width * height * channels]);
    if (!picture.pixels) {
        reason = "not enough memory";
        return false;
    }
    picture.width = static_cast<std::uint32_t>(width);
    picture.height = static_cast<std::uint32_t>(height);
    picture.channels = channels;
    return true;
}

std::optional<DecodedPicture> DecodePicture(std::string_view windowsName, std::string* reason) {
    const std::optional<std::vector<std::uint8_t>> file = ReadWholeFile(windowsName);
    if (!file) {
        if (reason != nullptr) *reason = "the file cannot be read";
        return {};
    }
    return DecodePictureBytes(file->data(), file->size(), reason);
}

std::optional<DecodedPicture> DecodePictureBytes(const std::uint8_t* bytes, std::size_t size,
                                                 std::string* reason) {
    DecodedPicture picture;
    std::string why;
    if (DecodeAnyFormat(FileBytes(bytes, size), picture, why)) return picture;
    if (reason != nullptr) *reason = std::move(why);
    return {};
}
