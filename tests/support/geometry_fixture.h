// A graph for tests of geometry nodes without OpenGL: an engine without built-in types, and nodes
// that offer given objects or pictures. Users link vorn_geometry.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/engine.h"
#include "core/geometry_node.h"
#include "core/image_node.h"
#include "support/parameter_table.h"

// Offers the objects that a test puts into it.
class GeometrySource : public GeometryNode {
  public:
    using GeometryNode::GeometryNode;
    bool canConnect(int, const Node*) const override { return false; }
    bool process() override {
        ++processed;
        return true;
    }
    GeometryObject& append(const std::string& name, std::uint32_t vertexArray = 0) {
        GeometryObject object;
        object.name = name;
        object.vertexArray = vertexArray;
        AppendObject(object);
        return objects.back();
    }
    int processed = 0;
};

// A picture without textures.
class EmptyImage : public GL_Image {
  public:
    EmptyImage() : GL_Image(1, 1, 0) {}
};

class ImageSource : public ImageNode {
  public:
    ImageSource(Engine* owner, const std::string& nodeId) : ImageNode(owner, nodeId) {
        images[0] = std::make_shared<EmptyImage>();
    }
    bool canConnect(int, const Node*) const override { return false; }
    bool process() override { return true; }
};

class GeometryTest : public ::testing::Test {
  protected:
    GeometryTest() : engine({}, nullptr) {}

    template <typename NodeClass>
    NodeClass& add(const std::string& id) {
        auto node = std::make_unique<NodeClass>(&engine, id);
        NodeClass& result = *node;
        EXPECT_TRUE(engine.addNode(id, std::move(node)));
        return result;
    }
    void link(const Node& source, const Node& target, int port) {
        EXPECT_TRUE(engine.connect(source.id, target.id, port));
    }
    // One frame in which only this node is pulled.
    bool run(Node& node, float timeSeconds = 0) {
        engine.update(timeSeconds);
        return node.pull();
    }

    Engine engine;
};

inline std::vector<std::string> NamesOf(const GeometryNode& node) {
    std::vector<std::string> names;
    for (const GeometryObject& object : node.objects) names.push_back(object.name);
    return names;
}
