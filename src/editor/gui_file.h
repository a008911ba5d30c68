// The side-file of a project, "NAME.vorngui": where the boxes of the node canvas lie, the display
// names of nodes, and which subtrees are folded. Plain data; needs no screen. Whatever the bytes
// are, reading stays within them, and no count is trusted beyond them. Any thread.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "core/ordered_map.h"
#include "gpu/math_types.h"

class DelayedFlush;

// The part of the editor's state that the side-file keeps; all of it belongs to others.
struct GuiState {
    OrderedMap<std::string, Vec2>& nodePositions;      // by node id, pixels of the canvas
    std::map<std::string, std::string>& displayNames;  // by node id
    OrderedMap<std::string, bool>& nodeFolded;         // by node id
};

enum class GuiLoad { Replace, Merge };

// What a file holds, in its order.
struct GuiFile {
    struct Position {
        std::string id;
        Vec2 place;
    };
    struct Name {
        std::string id;
        std::string displayName;
    };
    struct Box {
        std::string id;
        bool open = true;  // false: the subtree is folded
    };

    // Reads what is there; a float that the file ends before keeps what the one before it had.
    // `fault`: what is wrong with the file in a few words, empty when nothing is.
    static GuiFile FromBytes(std::span<const std::uint8_t> bytes, std::string& fault);
    // In version 2. `positions` and `names` must be as many.
    std::vector<std::uint8_t> toBytes() const;

    // Takes the content over. `prefix` is put before the ids of positions and names, not of boxes.
    // Merge: moves the file's boxes as a whole, and leaves fold flags alone.
    void applyTo(const GuiState& state, GuiLoad mode, const std::string& prefix) const;

    static constexpr std::int32_t kVersion = 2;
    static constexpr std::size_t kMaxText = 4095;  // longer text is cut when read

    std::int32_t version = kVersion;  // names and boxes are there from 2 on
    std::vector<Position> positions;
    std::vector<Name> names;
    std::vector<Box> boxes;
};

// Writes the state and the boxes of the canvas. False when the file could not be written; nothing
// is reported, and what was there before is whole. `later` (may be null) flushes the file to the
// disk.
bool SaveGui(const std::string& path, const GuiState& state, std::vector<GuiFile::Box> boxes,
             DelayedFlush* later = nullptr);

// A missing file leaves the state as it is, in silence; a damaged one is reported and read as far
// as it goes. False when nothing was read.
bool LoadGui(const std::string& path, GuiLoad mode, const std::string& prefix,
             const GuiState& state);
