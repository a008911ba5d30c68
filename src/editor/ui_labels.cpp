#include "editor/ui_labels.h"

#include <algorithm>
#include <cstdio>
#include <sstream>

std::string TimeLabelText(float seconds) {
    constexpr float kMostSeconds = 1e9f;  // what an integer holds with room to spare
    seconds = seconds > -kMostSeconds ? std::min(seconds, kMostSeconds) : 0.0f;
    const int whole = static_cast<int>(seconds);
    char text[64];
    std::snprintf(text, sizeof text, "%02d:%02d:%03d", static_cast<int>(seconds / 60.0),
                  whole - (whole / 60) * 60,
                  static_cast<int>((static_cast<double>(seconds) - whole) * 1000.0));
    return text;
}

std::string FrameCostLabelText(float costSeconds) {
    if (!(static_cast<double>(costSeconds) >= 0.0001f)) return "no FPS data";
    std::ostringstream text;
    text << static_cast<float>(static_cast<double>(costSeconds) * 1000.0) << "ms ("
         << static_cast<int>(1.0 / static_cast<double>(costSeconds)) << ")";
    return text.str();
}

std::string NumberText(float number, int decimals) {
    constexpr int kMostDecimals = 9;
    char text[64];  // the largest float has 39 digits
    std::snprintf(text, sizeof text, "%.*f", std::clamp(decimals, 0, kMostDecimals),
                  static_cast<double>(number));
    return text;
}

const std::string& DisplayNameIn(const std::map<std::string, std::string>& names,
                                 const std::string& id) {
    const auto found = names.find(id);
    return found == names.end() || found->second.empty() ? id : found->second;
}
