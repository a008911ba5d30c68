// The models of the demo: the hall in parts, one for each of its materials, the sculptures that
// stand in it, and what rains and circles in other scenes. Built by code alone, the same bytes each
// time. No state; any thread.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "mesh_builder.h"

// Builds every model as an OBJ file into `folder`, which is made when it is not there. False when a
// file cannot be written; `error` then names it.
bool BuildModels(const std::filesystem::path& folder, std::string& error);

// The file names of all models, in the order in which they are built.
std::vector<std::string> ModelNames();

// The text of the model of that file name; empty for an unknown name.
std::string ModelText(std::string_view name);

namespace models {

// models_hall.cpp
ObjModel hallFloor();
ObjModel hallCeiling();
ObjModel hallLeftWall();
ObjModel hallRightWall();
ObjModel hallEndWalls();
ObjModel hallColumns();
ObjModel hallMetal();
ObjModel hallArchesRose();
ObjModel hallArchesBlue();
ObjModel hallWindows();
ObjModel hallSun();
ObjModel hallStrips();
ObjModel hallLamps();

// models_sculptures.cpp
ObjModel knot();
ObjModel gem();
ObjModel star();
ObjModel spheres();
ObjModel vase();
ObjModel crystal();
ObjModel shard();
ObjModel ring();

}  // namespace models
