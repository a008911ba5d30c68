// The loaded scene as JSON, for people and scripts. No state; main thread.
#pragma once

#include <string>

class Engine;

std::string SceneInfo(const Engine& engine);
