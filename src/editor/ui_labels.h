// Texts of the editor's time and frame-cost labels. No state; any thread.
#pragma once

#include <string>

// Minutes, seconds and milliseconds: 61.5 gives "01:01:500". Minutes grow beyond two digits.
std::string TimeLabelText(float seconds);

// Milliseconds and frames a second of a frame that took `costSeconds`; under 0.0001 s there is
// nothing to tell.
std::string FrameCostLabelText(float costSeconds);
