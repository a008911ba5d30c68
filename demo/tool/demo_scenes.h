// The scenes of the shipped demo, each a chain of nodes that ends in one picture. Every function
// returns the id of that picture's node. Times are seconds on the music's grid: a beat is half a
// second, a bar two.
#pragma once

#include <string>
#include <vector>

#include "demo/tool/demo_builder.h"

namespace demo_scenes {

std::string Title(DemoBuilder& demo);           // 0 to 16
std::string Corridor(DemoBuilder& demo);        // 16 to 32
std::string Skyline(DemoBuilder& demo);         // 32 to 48
std::string Tunnel(DemoBuilder& demo);          // 48 to 64
std::string NorthernLights(DemoBuilder& demo);  // 64 to 80
std::string Temple(DemoBuilder& demo);          // 80 to 112
std::string Bridge(DemoBuilder& demo);          // 112 to 144
std::string Grid(DemoBuilder& demo);            // 144 to 160
std::string Climax(DemoBuilder& demo);          // 160 to 208
std::string Ending(DemoBuilder& demo);          // 208 to 230

// The film of layered pictures: 32 seconds from `start` on, a bar of the music.
std::string Film(DemoBuilder& demo, float start, float stop);

// --- what several scenes share

// A picture of the demo, fitted to the frame. Pictures with alpha are premultiplied.
std::string Picture(DemoBuilder& demo, const char* file, bool hasAlpha);
// Pictures over each other, the first at the back.
std::string Layers(DemoBuilder& demo, const std::vector<std::string>& pictures);
// A lettering over a picture, in view from `start` to `stop`, revealed and faded.
std::string Lettering(DemoBuilder& demo, const std::string& picture, const char* file, float start,
                      float stop);

}  // namespace demo_scenes
