#include "core/time_windows.h"

#include <cstdlib>

#include "core/engine.h"

namespace {

float Seconds(const std::string& text) {
    return static_cast<float>(std::atof(text.c_str()));
}

}  // namespace

void TimeWindows::declareOn(Engine& engine, Node& node) {
    static constexpr const char* kNames[4][2] = {
        {"Start A", "Stop A"}, {"Start B", "Stop B"}, {"Start C", "Stop C"}, {"Start D", "Stop D"}};
    for (std::size_t i = 0; i < windows_.size(); ++i) {
        engine.declareString(&node, kNames[i][0], windows_[i].start, "0");
        engine.declareString(&node, kNames[i][1], windows_[i].stop, "0");
    }
}

TimeWindows::Scan TimeWindows::scan(float timeSeconds) const {
    Scan result;
    for (const Window& window : windows_) {
        const float start = Seconds(window.start);
        const float stop = Seconds(window.stop);
        if (!(stop - start > 0.0f)) continue;
        if (start <= timeSeconds && timeSeconds <= stop) {
            result.found = true;
            break;
        }
        result.missedOne = true;
    }
    return result;
}
