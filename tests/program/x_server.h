// An X server of its own for one test. Keys do not repeat: on a busy machine the release of one may
// come late.
#pragma once

#include <unistd.h>

#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "support/child_process.h"

class XServer {
  public:
    // `screen`: width, height and depth, such as "1280x720x24".
    explicit XServer(const char* screen) {
        int ends[2];
        if (pipe(ends) != 0) return;
        const std::string number = std::to_string(ends[1]);
        server_ = std::make_unique<ChildProcess>(
            std::vector<std::string>{"Xvfb", "-displayfd", number, "-screen", "0", screen,
                                     "-nolisten", "tcp", "-r"},
            std::map<std::string, std::string>{}, "");
        close(ends[1]);
        char text[32] = {};
        const ssize_t got = read(ends[0], text, sizeof text - 1);
        close(ends[0]);
        if (got > 0) display_ = ":" + std::to_string(std::atoi(text));
    }
    const std::string& display() const { return display_; }  // empty: it did not start

  private:
    std::unique_ptr<ChildProcess> server_;
    std::string display_;
};
