#include "platform/dialog_program.h"

#include <SDL.h>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

extern char** environ;

namespace {

constexpr int kPumpMilliseconds = 30;
constexpr std::size_t kMaxAnswerBytes = 64 * 1024;

// Starts the program with its standard output in `outputEnd`; 0 when it cannot be started.
pid_t Start(const std::vector<std::string>& command, int outputEnd) {
    std::vector<char*> arguments;
    for (const std::string& argument : command) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    if (posix_spawn_file_actions_init(&actions) != 0) return 0;
    pid_t process = 0;
    const bool started =
        posix_spawn_file_actions_adddup2(&actions, outputEnd, STDOUT_FILENO) == 0 &&
        posix_spawnp(&process, arguments[0], &actions, nullptr, arguments.data(), environ) == 0;
    posix_spawn_file_actions_destroy(&actions);
    return started ? process : 0;
}

void KeepWindowAlive() {
    if (SDL_WasInit(SDL_INIT_VIDEO) != 0) SDL_PumpEvents();
}

// Everything that comes out of `pipe` until it is closed at the other end.
std::string ReadAnswer(int pipe) {
    std::string answer;
    for (;;) {
        pollfd waiting = {.fd = pipe, .events = POLLIN, .revents = 0};
        const int ready = poll(&waiting, 1, kPumpMilliseconds);
        KeepWindowAlive();
        if (ready < 0 && errno != EINTR) return answer;
        if (ready <= 0) continue;
        char block[1024];
        const ssize_t count = read(pipe, block, sizeof block);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return answer;
        if (answer.size() < kMaxAnswerBytes) answer.append(block, static_cast<std::size_t>(count));
    }
}

int WaitForEnd(pid_t process) {
    int status = -1;
    while (waitpid(process, &status, 0) < 0) {
        if (errno != EINTR) return -1;
    }
    return status;
}

// The window is not to act on keys and clicks that came while the dialog was up.
void ForgetInput() {
    if (SDL_WasInit(SDL_INIT_VIDEO) == 0) return;
    SDL_FlushEvent(SDL_KEYDOWN);
    SDL_FlushEvents(SDL_TEXTEDITING, SDL_TEXTINPUT);
    SDL_FlushEvents(SDL_MOUSEMOTION, SDL_MOUSEWHEEL);
}

}  // namespace

DialogResult RunDialogProgram(const std::vector<std::string>& command) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return {};
    const pid_t process = Start(command, ends[1]);
    close(ends[1]);
    DialogResult result;
    if (process > 0) {
        result.answer = ReadAnswer(ends[0]);
        const int status = WaitForEnd(process);
        if (!result.answer.empty() && result.answer.back() == '\n') result.answer.pop_back();
        const bool chosen = WIFEXITED(status) && WEXITSTATUS(status) == 0 && !result.answer.empty();
        result.end = chosen ? DialogEnd::Chosen : DialogEnd::Cancelled;
        ForgetInput();
    }
    close(ends[0]);
    return result;
}
