// What the tests of node scripts that change while the program runs share: an engine with one node
// "s" of the script b.node, whose type is "Test", and what becomes of both when files are saved.
#pragma once

#include <gmock/gmock.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "core/image_node_shader.h"
#include "core/script_changes.h"
#include "gpu/shader_program.h"
#include "platform/debug_output.h"
#include "platform/folder_watch.h"
#include "support/graph_fixture.h"
#include "support/temp_folder.h"

class ScriptReloadTest : public GlTest {
  protected:
    // A script whose shader writes `colour`, an expression.
    static std::string text(const std::string& name, const std::string& declarations,
                            const std::string& colour) {
        return "Name \"" + name + "\", \"cat\"\n" + declarations +
               "Source\n#version 330 core\nin vec2 texcoord_Input[8];\nout vec4 frag[1];\n"
               "uniform float A; uniform float B; uniform vec4 C; uniform sampler2D First;\n"
               "void main() { frag[0] = " +
               colour + "; }\n";
    }
    static std::string broken(const std::string& declarations = "") {
        return text("Test", declarations, "vec4(nothing)");
    }
    void SetUp() override {
        GlTest::SetUp();
        if (HasFatalFailure()) return;
        write("b.node", text("Test", "Param 0, \"A\", float, 0, 1, 0.25\n", "vec4(A, 0, 0, 1)"));
        engine_.init();
        engine_.createNode("s", "Test");
    }
    void write(const std::string& name, const std::string& content) const {
        folder_.write("Scripts/" + name, content);
    }
    // As after a save of the file.
    ScriptChanges take(const std::string& name = "b.node") {
        return engine_.takeScriptFiles({{name, false}});
    }
    ScriptChanges save(const std::string& content) {
        write("b.node", content);
        return take();
    }
    ScriptChanges lose(const std::string& name) {
        std::filesystem::remove(folder_.file("Scripts/" + name));
        return engine_.takeScriptFiles({{name, true}});
    }
    ImageNode_Shader& node(const std::string& id = "s") {
        return dynamic_cast<ImageNode_Shader&>(*engine_.findNode(id));
    }
    std::vector<std::string> valueNames(const std::string& id = "s") {
        std::vector<std::string> names;
        for (const Value_Object* value : engine_.valuesOf(&node(id))) names.push_back(value->name);
        return names;
    }
    float* floats(const std::string& value, const std::string& id = "s") {
        const auto channels = ChannelsOf(*engine_.findValue(&node(id), value));
        return channels.empty() ? nullptr : channels.front().data;
    }
    KeyframeTrack* track(const std::string& name) {
        for (KeyframeTrack* known : engine_.allTracks()) {
            if (known->name == name) return known;
        }
        return nullptr;
    }
    void expectPicture(ImageNode& shown, std::vector<float> rgba) {
        constexpr float kHalfFloat = 1.0f / 1024;  // stores 10 bits behind the leading one
        engine_.update(engine_.time);
        const RegionPixels pixels = Pictures::draw(shown, {5, 5, 1, 1});
        for (std::size_t i = 0; i < 4; ++i) {
            EXPECT_NEAR(pixels.rgba[i], rgba[i], kHalfFloat) << "channel " << i;
        }
    }
    PictureNode& addPicture(const std::string& id) {
        engine_.createNode(id, "Picture");
        return dynamic_cast<PictureNode&>(*engine_.findNode(id));
    }

    TempFolder folder_;
    WorkingFolder working_{folder_.path()};
    DebugCapture said_;
    Engine engine_{{{"Picture", &MakePicture}}, nullptr};

  private:
    struct Pictures : GraphTest {
        using GraphTest::draw;
    };
    static std::unique_ptr<Node> MakePicture(Engine& engine, const std::string& id) {
        return std::make_unique<PictureNode>(&engine, id);
    }
};
