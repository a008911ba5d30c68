// Reads BVH text, the usual exchange format of motion capture: a hierarchy of joints with their
// offsets and channels, and one line of channel values for each frame. Standard library only; any
// thread.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

struct BvhVector {
    double x = 0, y = 0, z = 0;
};

enum class BvhChannel { kPositionX, kPositionY, kPositionZ, kRotationX, kRotationY, kRotationZ };

struct BvhJoint {
    static constexpr int kNone = -1;

    std::string name;  // empty for the end of a chain
    int parent = kNone;
    BvhVector offset;                  // from the parent, in the file's own unit
    std::vector<BvhChannel> channels;  // in the order of the file, which is that of the turns
    std::size_t firstValue = 0;        // place of the first channel in a frame's values

    bool isEnd() const { return name.empty(); }
};

struct BvhFile {
    std::vector<BvhJoint> joints;  // parents stand before their children
    std::size_t valuesPerFrame = 0;
    std::size_t frameCount = 0;
    double frameSeconds = 0;
    std::vector<double> values;  // frameCount * valuesPerFrame

    // Places of all joints in a frame, in the file's unit and axes.
    std::vector<BvhVector> pose(std::size_t frame) const;
};

// False when the text is no whole BVH file; `fault` then tells what is wrong and in which line.
// A text that ends early gives the frames that are whole.
bool ParseBvh(std::string_view text, BvhFile& file, std::string& fault);
