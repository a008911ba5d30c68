// Finds the joints of the sensor's skeleton in the hierarchy of a BVH file, by the names that the
// common programs give and by a list of the author's own. Depends on the two kinds of skeleton
// only.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "bvh_file.h"
#include "geometry/skeleton_capture.h"

// The joint of the file for each joint of the skeleton, or BvhJoint::kNone.
using BvhJointMap = std::array<int, kJointCount>;

// The joint's name, such as "KneeLeft".
std::string_view JointTypeName(JointType joint);

// Fills `map` by names. `ownNames` holds lines "KneeLeft = the file's name" that go before what the
// program knows; text behind "#" is skipped. False, with the reason in `fault`, when `ownNames` is
// wrong or when a joint is not found without which there is no figure.
bool MapBvhJoints(const BvhFile& file, std::string_view ownNames, BvhJointMap& map,
                  std::string& fault);
