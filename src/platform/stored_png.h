// A PNG file with its pixels unpacked: the same picture, its data stored where the file has it
// deflated. Most of the time that libpng needs for a picture is zlib's; libdeflate unpacks the same
// data three times as fast, and libpng, which takes no other unpacker, reads what is stored with no
// more than a copy. Depends on libdeflate; one thread at a time.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "platform/picture_formats.h"

class StoredPng {
  public:
    // Nothing unless `file` is a whole and sound PNG of 8-bit RGB or RGBA without interlacing, and
    // where memory is short: all others are for libpng itself, which finds what is wrong with them.
    // Only of packed data that no packer makes, such as codes for lengths that there are not, does
    // libdeflate take a little more than zlib would; it is held to the sums and the size as well.
    static std::optional<StoredPng> from(FileBytes file);

    // Sets the size of `picture` and hands it the memory of the data, so that one block does for
    // both: a row of pixels is shorter than its data, and may be written as soon as that is read.
    // Once, and before the first read.
    void giveMemory(DecodedPicture& picture);

    // Copies the next `count` bytes of the file with stored data; false when fewer are left.
    bool read(std::uint8_t* to, std::size_t count);

  private:
    using Block = std::array<std::uint8_t, 5>;  // what stands before the bytes of a stored block

    StoredPng() = default;
    void layOut(FileBytes head, std::size_t size, FileBytes sum);

    // The pixels are its rows, each a filter's number and the bytes that it was used on.
    DecodedPicture picture_;
    std::vector<std::uint8_t> head_, tail_;
    std::vector<Block> blocks_;
    // The file in order, pieces of the above; what has been read is cut off.
    std::vector<FileBytes> pieces_;
    std::size_t piece_ = 0;
};
