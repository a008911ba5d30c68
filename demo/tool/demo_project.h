// The shipped demo as a graph: its scenes, their cuts to the music, and their animation.
#pragma once

#include <string>
#include <vector>

class Engine;

// Fills an empty engine with the demo. What could not be made is told, a line each.
std::vector<std::string> BuildDemoProject(Engine& engine);
