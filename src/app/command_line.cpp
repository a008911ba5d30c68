#include "app/command_line.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "app/exit_codes.h"

namespace {

constexpr const char* kVersion = "vorn " VORN_VERSION;

bool EndsWith(const std::string& text, std::string_view ending) {
    return text.size() > ending.size() && std::string_view(text).ends_with(ending);
}

bool ParseSeconds(const std::string& text, double& seconds) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    return error == std::errc() && end == text.data() + text.size() && std::isfinite(seconds);
}

// Turns the pairs that follow --shot into shots; a text that says what is wrong, or nothing.
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

}  // namespace

std::optional<CommandLine> ParseCommandLine(int argc, const char* const* argv, int& exitCode) {
    CommandLine result;
    std::vector<std::string> shotWords;
    std::string savePath;
    double benchSeconds = 0;

    CLI::App app("VORN, a tool for making real-time demos and a player of them");
    app.set_version_flag("--version", kVersion);
    CLI::Option* project = app.add_option("PROJECT", result.project,
                                          "project to play (default: demo.vorn in this folder)");
    app.add_flag("--edit", result.edit, "start in the authoring screen");
    app.add_flag("--windowed", result.windowed, "play in a window, not full screen");
    app.add_option("--shot", shotWords, "write the picture at SECONDS to FILE (.png or .exr)")
        ->type_name("SECONDS FILE")
        ->type_size(2)
        ->expected(-1)
        ->trigger_on_parse(false);
    app.add_option("--import", result.imports, "merge FILE into the project, its nodes prefixed")
        ->type_name("FILE.vorn")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    CLI::Option* save =
        app.add_option("--save", savePath, "write the scene to FILE")->type_name("FILE.vorn");
    app.add_flag("--info", result.info, "print the scene as JSON");
    CLI::Option* bench =
        app.add_option("--bench", benchSeconds,
                       "play SECONDS of the demo unseen and print what frames cost")
            ->type_name("SECONDS")
            ->check(CLI::PositiveNumber);
    app.add_flag("--strict", result.strict, "fail when a file is missing or broken");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        const bool asked = error.get_exit_code() == 0;  // help or version
        if (asked) {
            app.exit(error);
        } else {
            std::fprintf(stderr, "vorn: %s\n", error.what());
        }
        exitCode = asked ? kExitDone : kExitWrongArguments;
        return std::nullopt;
    }
    const std::string fault = TakeShots(shotWords, result.shots);
    if (!fault.empty()) {
        std::fprintf(stderr, "vorn: %s\n", fault.c_str());
        exitCode = kExitWrongArguments;
        return std::nullopt;
    }
    result.projectGiven = project->count() > 0;
    if (save->count() > 0) result.savePath = savePath;
    if (bench->count() > 0) result.benchSeconds = benchSeconds;
    return result;
}
