// The JSON text of copied nodes.
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

#include "editor/graph_clip.h"

using Json = nlohmann::ordered_json;

namespace {

constexpr const char* kKind = "vorn graph";

// JSON has no word for what is no number, or endless.
Json NumberJson(float number) {
    if (std::isnan(number)) return "nan";
    if (std::isinf(number)) return number > 0 ? "inf" : "-inf";
    return number;
}

std::optional<float> NumberFrom(const Json& json) {
    if (json.is_number()) {
        const double number = json.get<double>();
        if (std::fabs(number) > std::numeric_limits<float>::max()) return std::nullopt;
        return static_cast<float>(number);
    }
    if (json == "nan") return std::numeric_limits<float>::quiet_NaN();
    if (json == "inf") return std::numeric_limits<float>::infinity();
    if (json == "-inf") return -std::numeric_limits<float>::infinity();
    return std::nullopt;
}

bool IsUtf8(const std::string& text) {
    // Only the printer knows.
    try {
        static_cast<void>(Json(text).dump());
        return true;
    } catch (const Json::exception&) {
        return false;
    }
}

// Text as it is; bytes that are no UTF-8 as a list of numbers.
Json TextJson(const std::string& text) {
    if (IsUtf8(text)) return text;
    Json bytes = Json::array();
    for (const char byte : text) bytes.push_back(static_cast<unsigned char>(byte));
    return {{"bytes", bytes}};
}

std::optional<std::string> TextFrom(const Json& json) {
    if (json.is_string()) return json.get<std::string>();
    if (!json.is_object() || !json.contains("bytes") || !json["bytes"].is_array()) {
        return std::nullopt;
    }
    std::string text;
    for (const Json& byte : json["bytes"]) {
        if (!byte.is_number_unsigned() || byte.get<std::uint64_t>() > 255) return std::nullopt;
        text.push_back(static_cast<char>(byte.get<std::uint64_t>()));
    }
    return text;
}

std::optional<std::int32_t> WholeFrom(const Json& json) {
    if (!json.is_number_integer()) return std::nullopt;
    if (json.is_number_unsigned() && json.get<std::uint64_t>() > INT32_MAX) return std::nullopt;
    const auto number = json.get<std::int64_t>();
    if (number < INT32_MIN || number > INT32_MAX) return std::nullopt;
    return static_cast<std::int32_t>(number);
}

// A member of an object, or null.
const Json& Member(const Json& json, const char* name) {
    static const Json nothing;
    if (!json.is_object()) return nothing;
    const auto found = json.find(name);
    return found == json.end() ? nothing : *found;
}

std::string TextMember(const Json& json, const char* name) {
    return TextFrom(Member(json, name)).value_or("");
}

Json ContentJson(const GraphClip::Content& content) {
    if (const auto* on = std::get_if<bool>(&content)) return *on;
    if (const auto* whole = std::get_if<std::int32_t>(&content)) return *whole;
    if (const auto* text = std::get_if<std::string>(&content)) return TextJson(*text);
    Json numbers = Json::array();
    for (const float number : std::get<std::vector<float>>(content)) {
        numbers.push_back(NumberJson(number));
    }
    return numbers;
}

std::optional<GraphClip::Content> ContentFrom(const Json& json) {
    if (json.is_boolean()) return json.get<bool>();
    if (const auto whole = WholeFrom(json)) return *whole;
    if (const auto text = TextFrom(json)) return *text;
    if (!json.is_array() || json.size() > 4) return std::nullopt;
    std::vector<float> numbers;
    for (const Json& entry : json) {
        const auto number = NumberFrom(entry);
        if (!number) return std::nullopt;
        numbers.push_back(*number);
    }
    return numbers;
}

Json NodeJson(const GraphClip::Node& node) {
    Json json;
    json["id"] = TextJson(node.id);
    json["type"] = TextJson(node.type);
    if (!node.displayName.empty()) json["name"] = TextJson(node.displayName);
    json["place"] = {NumberJson(node.place.x), NumberJson(node.place.y)};
    if (node.disabled) json["disabled"] = true;
    json["values"] = Json::array();
    for (const GraphClip::Value& value : node.values) {
        json["values"].push_back({TextJson(value.name), ContentJson(value.content)});
    }
    json["tracks"] = Json::array();
    for (const GraphClip::Track& track : node.tracks) {
        Json keys = Json::array();
        for (const Keyframe& key : track.keys) {
            keys.push_back(Json::array({NumberJson(key.value), NumberJson(key.time), key.mode}));
        }
        json["tracks"].push_back({{"parameter", TextJson(track.parameter)}, {"keys", keys}});
    }
    return json;
}

std::vector<GraphClip::Value> ValuesFrom(const Json& json) {
    std::vector<GraphClip::Value> values;
    if (!json.is_array()) return values;
    for (const Json& entry : json) {
        if (!entry.is_array() || entry.size() != 2) continue;
        auto name = TextFrom(entry[0]);
        auto content = ContentFrom(entry[1]);
        if (name && content) values.push_back({std::move(*name), std::move(*content)});
    }
    return values;
}

std::optional<Keyframe> KeyFrom(const Json& json) {
    if (!json.is_array() || json.size() != 3) return std::nullopt;
    const auto value = NumberFrom(json[0]), time = NumberFrom(json[1]);
    const auto mode = WholeFrom(json[2]);
    if (!value || !time || !mode) return std::nullopt;
    return Keyframe{*value, *time, *mode};
}

std::vector<GraphClip::Track> TracksFrom(const Json& json) {
    std::vector<GraphClip::Track> tracks;
    if (!json.is_array()) return tracks;
    for (const Json& entry : json) {
        GraphClip::Track track;
        track.parameter = TextMember(entry, "parameter");
        const Json& keys = Member(entry, "keys");
        if (track.parameter.empty() || !keys.is_array()) continue;
        for (const Json& key : keys) {
            if (const auto keyframe = KeyFrom(key)) track.keys.push_back(*keyframe);
        }
        tracks.push_back(std::move(track));
    }
    return tracks;
}

float PlaceFrom(const Json& json, std::size_t axis) {
    if (!json.is_array() || json.size() != 2) return 0;
    const float place = NumberFrom(json[axis]).value_or(0.0f);
    constexpr float kFurthest = 1e7f;
    return place >= -kFurthest && place <= kFurthest ? place : 0;
}

GraphClip::Node NodeFrom(const Json& json) {
    GraphClip::Node node;
    node.id = TextMember(json, "id");
    node.type = TextMember(json, "type");
    node.displayName = TextMember(json, "name");
    const Json& place = Member(json, "place");
    node.place = {PlaceFrom(place, 0), PlaceFrom(place, 1)};
    node.disabled = Member(json, "disabled") == true;
    node.values = ValuesFrom(Member(json, "values"));
    node.tracks = TracksFrom(Member(json, "tracks"));
    return node;
}

}  // namespace

