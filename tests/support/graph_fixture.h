// A graph for tests of image nodes: an engine without built-in types, nodes that offer given
// pictures, and passes that draw only a part of their target, so that a test stays quick on a
// software renderer. Users link vorn_core.
#pragma once

#include <GL/glew.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/engine.h"
#include "core/image_node.h"
#include "gpu/gl_framebuffer.h"
#include "support/gl_fixture.h"
#include "support/reference_picture.h"

// Offers a picture that it was given.
class PictureNode : public ImageNode {
  public:
    PictureNode(Engine* owner, const std::string& nodeId) : ImageNode(owner, nodeId) {}
    PictureNode(Engine* owner, const std::string& nodeId, std::shared_ptr<GL_Image> picture)
        : ImageNode(owner, nodeId) {
        images[0] = std::move(picture);
    }
    bool canConnect(int, const Node*) const override { return false; }
    bool process() override { return true; }
};

// Pixels of a target; the origin is its first row in memory.
struct Region {
    int x = 0, y = 0, width = kFrameWidth, height = kFrameHeight;
};

struct RegionPixels {
    Region region;
    std::vector<float> rgba;

    // Coordinates of the whole target.
    const float* at(int x, int y) const {
        const int index = (y - region.y) * region.width + (x - region.x);
        return &rgba[static_cast<std::size_t>(index) * 4];
    }
};

class GraphTest : public GlTest {
  protected:
    GraphTest() : engine({}, nullptr) {}

    template <typename NodeClass, typename... Arguments>
    NodeClass& add(const std::string& id, Arguments&&... arguments) {
        auto node = std::make_unique<NodeClass>(&engine, id, std::forward<Arguments>(arguments)...);
        NodeClass& result = *node;
        EXPECT_TRUE(engine.addNode(id, std::move(node)));
        return result;
    }

    void link(const Node& source, const Node& target, int port) {
        EXPECT_TRUE(engine.connect(source.id, target.id, port));
    }

    // Writes a parameter of a node by its name.
    void set(const Node& node, const std::string& name, std::initializer_list<float> numbers) {
        Value_Object* value = engine.findValue(&node, name);
        ASSERT_NE(value, nullptr) << name;
        if (auto* whole = dynamic_cast<ValueInt*>(value)) {
            *whole->data = static_cast<std::int32_t>(*numbers.begin());
            return;
        }
        float* data = nullptr;
        if (auto* number = dynamic_cast<ValueFloat*>(value)) data = number->data;
        if (auto* pair = dynamic_cast<ValueVec2*>(value)) data = pair->data;
        if (auto* four = dynamic_cast<ValueVec4*>(value)) data = four->data;
        ASSERT_NE(data, nullptr) << name;
        std::copy(numbers.begin(), numbers.end(), data);
    }

    // Runs a node and what it pulls; only the region is drawn, the rest of the targets stays.
    static RegionPixels draw(ImageNode& node, const Region& region = {}) {
        glEnable(GL_SCISSOR_TEST);
        glScissor(region.x, region.y, region.width, region.height);
        node.pull();
        glDisable(GL_SCISSOR_TEST);
        return read(static_cast<const GL_FrameBuffer&>(*node.images[0]), region);
    }

    static RegionPixels read(const GL_FrameBuffer& target, const Region& region) {
        RegionPixels pixels{region, {}};
        pixels.rgba.resize(static_cast<std::size_t>(region.width * region.height) * 4);
        glBindFramebuffer(GL_READ_FRAMEBUFFER, target.framebuffer);
        glReadBuffer(GL_COLOR_ATTACHMENT0);
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        glFinish();  // Mesa's software renderer does not wait for a clear that nothing followed
        glReadPixels(region.x, region.y, region.width, region.height, GL_RGBA, GL_FLOAT,
                     pixels.rgba.data());
        glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
        return pixels;
    }

    Engine engine;
};
