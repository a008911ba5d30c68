// What the table of node types tells of inputs, against the nodes themselves.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "app/builtin_node_types.h"
#include "editor/node_type_catalog.h"
#include "platform/debug_output.h"
#include "support/gl_fixture.h"

namespace {

class NodeInputs : public GlTest {
  protected:
    NodeInputs() : engine(BuiltInNodeTypes(), nullptr) {
        for (const NodeType& type : engine.builtInTypes()) engine.typeNames.emplace_back(type.name);
    }
    static bool takes(const Node& target, const Node& source) {
        for (int port = 0; port < target.inputCount; ++port) {
            if (target.canConnect(port, &source)) return true;
        }
        return false;
    }
    const DebugCapture silent;
    Engine engine;
};

TEST_F(NodeInputs, AreWhatTheTableSays) {
    int told = 0;
    for (const NodeType& source : engine.builtInTypes()) {
        ASSERT_TRUE(engine.createNode(std::string("source ") + source.name, source.name));
    }
    for (const NodeType& target : engine.builtInTypes()) {
        if (target.make.family == kImageNode) {
            EXPECT_NE(target.make.takes, NodeFactory::kUnknownInputs)
                << target.name << " is slow to make";
        }
        if (target.make.takes == NodeFactory::kUnknownInputs) continue;
        ++told;
        const Node& node = *engine.findNode(std::string("source ") + target.name);
        for (const NodeType& source : engine.builtInTypes()) {
            const Node& other = *engine.findNode(std::string("source ") + source.name);
            EXPECT_EQ(takes(node, other), (target.make.takes >> other.getType() & 1) != 0)
                << source.name << " to " << target.name;
        }
    }
    EXPECT_GT(told, 0);
}

// To make a node of a type just to ask it compiles its shaders; the palette shall open at once.
TEST_F(NodeInputs, AreAnsweredWithoutMakingAPicturesNode) {
    static int made;
    made = 0;
    std::vector<NodeType> counting = BuiltInNodeTypes();
    for (NodeType& type : counting) {
        if (type.make.family != kImageNode) continue;
        type.make.make = [](Engine&, const std::string&) {
            ++made;
            return std::unique_ptr<Node>();
        };
    }
    Engine graph(counting, nullptr);
    for (const NodeType& type : graph.builtInTypes()) graph.typeNames.emplace_back(type.name);
    ASSERT_TRUE(engine.createNode("picture", "Reader"));
    NodeTypeCatalog catalog(graph);
    const std::vector<OfferedType> offered =
        catalog.fittingTypes({engine.findNode("picture"), nullptr, 0});
    EXPECT_EQ(made, 0);
    std::vector<std::string> names;
    for (const OfferedType& type : offered) names.push_back(type.name);
    EXPECT_NE(std::find(names.begin(), names.end(), "Glow"), names.end());
    EXPECT_NE(std::find(names.begin(), names.end(), "Viewer"), names.end());
    EXPECT_EQ(std::find(names.begin(), names.end(), "HoloBall"), names.end());
    EXPECT_EQ(std::find(names.begin(), names.end(), "Reader"), names.end());
}

}  // namespace
