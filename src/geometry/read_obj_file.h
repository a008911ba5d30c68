// Reads Wavefront OBJ files: "v", "vn", "vt", "o", and triangles with all three indices. Files are
// read word by word, as scanf reads them, so that whatever stands in them has a meaning; materials
// and groups are not read. Any thread, without OpenGL.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/ordered_map.h"
#include "gpu/mesh_buffers.h"

// Flags, to be combined.
enum : std::uint32_t {
    kObjCentre = 1,           // the centre of all positions goes to the origin
    kObjNormalise = 2,        // the largest extent of all positions becomes 1
    kObjRecentreObjects = 4,  // each object's own centre goes to its origin
    kObjUnwrap = 8,           // texture coordinates around each object's y axis
};

// Vertices by object name, three a triangle, in the order in which the objects' faces begin.
using ObjObjects = OrderedMap<std::string, std::vector<MeshVertex>>;

// Fills `objects`, which are to be empty; true when there are any. Triangles with an index out of
// range are left out, and so is an object that has no other. A fault of the file is stored in
// `*fault`, or where that is null reported, once for the file; no name at all is no fault.
bool ReadObjFile(std::string_view path, ObjObjects& objects, std::uint32_t flags,
                 std::string* fault = nullptr);

// The same for a text. Returns the fault in it, or nothing.
std::string ReadObjText(std::string_view text, ObjObjects& objects, std::uint32_t flags);
