#include "bvh_joint_names.h"

#include <algorithm>
#include <bitset>
#include <cstddef>
#include <optional>
#include <vector>

namespace {

constexpr std::array<std::string_view, kJointCount> kTypeNames = {
    "SpineBase",     "SpineMid",    "Neck",      "Head",          "ShoulderLeft",
    "ElbowLeft",     "WristLeft",   "HandLeft",  "ShoulderRight", "ElbowRight",
    "WristRight",    "HandRight",   "HipLeft",   "KneeLeft",      "AnkleLeft",
    "FootLeft",      "HipRight",    "KneeRight", "AnkleRight",    "FootRight",
    "SpineShoulder", "HandTipLeft", "ThumbLeft", "HandTipRight",  "ThumbRight"};

enum class Side { kMiddle, kLeft, kRight };

// A name without its side and without what programs put before all names.
struct PlainName {
    std::string base;  // small letters and digits
    Side side = Side::kMiddle;
};

// Known names of a joint, the surest first: "shoulder" is the collar bone in files that have an
// "arm" as well, and "leg" is the shin in files that have an "upleg".
struct KnownNames {
    JointType joint;
    Side side;
    std::vector<std::string_view> bases;
};

const std::vector<std::string_view> kShoulderNames = {"arm",   "upperarm", "uparm",
                                                      "shldr", "humerus",  "shoulder"};
const std::vector<std::string_view> kElbowNames = {"forearm", "lowerarm", "lowarm", "elbow",
                                                   "radius"};
const std::vector<std::string_view> kWristNames = {"wrist", "hand"};
const std::vector<std::string_view> kHandNames = {
    "handmiddle1",  "middle1", "middle01", "middleproximal", "fingerbase", "handindex1",
    "indexfinger1", "index1",  "index01",  "indexproximal",  "finger1",    "finger2"};
const std::vector<std::string_view> kThumbNames = {
    "handthumb3", "thumb3", "thumb03", "thumbdistal",   "handthumb2", "thumb2", "thumb02",
    "handthumb1", "thumb1", "thumb01", "thumbproximal", "thumb",      "finger0"};
const std::vector<std::string_view> kHipNames = {"upleg", "upperleg", "thigh",
                                                 "femur", "hip",      "hipjoint"};
const std::vector<std::string_view> kKneeNames = {"knee", "shin",  "lowerleg", "lowleg",
                                                  "calf", "tibia", "leg"};
const std::vector<std::string_view> kAnkleNames = {"ankle", "foot"};
const std::vector<std::string_view> kFootNames = {"toebase", "toe", "toes", "ball", "toe0"};

const std::vector<KnownNames>& AllKnownNames() {
    static const std::vector<KnownNames> names = {
        {kSpineBase, Side::kMiddle, {"hips", "hip", "pelvis", "root", "hipcenter"}},
        {kNeck, Side::kMiddle, {"neck", "neck1", "neck01", "lowerneck"}},
        {kHead, Side::kMiddle, {"head"}},
        {kShoulderLeft, Side::kLeft, kShoulderNames},
        {kShoulderRight, Side::kRight, kShoulderNames},
        {kElbowLeft, Side::kLeft, kElbowNames},
        {kElbowRight, Side::kRight, kElbowNames},
        {kWristLeft, Side::kLeft, kWristNames},
        {kWristRight, Side::kRight, kWristNames},
        {kHandLeft, Side::kLeft, kHandNames},
        {kHandRight, Side::kRight, kHandNames},
        {kThumbLeft, Side::kLeft, kThumbNames},
        {kThumbRight, Side::kRight, kThumbNames},
        {kHipLeft, Side::kLeft, kHipNames},
        {kHipRight, Side::kRight, kHipNames},
        {kKneeLeft, Side::kLeft, kKneeNames},
        {kKneeRight, Side::kRight, kKneeNames},
        {kAnkleLeft, Side::kLeft, kAnkleNames},
        {kAnkleRight, Side::kRight, kAnkleNames},
        {kFootLeft, Side::kLeft, kFootNames},
        {kFootRight, Side::kRight, kFootNames},
    };
    return names;
}

// Without these there is no figure.
constexpr JointType kNeeded[] = {kSpineBase,     kHead,       kShoulderLeft, kElbowLeft, kWristLeft,
                                 kShoulderRight, kElbowRight, kWristRight,   kHipLeft,   kKneeLeft,
                                 kAnkleLeft,     kHipRight,   kKneeRight,    kAnkleRight};

// Small letters and digits of the part behind the last ':', which parts a figure's own name off.
// Words keep apart with '_': at signs between them, and before capitals.
std::string Words(std::string_view name) {
    const std::size_t colon = name.rfind(':');
    if (colon != std::string_view::npos) name.remove_prefix(colon + 1);
    std::string words;
    bool wasSmall = false;
    for (const char c : name) {
        const bool capital = c >= 'A' && c <= 'Z';
        const bool small = c >= 'a' && c <= 'z';
        const bool digit = c >= '0' && c <= '9';
        if (capital && wasSmall) words += '_';
        if (capital) words += static_cast<char>(c - 'A' + 'a');
        if (small || digit) words += c;
        if (!capital && !small && !digit) words += '_';
        wasSmall = small || digit;
    }
    return words;
}

std::string WithoutSigns(std::string_view words) {
    std::string result;
    for (const char c : words) {
        if (c != '_') result += c;
    }
    return result;
}

// Takes a side word from the front or the end.
bool TakeSide(std::string& words, std::string_view word, Side side, PlainName& name) {
    const std::string front = std::string(word) + "_";
    const std::string back = "_" + std::string(word);
    if (words.starts_with(front)) {
        words.erase(0, front.size());
    } else if (words.ends_with(back)) {
        words.erase(words.size() - back.size());
    } else {
        return false;
    }
    name.side = side;
    return true;
}

bool IsKnownBase(std::string_view base) {
    const auto& names = AllKnownNames();
    return std::any_of(names.begin(), names.end(), [&](const KnownNames& known) {
        return known.side != Side::kMiddle &&
               std::find(known.bases.begin(), known.bases.end(), base) != known.bases.end();
    });
}

// "lthigh": the side is one letter that runs into the name.
void TakeRunningSide(PlainName& name) {
    constexpr std::pair<std::string_view, Side> kPrefixes[] = {
        {"left", Side::kLeft}, {"right", Side::kRight}, {"l", Side::kLeft}, {"r", Side::kRight}};
    for (const auto& [prefix, side] : kPrefixes) {
        if (!name.base.starts_with(prefix)) continue;
        const std::string rest = name.base.substr(prefix.size());
        if (!IsKnownBase(rest)) continue;
        name.base = rest;
        name.side = side;
        return;
    }
}

PlainName PlainNameOf(std::string_view jointName) {
    PlainName name;
    std::string words = Words(jointName);
    for (const std::string_view prefix : {"mixamorig_", "mixamorig", "bip01_", "bip001_", "bip_",
                                          "character1_", "j_bip_c_", "j_bip_", "def_", "b_"}) {
        if (words.starts_with(prefix) && words.size() > prefix.size())
            words.erase(0, prefix.size());
    }
    const bool sided = TakeSide(words, "left", Side::kLeft, name) ||
                       TakeSide(words, "right", Side::kRight, name) ||
                       TakeSide(words, "l", Side::kLeft, name) ||
                       TakeSide(words, "r", Side::kRight, name);
    name.base = WithoutSigns(words);
    if (!sided) TakeRunningSide(name);
    return name;
}

std::string_view Trimmed(std::string_view text) {
    const auto isSpace = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
    while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
    while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
    return text;
}

std::optional<std::size_t> FindType(std::string_view name) {
    const auto it = std::find(kTypeNames.begin(), kTypeNames.end(), name);
    if (it == kTypeNames.end()) return std::nullopt;
    return static_cast<std::size_t>(it - kTypeNames.begin());
}

int FindJoint(const BvhFile& file, std::string_view name) {
    for (std::size_t i = 0; i < file.joints.size(); ++i) {
        if (!file.joints[i].isEnd() && file.joints[i].name == name) return static_cast<int>(i);
    }
    return BvhJoint::kNone;
}

bool TakeOwnName(const BvhFile& file, std::string_view line, BvhJointMap& map, std::string& fault) {
    const std::size_t equals = line.find('=');
    const std::string_view type = Trimmed(line.substr(0, equals));
    const auto joint = FindType(type);
    if (equals == std::string_view::npos) {
        fault = "the list of names has a line without '=': " + std::string(line);
    } else if (!joint) {
        fault = "the list of names has an unknown joint: " + std::string(type);
    } else {
        const std::string_view name = Trimmed(line.substr(equals + 1));
        map[*joint] = FindJoint(file, name);
        if (map[*joint] == BvhJoint::kNone) {
            fault = "the list of names has a name that the file lacks: " + std::string(name);
        }
    }
    return fault.empty();
}

bool TakeOwnNames(const BvhFile& file, std::string_view text, BvhJointMap& map,
                  std::string& fault) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        line = Trimmed(line.substr(0, line.find('#')));
        if (!line.empty() && !TakeOwnName(file, line, map, fault)) return false;
    }
    return true;
}