std::string GraphClip::toText() const {
    Json json;
    json["kind"] = kKind;
    json["version"] = 1;
    json["nodes"] = Json::array();
    for (const Node& node : nodes) json["nodes"].push_back(NodeJson(node));
    json["links"] = Json::array();
    for (const Link& link : links) {
        json["links"].push_back(
            {{"from", TextJson(link.source)}, {"to", TextJson(link.target)}, {"input", link.port}});
    }
    return json.dump(1);
}

std::optional<GraphClip> GraphClip::FromText(std::string_view text) {
    if (text.size() > kMostTextBytes) return std::nullopt;
    const Json json = Json::parse(text, nullptr, false);
    if (Member(json, "kind") != kKind || !Member(json, "nodes").is_array()) return std::nullopt;
    GraphClip clip;
    for (const Json& entry : Member(json, "nodes")) {
        if (clip.nodes.size() == kMostNodes) break;
        Node node = NodeFrom(entry);
        if (!node.id.empty() && !node.type.empty()) clip.nodes.push_back(std::move(node));
    }
    if (clip.nodes.empty()) return std::nullopt;
    const Json& links = Member(json, "links");
    for (const Json& entry : links.is_array() ? links : Json::array()) {
        const auto port = WholeFrom(Member(entry, "input"));
        if (port) clip.links.push_back({TextMember(entry, "from"), TextMember(entry, "to"), *port});
    }
    return clip;
}
