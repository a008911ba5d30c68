// Pictures of the demo at chosen times, written to files. Main thread, with the OpenGL context.
#pragma once

#include <string>

class Session;
struct Shot;

// Runs the graph a sixtieth of a second before the shot's time (not below 0) and at it, and writes
// the viewer's target, its first row at the top of the screen: 8-bit RGB over black to a .png, the
// target's own 32-bit floats to an .exr. False when the file cannot be written.
bool TakeShot(Session& session, const Shot& shot);
