// The engine's declaration of parameters, and the animation of values.
#include <algorithm>
#include <utility>

#include "core/engine.h"
#include "core/project_reader.h"
#include "platform/debug_output.h"

namespace {

// A load finds what a track drives by the track's name. It takes a dot in a parameter's own name
// for the one before a channel, and of two parameters with one name the last.
void TellOfLostTrack(const KeyframeTrack& track) {
    DebugFault(
        "\"" + track.name +
        "\" is animated until the project is loaded again: a load does not find what its keys "
        "drive\n");
}

}  // namespace

template <typename V>
V& Engine::declare(Node* node, std::string name) {
    auto value = std::make_unique<V>(std::move(name), node->id);
    value->handler = this;
    V& result = *value;
    values[node].push_back(std::move(value));
    return result;
}

bool Engine::declareString(Node* node, const char* name, std::string& member,
                           std::string defaultValue) {
    member = defaultValue;
    auto& value = declare<ValueString>(node, name);
    value.data = &member;
    value.defaultValue = std::move(defaultValue);
    return true;
}

bool Engine::declareBool(Node* node, const char* name, bool& member, bool defaultValue) {
    member = defaultValue;
    auto& value = declare<ValueBool>(node, name);
    value.data = &member;
    value.defaultValue = defaultValue;
    return true;
}

bool Engine::declareFloat(Node* node, const std::string& name, float& member, float min, float max,
                          int decimals, float defaultValue, bool animatable) {
    member = defaultValue;
    auto& value = declare<ValueFloat>(node, name);
    value.data = &member;
    value.min = min;
    value.max = max;
    value.decimals = decimals;
    value.defaultValue = defaultValue;
    value.animatable = animatable;
    return true;
}

bool Engine::declareVec2(Node* node, const char* name, float (&member)[2],
                         const float (&defaults)[2], bool animatable) {
    auto& value = declare<ValueVec2>(node, name);
    std::copy_n(defaults, 2, value.defaultValue);
    std::copy_n(value.defaultValue, 2, member);
    value.data = member;
    value.animatable = animatable;
    return true;
}

bool Engine::declareVec4(Node* node, const char* name, float (&member)[4],
                         const float (&defaults)[4]) {
    auto& value = declare<ValueVec4>(node, name);
    std::copy_n(defaults, 4, value.defaultValue);
    std::copy_n(value.defaultValue, 4, member);
    value.data = member;
    return true;
}

bool Engine::declareInt(Node* node, const char* name, std::int32_t& member,
                        std::int32_t defaultValue, std::vector<std::string> options) {
    member = defaultValue;
    auto& value = declare<ValueInt>(node, name);
    value.data = &member;
    value.defaultValue = defaultValue;
    value.options = std::move(options);
    return true;
}

bool Engine::declareVec3(Node* node, const char* name, float* member, float min, float max,
                         int /*decimals*/, const float (&defaults)[3]) {
    static constexpr const char* kSuffixes[3] = {".X", ".Y", ".Z"};
    for (int axis = 0; axis < 3; ++axis) {
        declareFloat(node, std::string(name) + kSuffixes[axis], member[axis], min, max, 2,
                     defaults[axis], true);
    }
    return true;
}

Value_Object* Engine::findValue(const Node* node, std::string_view valueName) const {
    const auto* list = values.find(node);
    if (list == nullptr) return nullptr;
    for (const auto& value : *list) {
        if (value->name == valueName) return value.get();
    }
    return nullptr;
}

std::vector<Value_Object*> Engine::valuesOf(const Node* node) const {
    std::vector<Value_Object*> result;
    if (const auto* list = values.find(node)) {
        for (const auto& value : *list) result.push_back(value.get());
    }
    return result;
}

std::unique_ptr<KeyframeTrack> Engine::makeTrack() {
    return std::make_unique<KeyframeTrack>(&trackEdits_);
}

KeyframeTrack& Engine::appendTrack(const std::string& listId,
                                   std::unique_ptr<KeyframeTrack> track) {
    ++trackEdits_;
    auto& list = tracks[listId];
    list.push_back(std::move(track));
    return *list.back();
}

KeyframeTrack* Engine::findTrack(const std::string& nodeId, const std::string& trackName) const {
    const auto* list = tracks.find(nodeId);
    if (list == nullptr) return nullptr;
    const auto track = std::find_if(list->begin(), list->end(),
                                    [&](const auto& t) { return t->name == trackName; });
    return track == list->end() ? nullptr : track->get();
}

bool Engine::addAnimation(const std::string& nodeId, const std::string& valueName) {
    Node* node = findNode(nodeId);
    const Value_Object* value = findValue(node, valueName);
    if (node == nullptr || value == nullptr) return false;
    const std::vector<ValueChannel> channels = ChannelsOf(*value);
    if (channels.empty()) return false;
    for (const ValueChannel& channel : channels) {
        auto track = makeTrack();
        track->name = nodeId + "." + valueName + channel.suffix;
        track->target = channel.data;
        track->owner = node;
        if (TargetByName(*this, *track, nodeId) != track->target) TellOfLostTrack(*track);
        appendTrack(nodeId, std::move(track));
    }
    return setKeyframe(nodeId, valueName);
}

bool Engine::setKeyframe(const std::string& nodeId, const std::string& valueName) {
    const Value_Object* value = findValue(findNode(nodeId), valueName);
    if (value == nullptr) return false;
    bool any = false;
    for (const ValueChannel& channel : ChannelsOf(*value)) {
        KeyframeTrack* track = findTrack(nodeId, nodeId + "." + valueName + channel.suffix);
        if (track == nullptr) continue;
        track->insertKey(time, *channel.data);
        any = true;
    }
    return any;
}

bool Engine::removeAnimation(const std::string& nodeId, const std::string& valueName) {
    const Value_Object* value = findValue(findNode(nodeId), valueName);
    auto* list = tracks.find(nodeId);
    if (value == nullptr || list == nullptr) return false;
    bool any = false;
    for (const ValueChannel& channel : ChannelsOf(*value)) {
        const KeyframeTrack* track = findTrack(nodeId, nodeId + "." + valueName + channel.suffix);
        if (track == nullptr) continue;
        std::erase_if(*list, [&](const auto& t) { return t.get() == track; });
        ++trackEdits_;
        any = true;
    }
    return any;
}

bool Engine::isAnimated(const std::string& nodeId, const std::string& valueName) const {
    const auto* list = tracks.find(nodeId);
    if (list == nullptr) return false;
    const std::string wanted = nodeId + "." + valueName;
    return std::any_of(list->begin(), list->end(), [&](const auto& track) {
        return track->name.find(wanted) != std::string::npos;
    });
}

std::vector<KeyframeTrack*> Engine::allTracks() const {
    std::vector<KeyframeTrack*> result;
    for (const auto& [nodeId, list] : tracks) {
        for (const auto& track : list) result.push_back(track.get());
    }
    return result;
}

void Engine::updateAnimation() {
    if (compiledEdits_ != trackEdits_) {
        player_.compile(allTracks());
        compiledEdits_ = trackEdits_;
    }
    player_.apply(time);
}
