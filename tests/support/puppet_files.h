// Files for tests of puppets: captures, and models of plain boxes. Users link vorn_geometry.
#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "geometry/skeleton_capture.h"
#include "support/dance.h"
#include "support/temp_folder.h"

inline std::string WriteCapture(const TempFolder& folder, std::string_view name,
                                const std::vector<CaptureFrame>& frames) {
    const std::vector<std::uint8_t> bytes = CaptureBytes(frames);
    folder.write(name, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    return folder.file(name);
}

// `count` frames, 30 in a second from time 0, with the pose that a function gives for a time.
inline std::vector<CaptureFrame> CaptureOf(int count,
                                           const std::function<Skeleton(double seconds)>& poseAt) {
    std::vector<CaptureFrame> frames;
    for (int i = 0; i < count; ++i) {
        frames.push_back(dance::FrameOf(static_cast<float>(i / 30.0), poseAt(i / 30.0)));
    }
    return frames;
}

// An OBJ file with a triangle for each object, 2 high and 10 above the origin.
inline std::string WriteModel(const TempFolder& folder, std::string_view name,
                              std::initializer_list<const char*> objects) {
    std::string text = "v -1 9 -1\nv 1 9 1\nv 0 11 0\nvn 0 0 1\n";
    for (const char* object : objects) {
        text += std::string("o ") + object + "\nf 1/1/1 2/1/1 3/1/1\n";
    }
    folder.write(name, text);
    return folder.file(name);
}
