// The close box of a window, as a window manager presses it. For tests.
#pragma once

#include <string>

// Sends the request to close to a window of an X display; false when the display cannot be reached.
bool PressCloseBox(const std::string& display, unsigned long window);
