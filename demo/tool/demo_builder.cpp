#include "demo/tool/demo_builder.h"

#include <algorithm>

namespace {

constexpr float kPulseAttackSeconds = 1.0f / 60.0f;

}  // namespace

std::string DemoBuilder::add(const std::string& type) {
    std::string id;
    do {
        id = type + std::to_string(++engine_.typeCounters[type]);
    } while (engine_.findNode(id) != nullptr);
    if (!engine_.createNode(id, type)) {
        faults_.push_back("no node of type \"" + type + "\"");
    } else if (engine_.findNode(id)->hasError && type != "Reader") {
        faults_.push_back(id + " has an error");
    }
    return id;
}

std::string DemoBuilder::add(const std::string& type, std::initializer_list<std::string> sources) {
    const std::string id = add(type);
    int port = 0;
    for (const std::string& source : sources) {
        if (!source.empty()) link(source, id, port);
        ++port;
    }
    return id;
}

void DemoBuilder::link(const std::string& source, const std::string& target, int port) {
    const Node* node = engine_.findNode(target);
    if (node == nullptr || port >= node->inputCount || !engine_.connect(source, target, port)) {
        faults_.push_back("cannot link " + source + " to " + target);
    }
}

template <typename V>
V* DemoBuilder::find(const std::string& id, const char* name, ValueType type) {
    Value_Object* value = engine_.findValue(engine_.findNode(id), name);
    if (value != nullptr && value->getType() == type) return static_cast<V*>(value);
    faults_.push_back(id + " has no such value as \"" + name + "\"");
    return nullptr;
}

void DemoBuilder::set(const std::string& id, const char* name, float value) {
    if (auto* target = find<ValueFloat>(id, name, kValueFloat)) *target->data = value;
}

void DemoBuilder::setText(const std::string& id, const char* name, const std::string& text) {
    if (auto* target = find<ValueString>(id, name, kValueString)) *target->data = text;
}

void DemoBuilder::setChoice(const std::string& id, const char* name, std::int32_t choice) {
    if (auto* target = find<ValueInt>(id, name, kValueInt)) *target->data = choice;
}

void DemoBuilder::setFlag(const std::string& id, const char* name, bool flag) {
    if (auto* target = find<ValueBool>(id, name, kValueBool)) *target->data = flag;
}

void DemoBuilder::setVec2(const std::string& id, const char* name, float x, float y) {
    if (auto* target = find<ValueVec2>(id, name, kValueVec2)) {
        target->data[0] = x;
        target->data[1] = y;
    }
}

void DemoBuilder::setColor(const std::string& id, const char* name, float r, float g, float b,
                           float a) {
    if (auto* target = find<ValueVec4>(id, name, kValueVec4)) {
        const float color[4] = {r, g, b, a};
        std::copy_n(color, 4, target->data);
    }
}

void DemoBuilder::animate(const std::string& id, const char* name, const std::vector<DemoKey>& keys,
                          int component) {
    const Value_Object* value = engine_.findValue(engine_.findNode(id), name);
    const std::vector<ValueChannel> channels =
        value == nullptr ? std::vector<ValueChannel>{} : ChannelsOf(*value);
    if (keys.empty() || component >= static_cast<int>(channels.size())) {
        faults_.push_back(id + " cannot animate \"" + name + "\"");
        return;
    }
    const ValueChannel& channel = channels[static_cast<std::size_t>(component)];
    const std::string trackName = id + "." + name + channel.suffix;
    engine_.time = keys.front().seconds;
    if (!engine_.isAnimated(id, name)) engine_.addAnimation(id, name);
    const auto tracks = engine_.allTracks();
    const auto track = std::find_if(tracks.begin(), tracks.end(),
                                    [&](const KeyframeTrack* t) { return t->name == trackName; });
    if (track == tracks.end()) {
        faults_.push_back("no track " + trackName);
        return;
    }
    for (const DemoKey& key : keys) (*track)->insertKey(key.seconds, key.value);
    for (std::size_t i = 0; i < (*track)->keys().size(); ++i) {
        const float seconds = (*track)->keys()[i].time;
        const auto key = std::find_if(keys.begin(), keys.end(),
                                      [&](const DemoKey& k) { return k.seconds == seconds; });
        if (key != keys.end()) (*track)->setKeyMode(i, key->mode);
    }
}

void DemoBuilder::pulse(const std::string& id, const char* name, float startSeconds,
                        float stopSeconds, float everySeconds, float low, float high) {
    std::vector<DemoKey> keys;
    for (float beat = startSeconds; beat < stopSeconds; beat += everySeconds) {
        keys.push_back({beat, low, kKeyEaseOut});
        keys.push_back({beat + kPulseAttackSeconds, high, kKeyLinear});
    }
    keys.push_back({stopSeconds, low, kKeyEaseOut});
    animate(id, name, keys);
}
