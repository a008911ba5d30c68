// Files and file names. Projects name files the Windows way; this maps such names to this machine,
// reads whole files, lists folders in name order, and writes files so that a crash or a full disk
// never costs what was there before. Depends on the debug channel only; any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// The path on this machine of a name with Windows separators: "\" becomes "/", and where the exact
// name does not exist, each folder and the file are matched without regard to case (the first match
// in name order). A part without any match is kept as given, so that new files can be made. Names
// of a drive ("c:\x") stay relative names of this machine.
std::filesystem::path ResolvePath(std::string_view windowsName);

// The content of a regular file of at most `limitBytes`; nothing when it cannot be read, is no
// regular file, or is longer. Nothing is reported: the caller knows what the file is for.
constexpr std::uint64_t kMaxFileBytes = std::uint64_t{2} << 30;
std::optional<std::vector<std::uint8_t>> ReadWholeFile(std::string_view windowsName,
                                                       std::uint64_t limitBytes = kMaxFileBytes);

// Replaces or makes the file in one step: temporary file in the same folder, flushed to the disk,
// renamed over the old one, folder flushed; permission bits and links stay. False when any step
// fails; the old file is then whole (or, when only the folder's flush failed, the new one).
bool WriteFileAtomically(std::string_view windowsName, std::span<const std::uint8_t> bytes);

// Names of the regular files in a folder, sorted by their bytes; nothing when it cannot be opened.
std::optional<std::vector<std::string>> ListFiles(std::string_view windowsFolder);
