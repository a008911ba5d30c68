#include "support/child_process.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;

[[noreturn]] void BecomeProgram(const std::vector<std::string>& arguments,
                                const std::map<std::string, std::string>& environment,
                                const std::string& folder, int out, int err) {
    dup2(out, STDOUT_FILENO);
    dup2(err, STDERR_FILENO);
    for (const auto& [name, value] : environment) {
        if (value.empty())
            unsetenv(name.c_str());
        else
            setenv(name.c_str(), value.c_str(), 1);
    }
    if (!folder.empty() && chdir(folder.c_str()) != 0) _exit(127);
    std::vector<char*> argv;
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    execvp(argv[0], argv.data());
    _exit(127);
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& arguments,
                           const std::map<std::string, std::string>& environment,
                           const std::string& folder) {
    outFile_ = memfd_create("out", MFD_CLOEXEC);
    errFile_ = memfd_create("err", MFD_CLOEXEC);
    pid_ = fork();
    if (pid_ == 0) BecomeProgram(arguments, environment, folder, outFile_, errFile_);
}

ChildProcess::~ChildProcess() {
    if (running()) {
        kill(pid_, SIGKILL);
        waitpid(pid_, &status_, 0);
    }
    close(outFile_);
    close(errFile_);
}

bool ChildProcess::running() {
    if (!ended_ && (pid_ <= 0 || waitpid(pid_, &status_, WNOHANG) == pid_)) ended_ = true;
    return !ended_;
}

std::string ChildProcess::readBack(int file) const {
    std::string text;
    char block[4096];
    // The process writes at the file's own place: it stays where it is.
    for (ssize_t got = 0;
         (got = pread(file, block, sizeof block, static_cast<off_t>(text.size()))) > 0;) {
        text.append(block, static_cast<std::size_t>(got));
    }
    return text;
}

bool ChildProcess::waitForError(const std::string& text, double limitSeconds) {
    const auto limit = Clock::now() + std::chrono::duration<double>(limitSeconds);
    while (readBack(errFile_).find(text) == std::string::npos) {
        if (!running() || Clock::now() > limit) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
}

ProcessResult ChildProcess::wait(double limitSeconds) {
    ProcessResult result;
    const auto limit = Clock::now() + std::chrono::duration<double>(limitSeconds);
    while (running()) {
        if (Clock::now() > limit) {
            result.timedOut = true;
            kill(pid_, SIGKILL);
            waitpid(pid_, &status_, 0);
            ended_ = true;
            break;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    result.exitCode = WIFEXITED(status_) ? WEXITSTATUS(status_) : 128 + WTERMSIG(status_);
    result.out = readBack(outFile_);
    result.err = readBack(errFile_);
    return result;
}

ProcessResult RunProcess(const std::vector<std::string>& arguments,
                         const std::map<std::string, std::string>& environment,
                         const std::string& folder, double limitSeconds) {
    ChildProcess process(arguments, environment, folder);
    return process.wait(limitSeconds);
}
