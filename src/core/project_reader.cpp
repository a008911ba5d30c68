#include "core/project_reader.h"

#include <algorithm>
#include <array>
#include <sstream>
#include <string_view>
#include <utility>

#include "core/engine.h"
#include "core/project_format.h"
#include "platform/debug_output.h"
#include "platform/files.h"
#include "platform/user_dialogs.h"

namespace {

constexpr std::string_view kEndsEarly = "the file ends before its content does";

void ReplaceFirst(std::string& text, std::string_view what, std::string_view with) {
    const std::size_t place = text.find(what);
    if (place != std::string::npos) text.replace(place, what.size(), with);
}

// Names of plain floats that have a dot in them; any other dot parts a value from its channel.
bool IsWholeName(std::string_view name) {
    constexpr std::array<std::string_view, 9> kNames = {
        "Translate.X", "Translate.Y", "Translate.Z", "Rotate.X",  "Rotate.Y",
        "Rotate.Z",    "Rotat-e.X",   "Rotat-e.Y",   "Rotat-e.Z",
    };
    return std::find(kNames.begin(), kNames.end(), name) != kNames.end();
}

int Vec4Component(char channel) {
    switch (channel) {
        case 'x':
        case 'r':
            return 0;
        case 'y':
        case 'g':
            return 1;
        case 'z':
        case 'b':
            return 2;
        default:
            return 3;
    }
}

// The float that a track's parameter and channel name in a value, or null when the value is not of
// a fitting kind. `channel` 0: none.
float* TargetIn(const Value_Object& value, char channel) {
    switch (value.getType()) {
        case kValueFloat:
            return channel == 0 ? static_cast<const ValueFloat&>(value).data : nullptr;
        case kValueVec2:
            if (channel == 0) return nullptr;
            return static_cast<const ValueVec2&>(value).data + (channel == 'x' ? 0 : 1);
        case kValueVec4:
            if (channel == 0) return nullptr;
            return static_cast<const ValueVec4&>(value).data + Vec4Component(channel);
        default:
            return nullptr;
    }
}

}  // namespace

float* TargetByName(const Engine& engine, const KeyframeTrack& track, const std::string& ownerId) {
    const std::size_t place = track.name.find(ownerId);
    const std::size_t start = place + ownerId.size() + 1;
    if (place == std::string::npos || start > track.name.size()) return nullptr;
    std::string param = track.name.substr(start);
    char channel = 0;
    const std::size_t lastDot = param.rfind('.');
    if (!IsWholeName(param) && lastDot != std::string::npos) {
        const std::size_t last = param.find_last_not_of('.');
        if (last != std::string::npos) channel = param[last];
        param.resize(lastDot);
    }
    float* result = nullptr;
    for (const Value_Object* value : engine.valuesOf(track.owner)) {
        if (value->name != param) continue;
        if (float* target = TargetIn(*value, channel)) result = target;
    }
    return result;
}

ProjectReader::ProjectReader(Engine& engine, std::span<const std::uint8_t> bytes,
                             std::string prefix)
    : engine_(engine), in_(bytes), prefix_(std::move(prefix)) {}

void ProjectReader::note(std::initializer_list<std::string_view> words) {
    if (!fault_.empty()) return;
    for (const std::string_view word : words) fault_ += word;
}

bool ProjectReader::hasEntry(std::uint32_t index, std::uint32_t count) {
    if (index >= count) return false;
    if (in_.atEnd()) note({kEndsEarly});
    return !in_.atEnd();
}

std::string ProjectReader::fault() const {
    if (!fault_.empty()) return fault_;
    if (in_.ranShort()) return std::string(kEndsEarly);
    if (in_.cutText()) return "a text of more than 8191 bytes was cut";
    return {};
}

// Every text of a project goes through one fix: a project that was moved from the machine on which
// it was made finds its files beside itself.
std::string ProjectReader::readText() {
    std::string text = in_.readText(kMaxProjectText);
    ReplaceFirst(text, "C:\\temp\\K4409", ".");
    ReplaceFirst(text, "C:\\TEMP\\K4409", ".");
    return text;
}

bool ProjectReader::readMagic() {
    const std::uint32_t magic = in_.readU32();
    keysHaveModes_ = magic > kProjectMagicWithoutModes;
    return magic == kProjectMagic || magic == kProjectMagicWithoutModes;
}

void ProjectReader::readSections() {
    while (!in_.atEnd()) {
        switch (in_.readU32()) {
            case kSectionStrings:
                readStrings();
                break;
            case kSectionTypes:
                readTypes();
                break;
            case kSectionCounters:
                readCounters();
                break;
            case kSectionLinks:
                readLinks();
                break;
            case kSectionValues:
                readValues();
                break;
            case kSectionTracks:
                readTracks();
                break;
            default:
                note({"it has sections that are not known here"});
                break;
        }
    }
}

void ProjectReader::readStrings() {
    engine_.projectName = readText();
    engine_.projectFolder = readText();
    engine_.musicFile = readText();
    engine_.dataFolder = readText();
    std::ostringstream length;
    length << in_.readFloat();
    engine_.lengthText = length.str();
}

