// What is danced in the sections of the music, in order; each function goes on where the one before
// stopped. Depends on the dancer's vocabulary; any thread.
#pragma once

#include "demo/tool/dance_steps.h"

namespace dance {

void WriteOpening(DanceWriter& writer);  // 0 to 80: intro, build, main A, break
void WriteMiddle(DanceWriter& writer);   // 80 to 160: main B, bridge, second build
void WriteClimax(DanceWriter& writer);   // 160 to 170
void WriteDrawing(DanceWriter& writer);  // 170 to 200: the figures in the air
void WriteEnding(DanceWriter& writer);   // 200 to 230: finale, outro

}  // namespace dance
