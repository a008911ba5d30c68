// The .scn file: one shot of layered 2-D animation. A plain row of layer records, each the name of
// a picture, a blend mode and a track of keys, a rectangle and an opacity for each frame. Reads and
// writes the bytes, and finds where a layer stands at a time. No OpenGL; any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

constexpr std::size_t kParallaxNameBytes = 512;  // the field of a record, zero-terminated

struct ParallaxKey {
    float left = 0, top = 0;      // pixels of the frame of 1920 by 1080
    float right = 0, bottom = 0;  // the opposite corner
    float opacity = 0;            // 0 to 1
    float time = 0;               // seconds from the start of the scene
    std::uint32_t frame = 0;      // kept, used by nothing
};

struct ParallaxRecord {
    std::string name;       // the picture's file name; what kind of layer it is stands in it too
    std::int32_t mode = 0;  // blend mode
    std::vector<ParallaxKey> keys;
};

// All records of the file, front layer first, those without keys included. Of a record that the
// file breaks off in, the keys that are whole are kept; one without any is left out. `fault` tells
// the first thing that is wrong with the file, and is empty when nothing is.
std::vector<ParallaxRecord> ReadParallaxScene(std::span<const std::uint8_t> bytes,
                                              std::string& fault);
// The file of these records; names are cut to 511 bytes.
std::vector<std::uint8_t> ParallaxSceneBytes(std::span<const ParallaxRecord> records);

// Where a layer stands: corners in clip space (y as in the file: -1 is row 0), and its opacity.
struct ParallaxPlace {
    float x0 = 0, y0 = 0, x1 = 0, y1 = 0;
    float opacity = 0;
};

// At `seconds` of the scene's time; `alpha` multiplies the opacity. Nothing when the layer has no
// keys or its opacity is not above 0. Tracks have a key for each 60th of a second, so the search
// begins at seconds * 60 and ends there at once in normal play; keys out of order cannot make it
// run for ever.
std::optional<ParallaxPlace> ParallaxPlaceAt(std::span<const ParallaxKey> keys, float seconds,
                                             float alpha);
