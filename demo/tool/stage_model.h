// The stage that the puppet dances on: columns of light all around, and rings of light on the floor
// and over the head. Depends on the mesh builder; any thread.
#pragma once

#include <filesystem>
#include <string>

// An OBJ text with one object for every column and ring; metres, the floor at y 0.
std::string StageLightsObj();
// What stands dark behind the lights.
std::string StageFramesObj();

// Writes stage_lights.obj and stage_frames.obj into `folder`. False when that fails; `error` then
// names the file.
bool WriteStage(const std::filesystem::path& folder, std::string& error);
