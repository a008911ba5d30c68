#include "scene_json.h"

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <initializer_list>
#include <limits>
#include <nlohmann/json.hpp>
#include <utility>

namespace {

using Json = nlohmann::ordered_json;

constexpr std::pair<const char*, std::int32_t> kModes[] = {
    {"over", 2}, {"screen", 7}, {"dodge", 27}};
constexpr std::pair<const char*, SceneEase> kEases[] = {{"linear", SceneEase::kLinear},
                                                        {"in", SceneEase::kIn},
                                                        {"out", SceneEase::kOut},
                                                        {"inOut", SceneEase::kInOut},
                                                        {"hold", SceneEase::kHold}};

constexpr double kLargest = 1e9;  // of any number but sampled ones: far outside of every picture

// Reads one object, keeping the first fault with the place that it stands at.
class SceneReader {
  public:
    bool read(const Json& root, SceneDescription& scene);
    const std::string& fault() const { return fault_; }

  private:
    bool fail(const std::string& place, const std::string& what) {
        if (fault_.empty()) fault_ = place.empty() ? what : place + ": " + what;
        return false;
    }
    bool checkNames(const Json& object, const std::string& place,
                    std::initializer_list<std::string_view> known);
    bool number(const Json& object, const char* name, const std::string& place, double& value);
    bool rect(const Json& object, const std::string& place, std::array<double, 4>& value);
    bool ease(const Json& object, const std::string& place, SceneEase& value);
    bool mode(const Json& object, const std::string& place, std::int32_t& value);
    bool name(const Json& object, const std::string& place, std::string& value);
    bool camera(const Json& list, std::vector<SceneCameraKey>& keys);
    bool layer(const Json& object, const std::string& place, SceneLayer& value);
    bool layerKeys(const Json& list, const std::string& place, std::vector<SceneLayerKey>& keys);
    bool sampled(const Json& list, const std::string& place, std::vector<ParallaxKey>& keys);
    bool sampledKey(const Json& list, const std::string& place, ParallaxKey& key);
    template <typename Key>
    bool ascending(const std::vector<Key>& keys, const std::string& place);

