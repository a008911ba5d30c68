// Rows of house fronts with lit windows, roofs and their tackle, for the skylines. Depends on
// Cairo; any thread.
#pragma once

#include <cairo.h>

#include <vector>

#include "pictures_layer.h"
#include "pictures_noise.h"

namespace pictures {

// A house front; all in pixels.
struct Tower {
    float x, top, width;
    uint32_t seed;
};

struct TowerWindows {
    float cellWidth, cellHeight;  // pixels from one window to the next
    float fillX, fillY;           // share of the cell that is glass
    float lit;                    // share of windows with light
};

// A row of houses from side to side of the picture.
struct TowerRow {
    uint32_t seed;
    float middleTop, swing;    // pixels: mean height of the roofs in the picture, their spread
    float minWidth, maxWidth;  // of a house, pixels
    TowerWindows windows;
    Colour front, edge, haze;
    float hazeTop, hazeShare;         // where haze begins, pixels; how thick it is at the foot
    float lampShare;                  // how much of the lamps' light gets through the haze
    float beacon;                     // size of the red lights on the roofs, pixels; 0 for none
    int width = 1920, height = 1080;  // of the picture
};

std::vector<Tower> towersOf(const TowerRow& row);

// Lays the row over the picture, walls, lights, haze and all; `layer` is as large as the row says.
void paintTowerRow(Layer& layer, const TowerRow& row, const std::vector<Tower>& towers);

}  // namespace pictures
