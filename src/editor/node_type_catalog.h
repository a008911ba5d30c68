// The node types on offer, with the group that each belongs to, and whether a node of a type fits a
// link. The latter is asked of a node that is made for the question in an engine of its own and
// goes again; answers are kept. Main thread, with the OpenGL context where nodes need it.
#pragma once

#include <map>
#include <string>
#include <tuple>
#include <vector>

class Engine;
class Node;

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
    explicit NodeTypeCatalog(Engine& graph) : engine_(graph) {}

    // All types, each once, in the engine's order.
    std::vector<OfferedType> allTypes() const;
    // Those of which a new node fits the open end.
    std::vector<OfferedType> fittingTypes(const OpenLink& link);

  private:
    bool fits(Engine& scratch, const std::string& typeName, const OpenLink& link) const;
    bool scriptFits(const std::string& typeName, const OpenLink& link, bool& known) const;
    std::string typeNameOf(const Node& node) const;

    Engine& engine_;
    // By new type, type at the known end, and its port (-1: it is the source).
    std::map<std::tuple<std::string, std::string, int>, bool> answers_;
};