    std::string fault_;
};

std::string Item(const std::string& place, std::size_t index) {
    return place + "[" + std::to_string(index) + "]";
}

bool SceneReader::checkNames(const Json& object, const std::string& place,
                             std::initializer_list<std::string_view> known) {
    if (!object.is_object()) return fail(place, "must be an object");
    for (const auto& [key, value] : object.items()) {
        bool found = false;
        for (const std::string_view name : known) found = found || name == key;
        if (!found) return fail(place, "\"" + key + "\" is not known here");
    }
    return true;
}

// Leaves the value alone where the object has none.
bool SceneReader::number(const Json& object, const char* name, const std::string& place,
                         double& value) {
    const auto it = object.find(name);
    if (it == object.end()) return true;
    if (!it->is_number()) return fail(place, std::string("\"") + name + "\" must be a number");
    value = it->get<double>();
    return std::abs(value) <= kLargest || fail(place, std::string("\"") + name + "\" is too large");
}

bool SceneReader::rect(const Json& object, const std::string& place, std::array<double, 4>& value) {
    const auto it = object.find("rect");
    const char* const kWanted = "\"rect\" must be [left, top, right, bottom]";
    if (it == object.end() || !it->is_array() || it->size() != 4) return fail(place, kWanted);
    for (std::size_t i = 0; i < 4; ++i) {
        if (!(*it)[i].is_number()) return fail(place, kWanted);
        value[i] = (*it)[i].get<double>();
        if (std::abs(value[i]) > kLargest) return fail(place, "\"rect\" is too large");
    }
    return true;
}

bool SceneReader::ease(const Json& object, const std::string& place, SceneEase& value) {
    const auto it = object.find("ease");
    if (it == object.end()) return true;
    for (const auto& [text, known] : kEases) {
        if (*it == text) {
            value = known;
            return true;
        }
    }
    return fail(place, "\"ease\" must be \"linear\", \"in\", \"out\", \"inOut\" or \"hold\"");
}

bool SceneReader::mode(const Json& object, const std::string& place, std::int32_t& value) {
    const auto it = object.find("mode");
    if (it == object.end()) return true;
    for (const auto& [text, known] : kModes) {
        if (*it == text) {
            value = known;
            return true;
        }
    }
    if (it->is_number_integer()) {
        const auto wide = it->get<std::int64_t>();
        const bool beyond = it->is_number_unsigned() && wide < 0;
        value = static_cast<std::int32_t>(wide);
        if (value == wide && !beyond) return true;
    }
    return fail(place, "\"mode\" must be \"over\", \"screen\", \"dodge\" or a whole number");
}

bool FromHex(std::string_view hex, std::string& bytes) {
    if (hex.size() % 2 != 0) return false;
    bytes.clear();
    for (std::size_t i = 0; i < hex.size(); i += 2) {
        unsigned value = 0;
        const char* const end = hex.data() + i + 2;
        if (std::from_chars(hex.data() + i, end, value, 16).ptr != end) return false;
        bytes.push_back(static_cast<char>(value));
    }
    return true;
}

bool SceneReader::name(const Json& object, const std::string& place, std::string& value) {
    if (const auto hex = object.find("nameHex"); hex != object.end()) {
        if (!hex->is_string() || !FromHex(hex->get_ref<const std::string&>(), value)) {
            return fail(place, "\"nameHex\" must be the bytes of a name, two digits each");
        }
    } else {
        const auto it = object.find("name");
        if (it == object.end() || !it->is_string()) {
            return fail(place, "\"name\" must be the name of a picture");
        }
        value = it->get<std::string>();
    }
    if (value.size() >= kParallaxNameBytes) return fail(place, "the name is longer than 511 bytes");
    if (value.find('\0') != std::string::npos) return fail(place, "the name has a zero byte in it");
    return true;
}

template <typename Key>
bool SceneReader::ascending(const std::vector<Key>& keys, const std::string& place) {
    for (std::size_t i = 1; i < keys.size(); ++i) {
        if (!(keys[i - 1].time < keys[i].time)) {
            return fail(Item(place, i), "its time must be later than that of the key before");
        }
    }
    return true;
}

bool SceneReader::camera(const Json& list, std::vector<SceneCameraKey>& keys) {
    if (!list.is_array()) return fail("camera", "must be a list of keys");
    for (const Json& object : list) {
        const std::string place = Item("camera", keys.size());
        SceneCameraKey key;
        if (!checkNames(object, place, {"time", "x", "y", "z", "ease"}) ||
            !number(object, "time", place, key.time) || !number(object, "x", place, key.x) ||
            !number(object, "y", place, key.y) || !number(object, "z", place, key.z) ||
            !ease(object, place, key.ease)) {
            return false;
        }
        keys.push_back(key);
    }
    return ascending(keys, "camera");
}

bool SceneReader::layerKeys(const Json& list, const std::string& place,
                            std::vector<SceneLayerKey>& keys) {
    if (!list.is_array() || list.empty()) return fail(place, "must be a list of at least one key");
    for (const Json& object : list) {
        const std::string keyPlace = Item(place, keys.size());
        SceneLayerKey key;
        if (!checkNames(object, keyPlace, {"time", "rect", "opacity", "ease"}) ||
            !number(object, "time", keyPlace, key.time) || !rect(object, keyPlace, key.rect) ||
            !number(object, "opacity", keyPlace, key.opacity) ||
            !ease(object, keyPlace, key.ease)) {
            return false;
        }
        keys.push_back(key);
    }
    return ascending(keys, place);
}

// A float, or the bits of one.
bool ReadFloat(const Json& json, float& value) {
    if (json.is_number()) {
        const double wide = json.get<double>();
        if (std::abs(wide) > std::numeric_limits<float>::max()) return false;
        value = static_cast<float>(wide);
        return true;
    }
    if (!json.is_string()) return false;
    const auto& text = json.get_ref<const std::string&>();
    std::uint32_t bits = 0;
    if (text.size() != 10 || text.compare(0, 2, "0x") != 0) return false;
    const char* const end = text.data() + text.size();
    if (std::from_chars(text.data() + 2, end, bits, 16).ptr != end) return false;
    value = std::bit_cast<float>(bits);
    return true;
}

bool SceneReader::sampledKey(const Json& list, const std::string& place, ParallaxKey& key) {
    const char* const kWanted = "must be [frame, time, left, top, right, bottom, opacity]";
    if (!list.is_array() || list.size() != 7) return fail(place, kWanted);
    if (!list[0].is_number_integer()) return fail(place, kWanted);
    const auto frame = list[0].get<std::int64_t>();
    if (frame < 0 || frame > std::numeric_limits<std::uint32_t>::max()) {
        return fail(place, "the frame must be 0 to 4294967295");
    }
    key.frame = static_cast<std::uint32_t>(frame);
    float* const fields[] = {&key.time, &key.left, &key.top, &key.right, &key.bottom, &key.opacity};
    for (std::size_t i = 0; i < std::size(fields); ++i) {
        if (!ReadFloat(list[i + 1], *fields[i])) return fail(place, kWanted);
    }
    return true;
}

bool SceneReader::sampled(const Json& list, const std::string& place,
                          std::vector<ParallaxKey>& keys) {
    if (!list.is_array()) return fail(place, "must be a list of keys");
    for (const Json& item : list) {
        ParallaxKey key;
        if (!sampledKey(item, Item(place, keys.size()), key)) return false;
        keys.push_back(key);
    }
    return true;
}

bool SceneReader::layer(const Json& object, const std::string& place, SceneLayer& value) {
    if (!checkNames(object, place,
                    {"name", "nameHex", "mode", "depth", "rect", "opacity", "keys", "sampled"}) ||
        !name(object, place, value.name) || !mode(object, place, value.mode) ||
        !number(object, "depth", place, value.depth)) {
        return false;
    }
    if (value.depth < 0) return fail(place, "\"depth\" must not be below 0");
    const int ways = int{object.contains("rect")} + int{object.contains("keys")} +
                     int{object.contains("sampled")};
    if (ways != 1) return fail(place, "needs one of \"rect\", \"keys\" and \"sampled\"");
    if (const auto it = object.find("sampled"); it != object.end()) {
        value.isSampled = true;
        return sampled(*it, place + ".sampled", value.sampled);
    }
    if (const auto it = object.find("keys"); it != object.end()) {
        if (object.contains("opacity")) return fail(place, "\"opacity\" belongs into the keys");
        return layerKeys(*it, place + ".keys", value.keys);
    }
    SceneLayerKey& key = value.keys.emplace_back();
    return rect(object, place, key.rect) && number(object, "opacity", place, key.opacity);
}

bool SceneReader::read(const Json& root, SceneDescription& scene) {
    if (!checkNames(root, "", {"length", "camera", "layers"}) ||
        !number(root, "length", "", scene.lengthSeconds)) {
        return false;
    }
    if (!(scene.lengthSeconds >= 0 && scene.lengthSeconds <= kMaxSceneSeconds)) {
        return fail("", "\"length\" must be 0 to 3600 seconds");
    }
    if (const auto it = root.find("camera"); it != root.end() && !camera(*it, scene.camera)) {
        return false;
    }
    const auto layers = root.find("layers");
    if (layers == root.end() || !layers->is_array()) {
        return fail("", "\"layers\" must be a list of layers");
    }
    for (const Json& object : *layers) {
        SceneLayer& value = scene.layers.emplace_back();
        if (!layer(object, Item("layers", scene.layers.size() - 1), value)) return false;
    }
    return true;
}

// The shortest text of a float that is read back as the same float.
Json FloatJson(float value) {
    if (!std::isfinite(value)) {
        char bits[16];
        std::snprintf(bits, sizeof bits, "0x%08x", std::bit_cast<std::uint32_t>(value));
        return bits;
    }
    char text[64];
    const auto end = std::to_chars(text, text + sizeof text, value).ptr;
    double wide = 0;
    std::from_chars(text, end, wide);
    const bool same = std::abs(wide) <= std::numeric_limits<float>::max() &&
                      std::bit_cast<std::uint32_t>(static_cast<float>(wide)) ==
                          std::bit_cast<std::uint32_t>(value);
    return same ? wide : static_cast<double>(value);
}

Json NameJson(const std::string& name, const char*& key) {
    const Json text = name;
    key = "name";
    try {
        (void)text.dump();
        return text;
    } catch (const Json::exception&) {
        key = "nameHex";
    }
    std::string hex;
    for (const char c : name) {
        char digits[4];
        std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned char>(c));
        hex += digits;
    }
    return hex;
}

