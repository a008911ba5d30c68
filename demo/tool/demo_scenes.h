// The scenes of the shipped demo, each a chain of nodes that ends in one picture. Every function
// returns the id of that picture's node. A scene is on show from `start` to `stop`, in seconds of
// the demo, and sets its keys from these two. A beat is half a second, a bar two.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "demo/tool/demo_builder.h"

namespace demo_scenes {

using Scene = std::string (*)(DemoBuilder& demo, float start, float stop);

// --- flights and places

std::string Title(DemoBuilder& demo, float start, float stop);
std::string Corridor(DemoBuilder& demo, float start, float stop);
std::string Skyline(DemoBuilder& demo, float start, float stop);
std::string Tunnel(DemoBuilder& demo, float start, float stop);
std::string Temple(DemoBuilder& demo, float start, float stop);
std::string NorthernLights(DemoBuilder& demo, float start, float stop);
std::string Ending(DemoBuilder& demo, float start, float stop);

// --- the puppet

std::string Dance(DemoBuilder& demo, float start, float stop);  // from 168 to 200

// --- short cuts

std::string TileTunnel(DemoBuilder& demo, float start, float stop);
std::string Mandala(DemoBuilder& demo, float start, float stop);
std::string Truchet(DemoBuilder& demo, float start, float stop);
std::string Cells(DemoBuilder& demo, float start, float stop);
std::string Lights(DemoBuilder& demo, float start, float stop);
std::string Trail(DemoBuilder& demo, float start, float stop);
std::string MeltingCity(DemoBuilder& demo, float start, float stop);
std::string Grid(DemoBuilder& demo, float start, float stop);

// --- scenes for any place on the timeline: keys are set from `start` to `stop`, in seconds

// A hologram that goes through all of its shapes and ends in free orbit. About 16 to 20 s.
std::string Hologram(DemoBuilder& demo, float start, float stop);
// A flight through stars at several depths, to lie under a title.
std::string Starfield(DemoBuilder& demo, float start, float stop);
// A spinning ornament in a rush of sparks, blurred by its motion. About 8 s.
std::string MotionBlurred(DemoBuilder& demo, float start, float stop);

// --- places of models

std::string Interior(DemoBuilder& demo, float start, float stop);
std::string Rain(DemoBuilder& demo, float start, float stop);
std::string Blob(DemoBuilder& demo, float start, float stop);

// The film of layered pictures, which lasts 32 seconds; `start` is a bar of the music.
std::string Film(DemoBuilder& demo, float start, float stop);

// --- what several scenes share

// A picture of the demo, fitted to the frame. Pictures with alpha are premultiplied.
std::string Picture(DemoBuilder& demo, const char* file, bool hasAlpha);
// Pictures over each other, the first at the back.
std::string Layers(DemoBuilder& demo, const std::vector<std::string>& pictures);
// Shows every picture from its second on; nine at most.
std::string Cuts(DemoBuilder& demo, const std::vector<std::pair<float, std::string>>& pictures);
// A lettering over a picture, in view from `start` to `stop`, revealed and faded.
std::string Lettering(DemoBuilder& demo, const std::string& picture, const char* file, float start,
                      float stop);

}  // namespace demo_scenes
