// Numbers of the project file, shared by its reader and writer. All data is little-endian; text is
// its bytes and one zero byte.
#pragma once

#include <cstddef>
#include <cstdint>

constexpr std::uint32_t kProjectMagic = 0x86875002;
constexpr std::uint32_t kProjectMagicWithoutModes = 0x86875001;  // still read: keys without mode

enum ProjectSection : std::uint32_t {
    kSectionStrings = 0x86869000,
    kSectionCounters = 0x86869001,
    kSectionTypes = 0x86869002,
    kSectionLinks = 0x86869003,
    kSectionValues = 0x86869004,
    kSectionTracks = 0x86869005,
};

constexpr std::size_t kMaxProjectText = 8191;  // longer text is cut when read
