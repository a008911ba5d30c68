// Texts of the editor's labels and number fields. No state; any thread.
#pragma once

#include <string>

// Minutes, seconds and milliseconds: 61.5 gives "01:01:500". Minutes grow beyond two digits.
std::string TimeLabelText(float seconds);

// Milliseconds and frames a second of a frame that took `costSeconds`; under 0.0001 s there is
// nothing to tell.
std::string FrameCostLabelText(float costSeconds);

// The number with so many decimals: 1.5 with 2 gives "1.50". At most 9 decimals.
std::string NumberText(float number, int decimals);
