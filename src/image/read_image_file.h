// The one way in which pictures come from files. Main thread.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

// Reads an 8-bit RGB or RGBA picture. On success `pixels` holds height rows of width * channels
// bytes, top row first, in the order R, G, B (, A); on failure it is null and the sizes are 0.
// `preMultiply` multiplies four-channel pictures by their alpha. Nothing is reported; `reason` (may
// be null) takes why there is no picture.
void ReadImageFile(const std::string& path, std::uint32_t& width, std::uint32_t& height,
                   std::uint32_t& channels, std::unique_ptr<std::uint8_t[]>& pixels,
                   bool preMultiply, std::string* reason = nullptr);
