// The readable form of a layered scene, in JSON: see docs/scenes.md. Depends on nlohmann-json,
// which no header names; any thread.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "image/parallax_scene.h"
#include "scene_sampler.h"

// False when the text is no such scene; `fault` then tells what is wrong and where.
bool ParseSceneJson(std::string_view text, SceneDescription& scene, std::string& fault);
// The records of a .scn file as JSON: every key as it stands under "sampled", floats so that they
// come back bit for bit (numbers that JSON lacks as "0x7fc00000"). A name that is no UTF-8 stands
// as "nameHex".
std::string SceneJson(std::span<const ParallaxRecord> records);
