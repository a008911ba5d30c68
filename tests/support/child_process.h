// Runs a program as a process of its own, with what it writes and how it ends. For tests.
#pragma once

#include <sys/types.h>

#include <map>
#include <string>
#include <vector>

struct ProcessResult {
    int exitCode = -1;  // 128 + signal where a signal ended it
    bool timedOut = false;
    std::string out, err;
};

class ChildProcess {
  public:
    // Starts `arguments[0]`; `environment` is added to this process's own (an empty value removes a
    // variable), `folder` is its working directory unless empty.
    ChildProcess(const std::vector<std::string>& arguments,
                 const std::map<std::string, std::string>& environment, const std::string& folder);
    ~ChildProcess();  // ends it when it still runs
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    // Waits for the end; past the limit the process is killed and `timedOut` set.
    ProcessResult wait(double limitSeconds);
    bool running();
    // Waits until the process has written a text to its standard error; false when it does not come
    // in time.
    bool waitForError(const std::string& text, double limitSeconds);
    pid_t pid() const { return pid_; }

  private:
    std::string readBack(int file) const;

    pid_t pid_ = -1;
    int outFile_ = -1, errFile_ = -1;
    bool ended_ = false;
    int status_ = 0;
};

ProcessResult RunProcess(const std::vector<std::string>& arguments,
                         const std::map<std::string, std::string>& environment = {},
                         const std::string& folder = "", double limitSeconds = 120);
