// Texts of the editor's labels and number fields. No state; any thread.
#pragma once

#include <map>
#include <string>

// Minutes, seconds and milliseconds: 61.5 gives "01:01:500". Minutes grow beyond two digits.
std::string TimeLabelText(float seconds);

// Milliseconds and frames a second of a frame that took `costSeconds`; under 0.0001 s there is
// nothing to tell.
std::string FrameCostLabelText(float costSeconds);

// The number with so many decimals: 1.5 with 2 gives "1.50". At most 9 decimals.
std::string NumberText(float number, int decimals);

// The text to show for a node: its entry in `names`, or its id when that is missing or empty.
const std::string& DisplayNameIn(const std::map<std::string, std::string>& names,
                                 const std::string& id);
