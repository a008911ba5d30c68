#include "editor/graph_edit.h"

#include <algorithm>
#include <limits>
#include <unordered_map>
#include <unordered_set>

#include "core/engine.h"

std::string NextNodeId(Engine& engine, const std::string& typeName) {
    std::string stem = typeName;
    std::replace(stem.begin(), stem.end(), '.', '_');
    std::int32_t& counter = engine.typeCounters[typeName];
    // The counter comes from a file, and starts anew when a node of the type is deleted.
    if (counter < 0) counter = 0;
    for (;;) {
        counter = counter == std::numeric_limits<std::int32_t>::max() ? 1 : counter + 1;
        std::string id = stem + std::to_string(counter);
        if (engine.findNode(id) == nullptr) return id;
    }
}

Node* CreateNode(Engine& engine, const std::string& typeName) {
    const auto& known = engine.typeNames;
    if (std::find(known.begin(), known.end(), typeName) == known.end()) return nullptr;
    const std::string id = NextNodeId(engine, typeName);
    if (engine.createNode(id, typeName)) return engine.findNode(id);
    engine.nodes.erase(id);
    engine.nodeTypes.erase(id);
    return nullptr;
}

std::optional<int> FirstFittingPort(const Node& target, const Node& source, Ports which) {
    for (int port = 0; port < target.inputCount; ++port) {
        if (which == Ports::OnlyFree && target.getInput(port) != nullptr) continue;
        if (target.canConnect(port, &source)) return port;
    }
    return std::nullopt;
}

bool SetLink(Engine& engine, const Node& source, const Node& target, int port) {
    if (port < 0 || port >= target.inputCount || target.getInput(port) == &source) return false;
    if (!target.canConnect(port, &source)) return false;
    engine.disconnect(target.id, port);
    return engine.connect(source.id, target.id, port);
}

namespace {

// The walk keeps its own stack: chains in files may be longer than the program's.
class FeedbackWalk {
  public:
    void walk(const Node* root) {
        if (!enter(root)) return;
        while (!path_.empty()) {
            Step& step = path_.back();
            if (step.port >= step.node->inputCount) {
                marks_[step.node] = Mark::Done;
                path_.pop_back();
                continue;
            }
            const int port = step.port++;
            const Node* source = step.node->getInput(port);
            if (source == nullptr || enter(source)) continue;
            if (marks_[source] == Mark::OnPath) feedback.insert({step.node, port});
        }
    }

    std::set<LinkEnd> feedback;

  private:
    enum class Mark { OnPath, Done };
    struct Step {
        const Node* node;
        int port;
    };

    bool enter(const Node* node) {
        if (!marks_.emplace(node, Mark::OnPath).second) return false;
        path_.push_back({node, 0});
        return true;
    }

    std::vector<Step> path_;
    std::unordered_map<const Node*, Mark> marks_;
};

}  // namespace

std::set<LinkEnd> FeedbackLinks(const Engine& engine) {
    FeedbackWalk walk;
    for (const OutputNode* output : engine.outputs) walk.walk(output);
    for (const auto& [id, node] : engine.nodes) {
        // What nothing takes comes next, so that the rest of a cycle is judged from its consumer.
        if (node && node->consumers.empty()) walk.walk(node.get());
    }
    for (const auto& [id, node] : engine.nodes) {
        if (node) walk.walk(node.get());
    }
    return std::move(walk.feedback);
}

std::vector<std::string> NodesBehind(const Engine& engine, const std::string& id,
                                     const std::set<LinkEnd>& feedback) {
    const Node* root = engine.findNode(id);
    std::vector<const Node*> list;
    std::vector<std::string> ids;
    if (root == nullptr) return ids;
    std::unordered_set<const Node*> seen = {root};
    list.push_back(root);
    for (std::size_t i = 0; i < list.size(); ++i) {
        const Node* node = list[i];
        for (int port = 0; port < node->inputCount; ++port) {
            const Node* source = node->getInput(port);
            if (source == nullptr || feedback.contains({node, port})) continue;
            if (seen.insert(source).second) list.push_back(source);
        }
    }
    for (std::size_t i = 1; i < list.size(); ++i) ids.push_back(list[i]->id);
    return ids;
}
