// Engine::save: the project file, section by section.
#include <cstdlib>

#include "core/byte_stream.h"
#include "core/engine.h"
#include "core/project_format.h"
#include "platform/files.h"
#include "platform/user_dialogs.h"

namespace {

std::uint32_t CountOf(std::size_t size) {
    return static_cast<std::uint32_t>(size);
}

void WriteStrings(ByteWriter& out, const Engine& engine) {
    out.writeU32(kSectionStrings);
    out.writeText(engine.projectName);
    out.writeText(engine.projectFolder);
    out.writeText(engine.musicFile);
    out.writeText(engine.dataFolder);
    out.writeFloat(static_cast<float>(std::atof(engine.lengthText.c_str())));
}

void WriteTypes(ByteWriter& out, const Engine& engine) {
    out.writeU32(kSectionTypes);
    out.writeU32(CountOf(engine.nodeTypes.size()));
    for (const auto& [nodeId, type] : engine.nodeTypes) {
        out.writeText(nodeId);
        out.writeText(type);
    }
}

void WriteCounters(ByteWriter& out, const Engine& engine) {
    out.writeU32(kSectionCounters);
    out.writeU32(CountOf(engine.typeCounters.size()));
    for (const auto& [type, counter] : engine.typeCounters) {
        out.writeText(type);
        out.writeI32(counter);
    }
}

// True when as many nodes were written as announced.
bool WriteLinks(ByteWriter& out, const Engine& engine) {
    std::uint32_t announced = 0;
    for (const auto& [nodeId, node] : engine.nodes) announced += node ? 1 : 0;
    out.writeU32(kSectionLinks);
    out.writeU32(announced);
    std::uint32_t written = 0;
    for (const auto& [nodeId, node] : engine.nodes) {
        if (!node) continue;
        ++written;
        out.writeText(nodeId);
        out.writeI32(node->inputCount);
        for (int port = 0; port < node->inputCount; ++port) {
            const Node* source = node->getInput(port);
            out.writeI32(port);
            out.writeText(source == nullptr ? std::string_view() : source->id);
        }
    }
    return written == announced;
}

void WritePayload(ByteWriter& out, const Value_Object& value) {
    switch (value.getType()) {
        case kValueBool:
            out.writeByte(*static_cast<const ValueBool&>(value).data ? 1 : 0);
            break;
        case kValueInt:
            out.writeI32(*static_cast<const ValueInt&>(value).data);
            break;
        case kValueFloat:
            out.writeFloat(*static_cast<const ValueFloat&>(value).data);
            break;
        case kValueVec2:
            out.write(static_cast<const ValueVec2&>(value).data, 8);
            break;
        case kValueVec4:
            out.write(static_cast<const ValueVec4&>(value).data, 16);
            break;
        case kValueString:
            out.writeText(*static_cast<const ValueString&>(value).data);
            break;
        default:
            break;
    }
}

void WriteValues(ByteWriter& out, const Engine& engine) {
    out.writeU32(kSectionValues);
    out.writeU32(CountOf(engine.values.size()));
    for (const auto& [node, list] : engine.values) {
        if (node == nullptr) continue;
        out.writeText(node->id);
        out.writeU32(CountOf(list.size()));
        for (const auto& value : list) {
            out.writeText(value->name);
            out.writeI32(value->getType());
            WritePayload(out, *value);
        }
    }
}

void WriteTracks(ByteWriter& out, const Engine& engine) {
    out.writeU32(kSectionTracks);
    out.writeU32(CountOf(engine.tracks.size()));
    for (const auto& [nodeId, list] : engine.tracks) {
        out.writeText(nodeId);
        out.writeU32(CountOf(list.size()));
        for (const auto& track : list) {
            out.writeText(track->name);
            // A track whose owner is absent lies under the id that its file gave the owner.
            out.writeText(track->owner == nullptr ? nodeId : track->owner->id);
            out.write(track->reserved, sizeof track->reserved);
            out.writeU32(CountOf(track->keys().size()));
            out.write(track->keys().data(), track->keys().size() * sizeof(Keyframe));
        }
    }
}

}  // namespace

// The sections one after the other; `whole` is false when a link section counts other nodes than it
// has.
static std::vector<std::uint8_t> WriteProject(const Engine& engine, bool& whole) {
    ByteWriter out;
    out.writeU32(kProjectMagic);
    WriteStrings(out, engine);
    WriteTypes(out, engine);
    WriteCounters(out, engine);
    whole = WriteLinks(out, engine);
    WriteValues(out, engine);
    WriteTracks(out, engine);
    return {out.bytes().begin(), out.bytes().end()};
}

bool Engine::save(const std::string& path, DelayedFlush* later) {
    // Values are saved as they are at time zero, not as they stand on screen.
    const float timeBefore = time;
    time = 0.0f;
    updateAnimation();

    bool whole = true;
    const std::vector<std::uint8_t> bytes = WriteProject(*this, whole);
    if (!whole) {
        ShowMessageBox(
            "Error while saving, check backups! I tried to save and will probably kill your "
            "precious demo. Sorry. Cancel doesn't help you either. :(",
            "VORN", MessageButtons::OkCancel);
    }
    if (!WriteFileAtomically(path, bytes, later)) return false;

    time = timeBefore;
    updateAnimation();
    return true;
}

std::vector<std::uint8_t> Engine::sceneBytes() {
    const float timeBefore = time;
    time = 0.0f;
    updateAnimation();
    bool whole = true;
    std::vector<std::uint8_t> bytes = WriteProject(*this, whole);
    time = timeBefore;
    updateAnimation();
    return bytes;
}