Json ModeJson(std::int32_t mode) {
    for (const auto& [text, known] : kModes) {
        if (mode == known) return text;
    }
    return mode;
}

}  // namespace

bool ParseSceneJson(std::string_view text, SceneDescription& scene, std::string& fault) {
    scene = {};
    Json root;
    try {
        root = Json::parse(text, nullptr, true, true);  // with comments
    } catch (const Json::exception& error) {
        fault = error.what();
        return false;
    }
    SceneReader reader;
    const bool done = reader.read(root, scene);
    fault = reader.fault();
    return done;
}

std::string SceneJson(std::span<const ParallaxRecord> records) {
    std::string text = "{\"layers\": [";
    for (const ParallaxRecord& record : records) {
        const char* nameKey = nullptr;
        const Json name = NameJson(record.name, nameKey);
        text += &record == records.data() ? "\n  " : ",\n  ";
        text += std::string("{\"") + nameKey + "\": " + name.dump() +
                ", \"mode\": " + ModeJson(record.mode).dump() + ", \"sampled\": [";
        for (const ParallaxKey& key : record.keys) {
            const Json item = {key.frame,
                               FloatJson(key.time),
                               FloatJson(key.left),
                               FloatJson(key.top),
                               FloatJson(key.right),
                               FloatJson(key.bottom),
                               FloatJson(key.opacity)};
            text += &key == record.keys.data() ? "\n    " : ",\n    ";
            text += item.dump();
        }
        text += "]}";
    }
    return text + "\n]}\n";
}
