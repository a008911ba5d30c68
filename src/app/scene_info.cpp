#include "app/scene_info.h"

#include <nlohmann/json.hpp>

#include "core/engine.h"

using Json = nlohmann::ordered_json;

namespace {

Json Floats(const float* values, int count) {
    Json result = Json::array();
    for (int i = 0; i < count; ++i) result.push_back(values[i]);
    return result;
}

void AddFloat(Json& json, const ValueFloat& value) {
    json["value"] = *value.data;
    json["min"] = value.min;
    json["max"] = value.max;
    json["decimals"] = value.decimals;
    json["default"] = value.defaultValue;
    json["animatable"] = value.animatable;
}

void AddVec2(Json& json, const ValueVec2& value) {
    json["value"] = Floats(value.data, 2);
    json["default"] = Floats(value.defaultValue, 2);
    json["animatable"] = value.animatable;
}

void AddInt(Json& json, const ValueInt& value) {
    json["value"] = *value.data;
    json["default"] = value.defaultValue;
    json["options"] = value.options;
}

template <typename V>
void AddPlain(Json& json, const V& value) {
    json["value"] = *value.data;
    json["default"] = value.defaultValue;
}

Json ValueInfo(const Value_Object& value) {
    Json json;
    json["name"] = value.name;
    json["type"] = value.getType();
    switch (value.getType()) {
        case kValueBool:
            AddPlain(json, static_cast<const ValueBool&>(value));
            break;
        case kValueInt:
            AddInt(json, static_cast<const ValueInt&>(value));
            break;
        case kValueFloat:
            AddFloat(json, static_cast<const ValueFloat&>(value));
            break;
        case kValueVec2:
            AddVec2(json, static_cast<const ValueVec2&>(value));
            break;
        case kValueVec4: {
            const auto& vec4 = static_cast<const ValueVec4&>(value);
            json["value"] = Floats(vec4.data, 4);
            json["default"] = Floats(vec4.defaultValue, 4);
            break;
        }
        case kValueString:
            AddPlain(json, static_cast<const ValueString&>(value));
            break;
        default:
            break;
    }
    return json;
}

Json InputsInfo(const Node& node) {
    Json inputs = Json::array();
    for (int port = 0; port < node.inputCount; ++port) {
        const Node* source = node.getInput(port);
        Json input;
        input["name"] = node.getInputName(port);
        input["source"] = source == nullptr ? Json(nullptr) : Json(source->id);
        inputs.push_back(std::move(input));
    }
    return inputs;
}

Json NodeInfo(const Engine& engine, const std::string& id, const Node& node) {
    const std::string* type = engine.nodeTypes.find(id);
    Json json;
    json["id"] = id;
    json["type"] = type == nullptr ? std::string() : *type;
    json["family"] = node.getType();
    json["error"] = node.hasError;
    json["inputs"] = InputsInfo(node);
    json["values"] = Json::array();
    for (const Value_Object* value : engine.valuesOf(&node)) {
        json["values"].push_back(ValueInfo(*value));
    }
    return json;
}

Json TrackInfo(const KeyframeTrack& track) {
    Json json;
    json["name"] = track.name;
    json["owner"] = track.owner == nullptr ? Json(nullptr) : Json(track.owner->id);
    json["target"] = track.target != nullptr;
    json["keys"] = Json::array();
    for (const Keyframe& key : track.keys()) {
        json["keys"].push_back(Json::array({key.value, key.time, key.mode}));
    }
    return json;
}

}  // namespace

std::string SceneInfo(const Engine& engine) {
    Json json;
    json["strings"] = {{"projectName", engine.projectName},
                       {"projectFolder", engine.projectFolder},
                       {"musicFile", engine.musicFile},
                       {"dataFolder", engine.dataFolder},
                       {"lengthText", engine.lengthText}};
    json["types"] = engine.typeNames;
    json["nodes"] = Json::array();
    for (const auto& [id, node] : engine.nodes) {
        if (node) json["nodes"].push_back(NodeInfo(engine, id, *node));
    }
    json["counters"] = Json::object();
    for (const auto& [type, counter] : engine.typeCounters) json["counters"][type] = counter;
    json["tracks"] = Json::array();
    for (const KeyframeTrack* track : engine.allTracks()) {
        json["tracks"].push_back(TrackInfo(*track));
    }
    // Names come from files: bytes that are no UTF-8 are replaced.
    return json.dump(2, ' ', false, Json::error_handler_t::replace);
}
