// Nodes taken out of a graph to be put in again: types, values, tracks, the links among them, their
// names and places. As text it is JSON, so that it can be pasted into another project, or into a
// chat and back. No screen is needed. Main thread.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <variant>
#include <vector>

#include "core/keyframe_track.h"
#include "gpu/math_types.h"

class Engine;

struct GraphClip {
    // By type of value: bool, int, one to four floats, text.
    using Content = std::variant<bool, std::int32_t, std::vector<float>, std::string>;
    struct Value {
        std::string name;
        Content content;
    };
    struct Track {
        std::string parameter;  // name of the value with the suffix of the channel
        std::vector<Keyframe> keys;
    };
    struct Node {
        std::string id;  // as it was; names the ends of links within the clip
        std::string type;
        std::string displayName;  // empty: none
        Vec2 place;               // pixels of the canvas
        bool disabled = false;
        std::vector<Value> values;
        std::vector<Track> tracks;
    };
    struct Link {
        std::string source, target;
        std::int32_t port = 0;
    };

    std::vector<Node> nodes;
    std::vector<Link> links;

    // The nodes of these ids, in the graph's order. Places and names are left to the caller. Values
    // are as they stand, except where a track drives them.
    static GraphClip FromGraph(const Engine& engine, std::span<const std::string> ids);
    std::string toText() const;
    // Nothing when the text is no clip; parts that make no sense are left out.
    static std::optional<GraphClip> FromText(std::string_view text);

    struct Pasted {
        std::unordered_map<std::string, std::string> newIds;  // by old id
        int unknownTypes = 0;                                 // nodes that could not be made
    };
    // Makes the nodes under new ids, in order. Tracks of parameters that a node does not have, and
    // links that it does not take, are left out.
    Pasted pasteInto(Engine& engine) const;

    static constexpr std::size_t kMostTextBytes = 64u << 20;
    static constexpr std::size_t kMostNodes = 10000;
};