void TakeKnownNames(const BvhFile& file, BvhJointMap& map) {
    std::vector<PlainName> plain;
    for (const BvhJoint& joint : file.joints) plain.push_back(PlainNameOf(joint.name));
    for (const KnownNames& known : AllKnownNames()) {
        int& found = map[static_cast<std::size_t>(known.joint)];
        for (const std::string_view base : known.bases) {
            for (std::size_t i = 0; i < plain.size() && found == BvhJoint::kNone; ++i) {
                if (plain[i].base == base && plain[i].side == known.side) {
                    found = static_cast<int>(i);
                }
            }
        }
    }
}

std::string NamesOf(const BvhFile& file) {
    std::string names;
    for (const BvhJoint& joint : file.joints) {
        if (joint.isEnd()) continue;
        if (!names.empty()) names += ", ";
        names += joint.name;
    }
    return names;
}

}  // namespace

std::string_view JointTypeName(JointType joint) {
    return kTypeNames[static_cast<std::size_t>(joint)];
}

bool MapBvhJoints(const BvhFile& file, std::string_view ownNames, BvhJointMap& map,
                  std::string& fault) {
    fault.clear();
    map.fill(BvhJoint::kNone);
    if (!TakeOwnNames(file, ownNames, map, fault)) return false;
    TakeKnownNames(file, map);
    std::string missing;
    for (const JointType joint : kNeeded) {
        if (map[static_cast<std::size_t>(joint)] != BvhJoint::kNone) continue;
        if (!missing.empty()) missing += ", ";
        missing += JointTypeName(joint);
    }
    if (missing.empty()) return true;
    fault = "no joint found for " + missing +
            "; give a list of names. The file's joints: " + NamesOf(file);
    return false;
}
