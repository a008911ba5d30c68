#include "app/program.h"

#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>

#include "app/benchmark_run.h"
#include "app/command_line.h"
#include "app/exit_codes.h"
#include "app/main_loop.h"
#include "app/scene_info.h"
#include "app/session.h"
#include "app/shots.h"
#include "platform/debug_output.h"
#include "platform/files.h"
#include "platform/user_dialogs.h"

namespace fs = std::filesystem;

namespace {

void Fail(const std::string& name, const char* reason) {
    std::fprintf(stderr, "vorn: %s: %s\n", name.c_str(), reason);
}

// A name given on the command line, whatever folder becomes the working directory later.
std::string Absolute(const std::string& name) {
    std::error_code error;
    const fs::path path = fs::absolute(ResolvePath(name), error);
    return error ? name : path.string();
}

CommandLine WithAbsoluteNames(const CommandLine& given) {
    CommandLine result = given;
    for (std::string& file : result.imports) file = Absolute(file);
    for (Shot& shot : result.shots) shot.file = Absolute(shot.file);
    if (result.savePath) result.savePath = Absolute(*result.savePath);
    return result;
}

// Makes the project's folder the working directory; its name without the folder, or nothing when
// there is no such file.
std::optional<std::string> EnterProjectFolder(const std::string& project) {
    std::error_code error;
    const fs::path path = ResolvePath(project);
    if (!fs::is_regular_file(path, error)) return std::nullopt;
    if (path.has_parent_path()) fs::current_path(path.parent_path(), error);
    if (error) return std::nullopt;
    return path.filename().string();
}

// What the editor's Import puts before the ids of a merged file: the file's name without its
// ending.
std::string ImportPrefix(const std::string& file) {
    std::string stem = file.substr(0, file.rfind('.'));
    const std::size_t folder = stem.find_last_of("\\/");
    if (folder != std::string::npos) stem.erase(0, folder + 1);
    return stem + "-";
}

int LoadProject(Session& session, const CommandLine& commandLine, const std::string& project,
                bool found) {
    // Playing goes on with an empty scene where the default project is missing or bad.
    const bool needed = commandLine.projectGiven || commandLine.headless();
    if (!found) {
        Fail(commandLine.project, "no such project");
        if (needed) return kExitNoProject;
    } else if (!session.engine->load(project, true, "")) {
        Fail(commandLine.project, "is not a project");
        if (needed) return kExitNoProject;
    }
    for (const std::string& file : commandLine.imports) {
        if (session.engine->load(file, false, ImportPrefix(file))) continue;
        Fail(file, "cannot be imported: missing, or not a project");
        return kExitNoProject;
    }
    return kExitDone;
}

// Everything that is asked of a run without a window.
int RunHeadless(Session& session, const CommandLine& commandLine) {
    if (commandLine.savePath && !session.engine->save(*commandLine.savePath)) {
        Fail(*commandLine.savePath, "cannot be written");
        return kExitOutputFailed;
    }
    if (commandLine.info) std::printf("%s\n", SceneInfo(*session.engine).c_str());
    for (const Shot& shot : commandLine.shots) {
        if (TakeShot(session, shot)) continue;
        Fail(shot.file, "cannot be written");
        return kExitOutputFailed;
    }
    if (commandLine.benchSeconds) {
        std::printf("%s\n", RunBenchmark(session, *commandLine.benchSeconds).c_str());
    }
    return std::fflush(stdout) == 0 ? kExitDone : kExitOutputFailed;
}

void AnswerBoxesWithoutUser() {
    SetMessageBoxHandler(
        [](std::string_view, std::string_view, MessageButtons) { return MessageAnswer::Ok; });
}

}  // namespace

int RunProgram(const CommandLine& given) {
    const CommandLine commandLine = WithAbsoluteNames(given);
    const std::optional<std::string> project = EnterProjectFolder(commandLine.project);
    if (!project && commandLine.projectGiven) {
        Fail(commandLine.project, "no such project");
        return kExitNoProject;
    }
    if (commandLine.edit) DebugOutput("The authoring screen is not there yet; playing.\n");
    if (commandLine.headless()) AnswerBoxesWithoutUser();

    std::string reason;
    int exitCode = kExitDone;
    const WindowKind kind = commandLine.headless() ? WindowKind::Offscreen
                            : commandLine.windowed ? WindowKind::Windowed
                                                   : WindowKind::Screen;
    const std::unique_ptr<Session> session = Session::Start(kind, reason, exitCode);
    if (session == nullptr) {
        Fail("OpenGL", reason.c_str());
        return exitCode;
    }
    exitCode = LoadProject(*session, commandLine, project.value_or(""), project.has_value());
    if (exitCode != kExitDone) return exitCode;
    if (commandLine.headless()) {
        exitCode = RunHeadless(*session, commandLine);
    } else {
        RunMainLoop(*session);
    }
    if (exitCode == kExitDone && commandLine.strict && BadFileCount() > 0) return kExitStrictFault;
    return exitCode;
}
