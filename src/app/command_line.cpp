#include "app/command_line.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>

#include "app/exit_codes.h"

namespace {

constexpr const char* kVersion = "vorn " VORN_VERSION;

bool EndsWith(const std::string& text, std::string_view ending) {
    return text.size() > ending.size() && std::string_view(text).ends_with(ending);
}

// Numbers that a clock of float seconds can hold.
bool ParseSeconds(const std::string& text, double& seconds) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    return error == std::errc() && end == text.data() + text.size() &&
           std::abs(seconds) <= static_cast<double>(std::numeric_limits<float>::max());
}

// The words of the command line as they stand, before their meaning is checked.
struct Words {
    std::string project, save, bench;
    std::vector<std::string> shots;  // SECONDS and FILE in turn
};

void AddOptions(CLI::App& app, CommandLine& result, Words& words) {
    app.set_version_flag("--version", kVersion, "print the version and end");
    app.set_help_flag("-h,--help", "print this and end");
    app.add_option("PROJECT", words.project, "project to play (default: demo.vorn in this folder)")
        ->type_name("");
    app.add_flag("--edit", result.edit, "start in the authoring screen");
    app.add_flag("--windowed", result.windowed, "play in a window, not full screen");
    app.add_option("--shot", words.shots, "write the picture at SECONDS to FILE (.png or .exr)")
        ->type_name("SECONDS FILE")
        ->type_size(2)
        ->expected(-1)
        ->allow_extra_args(false);  // each takes two words, and what follows is the project
    app.add_option("--import", result.imports, "merge FILE into the project, its nodes prefixed")
        ->type_name("FILE.vorn")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    app.add_option("--save", words.save, "write the scene to FILE")->type_name("FILE.vorn");
    app.add_flag("--info", result.info, "print the scene as JSON");
    app.add_option("--bench", words.bench,
                   "play SECONDS of the demo unseen and print what frames cost")
        ->type_name("SECONDS");
    app.add_flag("--strict", result.strict, "fail when a file is missing or broken");
}

// The following take words into the result. Each gives a text that says what is wrong, or nothing.
std::string TakeShots(const std::vector<std::string>& words, std::vector<Shot>& shots) {
    for (std::size_t i = 0; i + 1 < words.size(); i += 2) {
        Shot shot;
        if (!ParseSeconds(words[i], shot.seconds)) {
            return "--shot " + words[i] + ": is not a number of seconds";
        }
        shot.file = words[i + 1];
        if (!EndsWith(shot.file, ".png") && !EndsWith(shot.file, ".exr")) {
            return "--shot " + shot.file + ": the name must end in .png or .exr";
        }
        shots.push_back(shot);
    }
    return words.size() % 2 == 0 ? "" : "--shot: needs SECONDS and FILE";
}

std::string TakeBench(const std::string& word, std::optional<double>& benchSeconds) {
    constexpr double kMostSeconds = 24 * 60 * 60;  // the figures of every frame are kept
    double seconds = 0;
    if (!ParseSeconds(word, seconds) || seconds <= 0 || seconds > kMostSeconds) {
        return "--bench " + word + ": is not a number of seconds above 0 and up to a day";
    }
    benchSeconds = seconds;
    return "";
}

std::string TakeWords(const CLI::App& app, const Words& words, CommandLine& result) {
    result.projectGiven = app.count("PROJECT") > 0;
    if (result.projectGiven) result.project = words.project;
    if (app.count("--save") > 0) result.savePath = words.save;
    std::string fault = TakeShots(words.shots, result.shots);
    if (fault.empty() && app.count("--bench") > 0) {
        fault = TakeBench(words.bench, result.benchSeconds);
    }
    return fault;
}

}  // namespace

std::optional<CommandLine> ParseCommandLine(int argc, const char* const* argv, int& exitCode) {
    CommandLine result;
    Words words;
    CLI::App app("VORN, a tool for making real-time demos and a player of them", "vorn");
    AddOptions(app, result, words);
    std::string fault;
    try {
        app.parse(argc, argv);
        fault = TakeWords(app, words, result);
    } catch (const CLI::ParseError& error) {
        const bool asked = error.get_exit_code() == 0;  // help or version
        if (asked) {
            app.exit(error);
            exitCode = kExitDone;
            return std::nullopt;
        }
        fault = error.what();
    }
    if (fault.empty()) return result;
    std::fprintf(stderr, "vorn: %s\n", fault.c_str());
    exitCode = kExitWrongArguments;
    return std::nullopt;
}
