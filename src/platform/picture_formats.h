// The decoders behind picture_decoder.h, one for each file format. Each works on a whole file in
// memory, holds no state and throws nothing; any thread.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "platform/picture_decoder.h"

using FileBytes = std::span<const std::uint8_t>;

// True with `picture` filled; false with a reason in a few words.
bool DecodePng(FileBytes file, DecodedPicture& picture, std::string& reason);
bool DecodeJpeg(FileBytes file, DecodedPicture& picture, std::string& reason);
bool DecodeTiff(FileBytes file, DecodedPicture& picture, std::string& reason);
bool DecodeBmp(FileBytes file, DecodedPicture& picture, std::string& reason);

// Deflate packs at most this many bytes into one.
constexpr std::uint64_t kDeflateRatio = 1032;

// False with a reason when a side is 0 or too long, or when there are more than `mostPixelBytes`
// (what the file can account for).
bool PictureFits(std::uint64_t width, std::uint64_t height, std::uint32_t channels,
                 std::uint64_t mostPixelBytes, std::string& reason);
// Sets the size of `picture` and takes memory for its pixels, which stay uninitialised. False with
// a reason when the size does not fit, or when there is no memory.
bool AllocatePicture(std::uint64_t width, std::uint64_t height, std::uint32_t channels,
                     std::uint64_t mostPixelBytes, DecodedPicture& picture, std::string& reason);
