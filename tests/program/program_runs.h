// Runs the built program without a window, as the tests of its command line do.
#pragma once

#include <cstdlib>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/child_process.h"

inline std::string VornProgram() {
    const char* path = std::getenv("VORN_PROGRAM");
    return path == nullptr ? "vorn" : path;
}

inline ProcessResult RunVorn(std::vector<std::string> arguments, const std::string& folder,
                             std::map<std::string, std::string> environment = {}) {
    arguments.insert(arguments.begin(), VornProgram());
    environment.emplace("DISPLAY", "");
    environment.emplace("WAYLAND_DISPLAY", "");
    environment.emplace("SDL_VIDEODRIVER", "");
    return RunProcess(arguments, environment, folder);
}

// The scene that --info prints; a null value when the run failed or printed no JSON.
inline nlohmann::json VornInfo(std::vector<std::string> arguments, const std::string& folder) {
    arguments.push_back("--info");
    const ProcessResult result = RunVorn(std::move(arguments), folder);
    if (result.exitCode != 0) return nullptr;
    return nlohmann::json::parse(result.out, nullptr, false);
}
