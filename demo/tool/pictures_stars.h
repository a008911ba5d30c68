// Star fields, shared by the skies and the lettered cards.
#pragma once

#include "pictures_layer.h"
#include "pictures_noise.h"

namespace pictures {

// In pixels.
struct StarRegion {
    float left, top, width, height;
};

struct StarField {
    int count = 1000;
    int brightCount = 0;    // stars with a cross of rays
    bool fadeDown = false;  // fainter towards the foot of the region, as in haze
};

void scatterStars(Layer& layer, Random& random, const StarRegion& region, const StarField& field);

}  // namespace pictures
