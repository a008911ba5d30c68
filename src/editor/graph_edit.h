// Edits of the graph that the canvas makes, through the engine's operations only, and questions
// about its links. No screen is needed. Main thread.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "core/node.h"

class Engine;

// The next free id of a type: its name and a number from the type's counter, from 1 on. A "." of
// the name becomes "_", since it ends the id in names of tracks.
std::string NextNodeId(Engine& engine, const std::string& typeName);
// Makes a node under the next free id. Null, and nothing is left behind, when the type is unknown.
Node* CreateNode(Engine& engine, const std::string& typeName);

enum class Ports { All, OnlyFree };
// The first port of the target that may take the source; nothing when none may.
std::optional<int> FirstFittingPort(const Node& target, const Node& source, Ports which);
// Links a port, in place of what is on it. False, with everything as it was, when the port may not
// take the source, or has it already.
bool SetLink(Engine& engine, const Node& source, const Node& target, int port);

// A link, named by its target.
using LinkEnd = std::pair<const Node*, int>;
// The links that close a cycle: those that lead back, on a walk from the outputs and then from all
// other nodes, to a node whose inputs are being walked.
std::set<LinkEnd> FeedbackLinks(const Engine& engine);
// The ids of all nodes that feed this one, directly or not; never its own. Links that close cycles
// are not followed: what comes after a node would be behind it, too.
std::vector<std::string> NodesBehind(const Engine& engine, const std::string& id,
                                     const std::set<LinkEnd>& feedback);
