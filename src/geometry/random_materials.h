// Varied copies of one material, drawn from the program's random numbers: the part that the nodes
// share which dress models in many lights. Main thread.
#pragma once

#include "core/material_data.h"

struct MaterialVariation {
    float randomize = 0;   // 0 none, 1 channels down to black
    float phase = 0;       // moves the drift of every channel
    float saturation = 1;  // 0 grey, 1 as it is
};

// Starts the random numbers at the whole part of the seed.
void SeedMaterials(float seed);

// How much a channel loses, 0 to `amount` while the phase is not negative: a triangle wave that
// runs with the phase from a place that the random number gives.
float Drift(int random, float phase, float amount);

// Varies `illumColor`. Draws four random numbers, one for each channel and one that is dropped.
void VaryColour(MaterialData& material, const MaterialVariation& variation);
