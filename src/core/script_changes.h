// What comes of node scripts that change while the program runs. Main thread.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/node_script.h"
#include "core/value_object.h"

class Node;

// The parameters that a node had before its script changed. Whatever still points at them is good
// as long as this lives.
struct RetiredParams {
    std::vector<ShaderParam> params;
    std::vector<int> successors;  // of each of `params`: its index among the new ones, or -1
    std::vector<std::unique_ptr<Value_Object>> values;

    // The float among the new parameters that took the place of one of these, null when none did;
    // nothing for a float that is none of these.
    std::optional<float*> successorOf(const float* target,
                                      std::vector<ShaderParam>& newParams) const;
};

// What a node's version of its script differs in from the version before.
struct TakenScript {
    bool otherInputs = false;
    std::optional<RetiredParams> retired;  // none: the parameters are the same, and in their places
};

// What came of the files that changed.
struct ScriptChanges {
    std::vector<Node*> otherParams;  // nodes whose parameters are others now
    bool otherInputs = false;        // nodes have other inputs or links
    std::vector<RetiredParams> retired;
    // The last line on the debug channel, without its line feed: a fault where there was one.
    std::string told;
    bool anyFault = false;
};
