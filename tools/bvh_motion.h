// Turns the motion of a BVH file into frames of a capture: the sensor's joints, metres, 30 frames a
// second, and the body facing the sensor. Depends on the BVH reader and on captures.
#pragma once

#include <string>
#include <vector>

#include "bvh_file.h"
#include "bvh_joint_names.h"
#include "geometry/skeleton_capture.h"

struct BvhConversion {
    double metresPerUnit = 0.01;  // BVH files have no unit; most are in centimetres
    double figureMetres = 0;      // above 0: the unit is chosen so that the figure is so tall
    double turnDegrees = 180;     // about y: BVH figures face +z, in front of the sensor it is -z
    double framesPerSecond = 30;
};

// Height of the figure in its unit, in its rest pose: from the lowest joint to the highest.
double BvhFigureHeight(const BvhFile& file);

// False, with the reason in `fault`, when the motion is too long or the figure has no size.
bool ConvertBvh(const BvhFile& file, const BvhJointMap& map, const BvhConversion& conversion,
                std::vector<CaptureFrame>& frames, std::string& fault);
