// The node types on offer, with the group that each belongs to, and whether a node of a type fits a
// link. The latter is asked of a node: one of the graph where there is one, else one that is made
// for the question in an engine of its own. Main thread, with the OpenGL context where nodes need
// it.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

class Engine;
class Node;
struct NodeScript;
struct NodeType;

struct OfferedType {
    std::string name;
    std::string category;
};

// A link whose one end is open: from a source, or to a port of a target. The other is null.
struct OpenLink {
    const Node* source = nullptr;
    const Node* target = nullptr;
    int port = 0;
};

class NodeTypeCatalog {
  public:
    explicit NodeTypeCatalog(Engine& graph);
    ~NodeTypeCatalog();

    // All types, each once, in the engine's order.
    std::vector<OfferedType> allTypes() const;
    // Those of which a new node fits the open end.
    std::vector<OfferedType> fittingTypes(const OpenLink& link);

  private:
    bool fits(const std::string& typeName, const OpenLink& link);
    bool scriptFits(const NodeScript& script, const OpenLink& link) const;
    bool takesSource(const NodeType& type, const Node& source);
    const Node* nodeOfGraph(const std::string& typeName) const;
    const Node* scratchNode(const std::string& typeName);

    Engine& engine_;
    std::unique_ptr<Engine> scratch_;  // made when first needed
    // By type and family of the source. Image nodes have large targets and are not kept.
    std::map<std::pair<std::string, int>, bool> imageAnswers_;
};
