// Reads float pictures back with the format's own library. For tests.
#pragma once

#include <string>
#include <vector>

struct ExrPicture {
    int width = 0, height = 0;
    std::vector<float> rgba;  // top row first; empty when a channel is missing or no 32-bit float
};

ExrPicture ReadExr(const std::string& path);
