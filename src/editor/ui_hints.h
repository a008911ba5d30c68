// What the gestures on a widget do, in one line for the foot of the screen. No state.
#pragma once

#include <string>
#include <vector>

class UI_Object;

// The widget under a place, of a panel the one on it; null when there is none. The lists' last
// widgets lie on top.
const UI_Object* WidgetAt(const std::vector<UI_Object*>& topLevel, int x, int y);

// The canvas or a box on it: the canvas tells itself what its gestures do.
bool IsOfNodeCanvas(const UI_Object& widget);

// Empty for a widget without gestures.
std::string HintFor(const UI_Object& widget);
