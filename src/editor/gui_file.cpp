#include "editor/gui_file.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "core/byte_stream.h"
#include "editor/ui_labels.h"
#include "platform/debug_output.h"
#include "platform/files.h"

namespace {

constexpr std::uint64_t kMostFileBytes = std::uint64_t{256} << 20;
constexpr float kGap = 50;  // pixels that merged boxes keep
constexpr float kBeyondBoxes = 99999, kBelowBoxes = -9999;

// Reads the lists of a file one after the other.
class GuiReader {
  public:
    explicit GuiReader(std::span<const std::uint8_t> bytes) : in_(bytes) {}

    GuiFile read() {
        GuiFile file;
        file.version = in_.readI32();
        const std::int32_t count = readCount();
        if (file.version > GuiFile::kVersion) note("its version is not known");
        if (file.version != 0) readPositions(count, file.positions);
        if (file.version >= GuiFile::kVersion) {
            readNames(count, file.names);
            readBoxes(readCount(), file.boxes);
        }
        if (in_.cutText()) note("a text is too long and was cut");
        if (in_.ranShort()) note("the file ends before its content does");
        return file;
    }
    std::string_view fault() const { return fault_; }

  private:
    void note(std::string_view fault) {
        if (fault_.empty()) fault_ = fault;
    }

    std::int32_t readCount() {
        const std::int32_t count = in_.readI32();
        if (count < 0) note("it has a count below zero");
        return count;
    }

    // Is entry `index` of `count` there to be read?
    bool hasEntry(std::int32_t index, std::int32_t count) {
        if (index >= count) return false;
        if (in_.atEnd()) note("the file ends before its content does");
        return !in_.atEnd();
    }

    // False when the file ends within the text.
    bool readText(std::string& text) {
        const bool wasShort = in_.ranShort();
        text = in_.readText(GuiFile::kMaxText);
        return wasShort == in_.ranShort();
    }

    float readFloat(float before) {
        const bool whole = in_.remaining() >= sizeof(float);
        const float number = in_.readFloat();
        if (!whole) return before;
        if (std::isfinite(number)) return number;
        note("a position is no number");
        return 0;
    }

    void readPositions(std::int32_t count, std::vector<GuiFile::Position>& positions) {
        GuiFile::Position position;
        for (std::int32_t i = 0; hasEntry(i, count); ++i) {
            if (!readText(position.id)) return;
            position.place.x = readFloat(position.place.x);
            position.place.y = readFloat(position.place.y);
            positions.push_back(position);
        }
    }

    void readNames(std::int32_t count, std::vector<GuiFile::Name>& names) {
        GuiFile::Name name;
        for (std::int32_t i = 0; hasEntry(i, count); ++i) {
            if (!readText(name.id) || !readText(name.displayName)) return;
            names.push_back(name);
        }
    }

    void readBoxes(std::int32_t count, std::vector<GuiFile::Box>& boxes) {
        GuiFile::Box box;
        for (std::int32_t i = 0; hasEntry(i, count); ++i) {
            if (!readText(box.id)) return;
            const bool hasFlag = !in_.atEnd();
            const bool open = in_.readByte() != 0;
            if (hasFlag) box.open = open;
            boxes.push_back(box);
        }
    }

    ByteReader in_;
    std::string_view fault_;
};

// The furthest coordinates of what the editor has, not below 0.
Vec2 FurthestPlace(const OrderedMap<std::string, Vec2>& places) {
    Vec2 furthest = {kBelowBoxes, kBelowBoxes};
    for (const auto& [id, place] : places) {
        furthest.x = std::max(furthest.x, place.x);
        furthest.y = std::max(furthest.y, place.y);
    }
    return {std::max(furthest.x, 0.0f), std::max(furthest.y, 0.0f)};
}

// Moves merged boxes as a whole: their leftmost one lies at 50 less the furthest x of what is
// there, their lowest one level with the lowest there. The sign of that x is part of the format's
// behaviour: projects were laid out with it.
void ShiftBeside(OrderedMap<std::string, Vec2>& places, const Vec2& furthest) {
    float leastX = kBeyondBoxes, topY = -kBeyondBoxes;
    for (const auto& [id, place] : places) {
        leastX = std::min(leastX, place.x);
        topY = std::max(topY, place.y);
    }
    for (auto& [id, place] : places) {
        place.x = place.x - leastX - furthest.x + kGap;
        place.y = place.y - (topY - furthest.y);
    }
}

}  // namespace

GuiFile GuiFile::FromBytes(std::span<const std::uint8_t> bytes, std::string& fault) {
    GuiReader reader(bytes);
    GuiFile file = reader.read();
    fault = reader.fault();
    return file;
}

std::vector<std::uint8_t> GuiFile::toBytes() const {
    ByteWriter out;
    out.writeI32(kVersion);
    out.writeI32(static_cast<std::int32_t>(positions.size()));
    for (const Position& position : positions) {
        out.writeText(position.id);
        out.writeFloat(position.place.x);
        out.writeFloat(position.place.y);
    }
    for (const Name& name : names) {
        out.writeText(name.id);
        out.writeText(name.displayName);
    }
    out.writeI32(static_cast<std::int32_t>(boxes.size()));
    for (const Box& box : boxes) {
        out.writeText(box.id);
        out.writeByte(box.open ? 1 : 0);
    }
    return {out.bytes().begin(), out.bytes().end()};
}

void GuiFile::applyTo(const GuiState& state, GuiLoad mode, const std::string& prefix) const {
    // A repeated id keeps its first turn and takes its last place.
    OrderedMap<std::string, Vec2> places;
    for (const Position& position : positions) places[prefix + position.id] = position.place;
    if (mode == GuiLoad::Merge) ShiftBeside(places, FurthestPlace(state.nodePositions));
    for (const auto& [id, place] : places) state.nodePositions[id] = place;
    if (version < kVersion) return;
    if (mode == GuiLoad::Replace) state.displayNames.clear();
    for (const Name& name : names) state.displayNames[prefix + name.id] = name.displayName;
    if (mode == GuiLoad::Merge) return;
    for (const Box& box : boxes) state.nodeFolded[box.id] = !box.open;
}

bool SaveGui(const std::string& path, const GuiState& state, std::vector<GuiFile::Box> boxes,
             DelayedFlush* later) {
    GuiFile file;
    for (const auto& [id, place] : state.nodePositions) {
        file.positions.push_back({id, place});
        file.names.push_back({id, DisplayNameIn(state.displayNames, id)});
    }
    file.boxes = std::move(boxes);
    return WriteFileAtomically(path, file.toBytes(), later);
}

bool LoadGui(const std::string& path, GuiLoad mode, const std::string& prefix,
             const GuiState& state) {
    const auto bytes = ReadWholeFile(path, kMostFileBytes);
    if (!bytes) {
        if (FileExists(path)) ReportBadFile(path, "it cannot be read");
        return false;
    }
    std::string fault;
    const GuiFile file = GuiFile::FromBytes(*bytes, fault);
    if (!fault.empty()) ReportBadFile(path, fault);
    file.applyTo(state, mode, prefix);
    return true;
}