void ProjectReader::readTypes() {
    const std::uint32_t count = in_.readU32();
    for (std::uint32_t i = 0; hasEntry(i, count); ++i) {
        const std::string nodeId = readId();
        const std::string type = readText();
        const bool known = engine_.findNode(nodeId) != nullptr;
        if (!engine_.createNode(nodeId, type)) {
            if (known)
                note({"it has node \"", nodeId, "\" twice"});
            else
                note({"node \"", nodeId, "\" is of the unknown type \"", type, "\""});
        }
    }
}

void ProjectReader::readCounters() {
    const std::uint32_t count = in_.readU32();
    for (std::uint32_t i = 0; hasEntry(i, count); ++i) {
        const std::string type = readId();
        engine_.typeCounters[type] = in_.readI32();
    }
}

void ProjectReader::readLinks() {
    const std::uint32_t count = in_.readU32();
    for (std::uint32_t i = 0; hasEntry(i, count); ++i) {
        const std::string nodeId = readId();
        const std::uint32_t ports = in_.readU32();
        const Node* node = engine_.findNode(nodeId);
        if (node == nullptr) {
            note({"it links the absent node \"", nodeId, "\""});
            continue;
        }
        const auto known = static_cast<std::uint32_t>(node->inputCount);
        if (ports > known) note({"node \"", nodeId, "\" has fewer inputs than the file links"});
        for (std::uint32_t port = 0; port < std::min(ports, known); ++port) {
            in_.readU32();
            const std::string source = readText();
            if (!source.empty()) engine_.connect(prefix_ + source, nodeId, static_cast<int>(port));
        }
    }
}

void ProjectReader::readValues() {
    const std::uint32_t count = in_.readU32();
    for (std::uint32_t i = 0; hasEntry(i, count); ++i) {
        const std::string nodeId = readId();
        const Node* node = engine_.findNode(nodeId);
        const std::uint32_t valueCount = in_.readU32();
        for (std::uint32_t v = 0; hasEntry(v, valueCount); ++v) {
            const std::string name = readText();
            Value_Object* value = engine_.findValue(node, name);
            if (value == nullptr) {
                note({"node \"", nodeId, "\" has no value \"", name, "\""});
                continue;
            }
            in_.readU32();  // the file's own word for the type; the value's type decides
            readPayload(*value);
        }
    }
}

void ProjectReader::readPayload(Value_Object& value) {
    switch (value.getType()) {
        case kValueBool:
            *static_cast<ValueBool&>(value).data = in_.readByte() != 0;
            break;
        case kValueInt:
            *static_cast<ValueInt&>(value).data = in_.readI32();
            break;
        case kValueFloat:
            *static_cast<ValueFloat&>(value).data = in_.readFloat();
            break;
        case kValueVec2:
            for (int i = 0; i < 2; ++i) static_cast<ValueVec2&>(value).data[i] = in_.readFloat();
            break;
        case kValueVec4:
            for (int i = 0; i < 4; ++i) static_cast<ValueVec4&>(value).data[i] = in_.readFloat();
            break;
        case kValueString:
            *static_cast<ValueString&>(value).data = readText();
            break;
        default:
            break;
    }
}

void ProjectReader::readTracks() {
    const std::uint32_t count = in_.readU32();
    for (std::uint32_t i = 0; hasEntry(i, count); ++i) {
        const std::string listId = readId();
        const std::uint32_t trackCount = in_.readU32();
        // A list without tracks stays one, so that saving gives the same bytes again.
        if (trackCount == 0) engine_.tracks[listId];
        for (std::uint32_t t = 0; hasEntry(t, trackCount); ++t) readTrack();
    }
}

void ProjectReader::readTrack() {
    auto track = engine_.makeTrack();
    track->name = readId();
    const std::string ownerId = readId();
    for (std::uint32_t& word : track->reserved) word = in_.readU32();
    readKeys(*track);
    track->owner = engine_.findNode(ownerId);
    if (track->owner != nullptr) track->target = TargetByName(engine_, *track, ownerId);
    if (track->target == nullptr) note({"track \"", track->name, "\" drives nothing"});
    engine_.appendTrack(ownerId, std::move(track));
}

void ProjectReader::readKeys(KeyframeTrack& track) {
    const std::uint32_t count = in_.readU32();
    const std::size_t keyBytes = keysHaveModes_ ? 12 : 8;
    const std::size_t present =
        std::min<std::size_t>(count, (in_.remaining() + keyBytes - 1) / keyBytes);
    std::vector<Keyframe> keys(present);
    for (Keyframe& key : keys) {
        key.value = in_.readFloat();
        key.time = in_.readFloat();
        key.mode = keysHaveModes_ ? in_.readI32() : kKeyCosine;
    }
    if (present < count) note({kEndsEarly});
    track.setKeys(std::move(keys));
}

bool Engine::load(const std::string& path, bool clearSceneFirst, const std::string& idPrefix) {
    const auto bytes = ReadWholeFile(path);
    if (!bytes) return false;
    if (clearSceneFirst) {
        const bool anything = !nodes.empty();
        if (anything && ShowMessageBox("Load and clear scene?", "VORN", MessageButtons::OkCancel) !=
                            MessageAnswer::Ok) {
            return false;
        }
        clearScene();
    }
    time = 0.0f;
    updateAnimation();

    ProjectReader reader(*this, *bytes, idPrefix);
    if (!reader.readMagic()) {
        ReportBadFile(path, "is not a project");
        return false;
    }
    reader.readSections();
    const std::string fault = reader.fault();
    if (!fault.empty()) ReportBadFile(path, fault);
    refreshNodes();
    return true;
}
