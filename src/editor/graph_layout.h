// Places for the boxes of a graph that comes without any: in rows, every node above all that it
// feeds, so that links run downward, and near what it is linked with. Depends on the graph's links
// only; the same graph gives the same places. Main thread.
#pragma once

#include <string>
#include <unordered_map>

#include "gpu/math_types.h"

class Engine;

// Pixels of the canvas, by node id, from 0, 0 on.
std::unordered_map<std::string, Vec2> ArrangeGraph(const Engine& engine);
