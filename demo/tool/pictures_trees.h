// Trees that the woods of all pictures are made of. Depends on Cairo; any thread.
#pragma once

#include <cairo.h>

#include "pictures_noise.h"

namespace pictures {

// A spruce filled in the paint that is set, its tip at `foot - tall`; no two are alike.
void addSpruce(cairo_t* cairo, Random& random, float x, float foot, float tall);

}  // namespace pictures
