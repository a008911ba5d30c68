// Writes a painted layer as a PNG file. Depends on libpng; any thread.
#pragma once

#include <filesystem>
#include <string>

#include "pictures_layer.h"

namespace pictures {

enum class PngColour { Rgb, Rgba };

// Rounds the layer to 8 bits a channel, dithered so that faint gradients show no bands, and writes
// it. Rgb lays the layer over black; Rgba holds straight alpha. False when the file cannot be
// written; `error` then names it.
bool writePng(const std::filesystem::path& path, const Layer& layer, PngColour colour,
              std::string& error);

}  // namespace pictures
