// Makes the driver refuse a shader, to see what its owner does without it.
#pragma once

#include <string>

// While it lives, shaders with the one text in their source and without the other are compiled as
// nonsense, but for the first `spared` of them. One at a time; the thread that owns the OpenGL
// context.
class BrokenShaders {
  public:
    explicit BrokenShaders(std::string with, std::string without = {}, int spared = 0);
    ~BrokenShaders();
    BrokenShaders(const BrokenShaders&) = delete;
    BrokenShaders& operator=(const BrokenShaders&) = delete;

    // How many were broken.
    int count() const;
};
