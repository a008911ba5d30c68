// Writes the file of a model or a capture in one go. Depends on nothing; any
// thread.
#pragma once

#include <filesystem>
#include <span>
#include <string>

// False when that fails; `error` then names the file.
bool WriteModelFile(const std::filesystem::path& file, std::span<const char> bytes,
                    std::string& error);
