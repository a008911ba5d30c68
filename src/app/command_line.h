// The command line: what the program is asked to do. Depends on CLI11; no state.
#pragma once

#include <optional>
#include <string>
#include <vector>

struct Shot {
    double seconds = 0;
    std::string file;  // .png or .exr
};

struct CommandLine {
    std::string project = "demo.vorn";
    bool projectGiven = false;  // named by the user rather than the default
    bool edit = false;
    bool windowed = false;
    bool strict = false;
    bool info = false;
    std::vector<Shot> shots;
    std::vector<std::string> imports;
    std::optional<std::string> savePath;
    std::optional<double> benchSeconds;

    // True when nothing is to be shown on a screen or played.
    bool headless() const {
        return info || savePath.has_value() || benchSeconds.has_value() || !shots.empty();
    }
};

// Reads the arguments. Where the program has nothing more to do (help, version, wrong arguments),
// the result is empty, `exitCode` says how to end, and what there is to say has been printed.
std::optional<CommandLine> ParseCommandLine(int argc, const char* const* argv, int& exitCode);
