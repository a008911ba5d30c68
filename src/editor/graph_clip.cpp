// Taking nodes out of a graph and putting them in.
#include "editor/graph_clip.h"

#include <algorithm>
#include <unordered_set>

#include "core/engine.h"
#include "editor/graph_edit.h"

namespace {

std::optional<GraphClip::Content> ContentOf(const Value_Object& value) {
    const auto floats = [](const float* data, int count) {
        return std::vector<float>(data, data + count);
    };
    switch (value.getType()) {
        case kValueBool:
            return *static_cast<const ValueBool&>(value).data;
        case kValueInt:
            return *static_cast<const ValueInt&>(value).data;
        case kValueFloat:
            return floats(static_cast<const ValueFloat&>(value).data, 1);
        case kValueVec2:
            return floats(static_cast<const ValueVec2&>(value).data, 2);
        case kValueVec4:
            return floats(static_cast<const ValueVec4&>(value).data, 4);
        case kValueString:
            return *static_cast<const ValueString&>(value).data;
        default:
            return std::nullopt;
    }
}

template <typename T>
bool Assign(T& place, const GraphClip::Content& content) {
    const T* given = std::get_if<T>(&content);
    if (given != nullptr) place = *given;
    return given != nullptr;
}

bool AssignFloats(float* place, std::size_t count, const GraphClip::Content& content) {
    const auto* given = std::get_if<std::vector<float>>(&content);
    if (given == nullptr || given->size() != count) return false;
    std::copy(given->begin(), given->end(), place);
    return true;
}

// False when the content is not of the value's type.
bool SetContent(Value_Object& value, const GraphClip::Content& content) {
    switch (value.getType()) {
        case kValueBool:
            return Assign(*static_cast<ValueBool&>(value).data, content);
        case kValueInt:
            return Assign(*static_cast<ValueInt&>(value).data, content);
        case kValueFloat:
            return AssignFloats(static_cast<ValueFloat&>(value).data, 1, content);
        case kValueVec2:
            return AssignFloats(static_cast<ValueVec2&>(value).data, 2, content);
        case kValueVec4:
            return AssignFloats(static_cast<ValueVec4&>(value).data, 4, content);
        case kValueString:
            return Assign(*static_cast<ValueString&>(value).data, content);
        default:
            return false;
    }
}

std::vector<GraphClip::Track> TracksOf(const Engine& engine, const std::string& id) {
    std::vector<GraphClip::Track> result;
    const auto* list = engine.tracks.find(id);
    if (list == nullptr) return result;
    const std::string prefix = id + ".";
    for (const auto& track : *list) {
        if (!track->name.starts_with(prefix)) continue;
        result.push_back({track->name.substr(prefix.size()), track->keys()});
    }
    return result;
}

GraphClip::Node NodeOf(const Engine& engine, const Node& node, const std::string& type) {
    GraphClip::Node copy;
    copy.id = node.id;
    copy.type = type;
    copy.disabled = node.disabled != 0;
    for (const Value_Object* value : engine.valuesOf(&node)) {
        if (const auto content = ContentOf(*value)) copy.values.push_back({value->name, *content});
    }
    copy.tracks = TracksOf(engine, node.id);
    return copy;
}

// Several values of a node may have one name; each takes its turn.
void PasteValues(Engine& engine, const Node& node, const std::vector<GraphClip::Value>& values) {
    std::vector<Value_Object*> open = engine.valuesOf(&node);
    for (const GraphClip::Value& value : values) {
        const auto fits = [&](Value_Object* candidate) {
            return candidate->name == value.name && SetContent(*candidate, value.content);
        };
        const auto found = std::find_if(open.begin(), open.end(), fits);
        if (found != open.end()) open.erase(found);
    }
}

float* ChannelPlace(const Engine& engine, const Node& node, const std::string& parameter) {
    for (const Value_Object* value : engine.valuesOf(&node)) {
        for (const ValueChannel& channel : ChannelsOf(*value)) {
            if (value->name + channel.suffix == parameter) return channel.data;
        }
    }
    return nullptr;
}

void PasteTracks(Engine& engine, Node& node, const std::vector<GraphClip::Track>& tracks) {
    for (const GraphClip::Track& track : tracks) {
        float* place = ChannelPlace(engine, node, track.parameter);
        if (place == nullptr) continue;
        auto pasted = engine.makeTrack();
        pasted->name = node.id + "." + track.parameter;
        pasted->target = place;
        pasted->owner = &node;
        pasted->setKeys(track.keys);
        engine.appendTrack(node.id, std::move(pasted));
    }
}

}  // namespace

GraphClip GraphClip::FromGraph(const Engine& engine, std::span<const std::string> ids) {
    const std::unordered_set<std::string> wanted(ids.begin(), ids.end());
    GraphClip clip;
    for (const auto& [id, node] : engine.nodes) {
        const std::string* type = engine.nodeTypes.find(id);
        if (!node || type == nullptr || !wanted.contains(id)) continue;
        clip.nodes.push_back(NodeOf(engine, *node, *type));
        for (int port = 0; port < node->inputCount; ++port) {
            const ::Node* source = node->getInput(port);
            if (source == nullptr || !wanted.contains(source->id)) continue;
            clip.links.push_back({source->id, id, port});
        }
    }
    return clip;
}

GraphClip::Pasted GraphClip::pasteInto(Engine& engine) const {
    Pasted pasted;
    for (const Node& node : nodes) {
        if (pasted.newIds.contains(node.id)) continue;
        ::Node* made = CreateNode(engine, node.type);
        if (made == nullptr) {
            ++pasted.unknownTypes;
            continue;
        }
        pasted.newIds[node.id] = made->id;
        made->disabled = node.disabled ? 1 : 0;
        PasteValues(engine, *made, node.values);
        PasteTracks(engine, *made, node.tracks);
    }
    for (const Link& link : links) {
        const auto source = pasted.newIds.find(link.source);
        const auto target = pasted.newIds.find(link.target);
        if (source == pasted.newIds.end() || target == pasted.newIds.end()) continue;
        const ::Node* from = engine.findNode(source->second);
        const ::Node* to = engine.findNode(target->second);
        if (to->getInput(link.port) == nullptr) SetLink(engine, *from, *to, link.port);
    }
    return pasted;
}
