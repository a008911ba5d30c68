// The painter of the demo's pictures: the skies, cities, ornaments and lettering that demo.vorn
// reads from its Graphics folder are drawn here, by code alone, so that no picture file is kept
// with the sources. Depends on Cairo and libpng. Keeps no state: any thread may paint, each call on
// its own, and the same call gives the same pixels.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

// Paints every picture as an 8-bit RGB or straight-alpha RGBA PNG into `folder`, which is made when
// it is not there. False when a file cannot be written; `error` then names the file and the reason.
bool PaintPictures(const std::filesystem::path& folder, std::string& error);

// Paints the one picture of that file name, such as "moon.png". False as above, or for an unknown
// name.
bool PaintPicture(std::string_view name, const std::filesystem::path& folder, std::string& error);

// The file names of all pictures, in the order in which they are painted.
std::vector<std::string> PictureNames();
