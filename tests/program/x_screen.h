// What is to be seen on an X display: its pixels and its windows. Apart from the tests, since the
// headers of X name things that they name too.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

class XScreen {
  public:
    explicit XScreen(const std::string& displayName);
    ~XScreen();
    XScreen(const XScreen&) = delete;
    XScreen& operator=(const XScreen&) = delete;

    bool isOpen() const { return display_ != nullptr; }
    // The whole screen, RGB, top row first; empty when it cannot be read.
    std::vector<std::uint8_t> pixels() const;
    // The window of exactly this title that is on the screen; 0: there is none.
    unsigned long windowTitled(const std::string& title) const;
    // Gives the keyboard to a window, as a window manager does.
    void focus(unsigned long window) const;

  private:
    void* display_;
};
