// Any bytes as a side-file: no fault, no memory out of proportion; what is read can be taken over,
// and what is then written reads back the same.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <string>

#include "editor/gui_file.h"

namespace {

void Check(bool holds) {
    if (!holds) std::abort();
}

void CheckProportion(const GuiFile& file, std::size_t size) {
    // A position takes 1 byte or more, of the last one; a name and a box 2 and 1.
    Check(file.positions.size() <= size && file.names.size() * 2 <= size);
    Check(file.boxes.size() <= size);
    for (const GuiFile::Position& position : file.positions) {
        Check(position.id.size() <= GuiFile::kMaxText);
        Check(std::isfinite(position.place.x) && std::isfinite(position.place.y));
    }
}

void CheckRoundTrip(GuiFile file) {
    file.names.resize(file.positions.size());
    std::string fault;
    const GuiFile again = GuiFile::FromBytes(file.toBytes(), fault);
    Check(fault.empty());
    Check(again.toBytes() == file.toBytes());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    std::string fault;
    const GuiFile file = GuiFile::FromBytes({bytes, size}, fault);
    CheckProportion(file, size);
    CheckRoundTrip(file);
    OrderedMap<std::string, Vec2> positions;
    std::map<std::string, std::string> names;
    OrderedMap<std::string, bool> folded;
    const GuiState state = {positions, names, folded};
    file.applyTo(state, GuiLoad::Replace, "");
    file.applyTo(state, GuiLoad::Merge, "p-");
    file.applyTo(state, GuiLoad::Merge, "p-");
    return 0;
}
