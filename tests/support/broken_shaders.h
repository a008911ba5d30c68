// Makes the driver refuse a shader, to see what its owner does without it.
#pragma once

#include <string>

// While it lives, shaders with the one text in their source and without the other are compiled as
// nonsense. One at a time; the thread that owns the OpenGL context.
class BrokenShaders {
  public:
    explicit BrokenShaders(std::string with, std::string without = {});
    ~BrokenShaders();
    BrokenShaders(const BrokenShaders&) = delete;
    BrokenShaders& operator=(const BrokenShaders&) = delete;

    // How many were broken.
    int count() const;
};
