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
    return fs::path(file).stem().string() + "-";
}

enum class ClearScene { No, Yes };

// Loads a file into the scene; false when it cannot be done, which has been told in one line.
bool LoadFile(Session& session, const std::string& file, ClearScene clear,
              const std::string& prefix) {
    const std::size_t toldBefore = BadFileCount();
    if (session.engine->load(file, clear == ClearScene::Yes, prefix)) return true;
    if (BadFileCount() == toldBefore) Fail(file, "cannot be read");
    return false;
}

// `loaded`: of the project, not of what is imported into it.
int LoadProject(Session& session, const CommandLine& commandLine,
                const std::optional<std::string>& project, bool& loaded) {
    loaded = false;
    if (project) {
        loaded = LoadFile(session, *project, ClearScene::Yes, "");
    } else {
        Fail(commandLine.project, "no such project");
    }
    // Playing goes on with an empty scene where the default project is missing or bad.
    const bool needed = commandLine.projectGiven || commandLine.headless();
    if (!loaded && needed) return kExitNoProject;
    for (const std::string& file : commandLine.imports) {
        if (!LoadFile(session, file, ClearScene::No, ImportPrefix(file))) return kExitNoProject;
    }
    return kExitDone;
}

int Print(const std::string& text) {
    std::printf("%s\n", text.c_str());
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return kExitDone;
    Fail("standard output", "cannot be written");
    return kExitOutputFailed;
}

// Everything that is asked of a run without a window.
int RunHeadless(Session& session, const CommandLine& commandLine) {
    if (commandLine.savePath && !session.engine->save(*commandLine.savePath)) {
        Fail(*commandLine.savePath, "cannot be written");
        return kExitOutputFailed;
    }
    if (commandLine.info) {
        const int code = Print(SceneInfo(*session.engine));
        if (code != kExitDone) return code;
    }
    for (const Shot& shot : commandLine.shots) {
        if (TakeShot(session, shot)) continue;
        Fail(shot.file, "cannot be written");
        return kExitOutputFailed;
    }
    if (!commandLine.benchSeconds) return kExitDone;
    return Print(RunBenchmark(session, *commandLine.benchSeconds));
}

// The end of a strict run. Looks at those files too that are otherwise missed in silence, or only
// when a frame is run.
int StrictExitCode(Session& session) {
    session.engine->music->setFile(session.engine->musicFile);
    for (const TextRenderer* font :
         {session.ui->master.verdana.get(), session.ui->master.courier.get()}) {
        if (!font->usable()) ReportBadFile(font->fileName(), "cannot be read as a font");
    }
    return BadFileCount() > 0 ? kExitStrictFault : kExitDone;
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
    bool loaded = false;
    exitCode = LoadProject(*session, commandLine, project, loaded);
    if (exitCode != kExitDone) return exitCode;
    if (commandLine.headless()) {
        exitCode = RunHeadless(*session, commandLine);
    } else {
        if (loaded) session->ui->ProjectLoaded(*project);
        if (commandLine.edit) session->showScreen(ScreenKind::Authoring);
        RunMainLoop(*session);
    }
    if (exitCode == kExitDone && commandLine.strict) return StrictExitCode(*session);
    return exitCode;
}
