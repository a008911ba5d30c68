// The pictures of the film: layers for a 2-D camera, cropped to what they show and larger than the
// frame where the camera leaves it. Each source of a place lists its own pictures; their files lie
// in Graphics/film. A name with "Neon" glows, one with "Screen-Mask" shows a live picture.
#pragma once

#include <functional>
#include <span>
#include <string_view>

#include "pictures_layer.h"
#include "pictures_noise.h"
#include "pictures_pen.h"
#include "pictures_png.h"

namespace pictures {

struct PictureEntry {
    std::string_view name;
    PngColour colour;
    Layer (*paint)();
};

std::span<const PictureEntry> filmLights();   // pictures_film_light.cpp: glows, rain, mist
std::span<const PictureEntry> filmRoofs();    // pictures_film_roofs.cpp
std::span<const PictureEntry> filmStreet();   // pictures_film_street.cpp
std::span<const PictureEntry> filmSigns();    // pictures_film_signs.cpp
std::span<const PictureEntry> filmHouse();    // pictures_film_house.cpp
std::span<const PictureEntry> filmRoom();     // pictures_film_room.cpp
std::span<const PictureEntry> filmTrain();    // pictures_film_train.cpp
std::span<const PictureEntry> filmForest();   // pictures_film_forest.cpp
std::span<const PictureEntry> filmSea();      // pictures_film_sea.cpp
std::span<const PictureEntry> filmSpace();    // pictures_film_space.cpp
std::span<const PictureEntry> filmSunrise();  // pictures_film_sunrise.cpp
std::span<const PictureEntry> filmCinema();   // pictures_film_cinema.cpp

// --- what the places share

Layer drawnLayer(int width, int height, const std::function<void(Pen&)>& drawing);
Mask drawnMask(int width, int height, const std::function<void(Pen&)>& drawing);

// Out of focus by `sigma` pixels, as what is close to the lens.
Layer softened(const Layer& sharp, float sigma);

struct SkyLight {
    float x, y, radius;  // pixels; falls off to a third at the radius
    Colour colour;
    float gain;
};

// `stops`: colours from the top (0) to the foot (1) of the picture.
Layer paintedSky(int width, int height, std::span<const Stop> stops,
                 std::span<const SkyLight> lights);

struct CloudLook {
    float scale;  // pixels: width of one heap
    float cover;  // share of the sky that is clouded, 0 to 1
    Colour lit, shaded;
    float opacity;
    uint32_t seed;
};

// Heaps of cloud with light from above, faded out towards the four sides of the picture.
void addClouds(Layer& layer, const CloudLook& look);

struct HillLook {
    float crest, rise, scale;  // pixels: mean height, swing, width of one hill
    float rough;               // pixels: height of bushes on the crest
    uint32_t seed;
};

// What lies below the crest.
Mask hillMask(int width, int height, const HillLook& look);
float hillHeight(const HillLook& look, float x);

// The mask filled from `top` at row `from` to `bottom` at row `to`.
Layer shaded(const Mask& mask, float from, float to, Colour top, Colour bottom);

// A neon sign: tubes of `width` pixels with their glow; keep a margin of about ten widths.
Layer neonSign(int width, int height, Colour colour, float tubeWidth,
               const std::function<void(Pen&)>& drawing);

// Adds the strokes of a lettering to the pen's path and draws them, its middle at x.
void letter(Pen& pen, std::string_view text, double x, double y, double height, double stroke);

// A standing figure with its feet at x, y; drawn in the paint that is set.
void addFigure(Pen& pen, double x, double y, double height);

}  // namespace pictures
