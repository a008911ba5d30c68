// The authoring screen while a node's script changes: panels, boxes, messages, and what the user
// has in hand.
#include <GL/glew.h>

#include <algorithm>
#include <random>

#include "authoring_fixture.h"
#include "core/image_node_shader.h"
#include "editor/node_type_catalog.h"
#include "editor/ui_checkbox.h"
#include "editor/ui_log_view.h"
#include "editor/ui_properties_panel.h"
#include "editor/ui_value_control.h"
#include "gpu/shader_program.h"
#include "platform/folder_watch.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr Vec4 kErrorRed = {1, 0, 0, 1};

class ScriptOnScreen : public AuthoringTest {
  protected:
    static std::string text(const std::string& declarations, const std::string& colour) {
        return "Name \"Wave\", \"Mine\"\n" + declarations +
               "Source\n#version 330 core\nout vec4 frag[1];\nvoid main() { frag[0] = " + colour +
               "; }\n";
    }
    static std::string size(const char* name) {
        return "Param 0, \"" + std::string(name) + "\", float, 0, 1, 0.5\n";
    }
    void SetUp() override {
        folder.write("Scripts/w.node", text(size("Size"), "vec4(1)"));
        AuthoringTest::SetUp();
        if (HasFatalFailure()) return;
        engine.createNode("w", "Wave");
        engine.createNode("x", "Wave");
        engine.createNode("view", "Viewer");
        engine.connect("w", "view", 0);
        edit();
    }
    void save(const std::string& content, const std::string& name = "w.node") {
        folder.write("Scripts/" + name, content);
        ui.TakeScriptFiles({{name, false}});
    }
    UI_PropertiesPanel& panelOf(const std::string& id) {
        return dynamic_cast<UI_PropertiesPanel&>(*ui.openPanels.at(id));
    }
    ImageNode_Shader& wave(const std::string& id = "w") {
        return dynamic_cast<ImageNode_Shader&>(*engine.findNode(id));
    }
    // Draws the screen and counts the pixels of a colour within a rectangle.
    int pixelsOf(const Vec4& colour, int x, int y, int width, int height) {
        GL_FrameBuffer screen(kFrameWidth, kFrameHeight, 1, 8, GL_RGBA, TargetDepth::None,
                              TargetWrap::Border);
        screen.Bind();
        screen.SelectDrawBuffers();
        screen.SetViewport();
        ui.DrawFrame();
        GL_FrameBuffer::Unbind();
        const std::vector<float> rgba = ReadTarget(screen);
        int count = 0;
        for (int row = y; row < y + height; ++row) {
            for (int column = x; column < x + width; ++column) {
                const std::size_t place =
                    (static_cast<std::size_t>(kFrameHeight - 1 - row) * kFrameWidth +
                     static_cast<std::size_t>(column)) *
                    4;
                // Text is blended at its edges; only its full pixels are counted.
                constexpr float kByte = 2.0f / 255;
                const bool same = std::abs(rgba[place] - colour.r) < kByte &&
                                  std::abs(rgba[place + 1] - colour.g) < kByte &&
                                  std::abs(rgba[place + 2] - colour.b) < kByte;
                count += same ? 1 : 0;
            }
        }
        return count;
    }
    int redOnBox() {
        const UI_Node& box = *ui.nodeCanvas->boxOf("w");
        const CanvasView& view = ui.nodeCanvas->view;
        return pixelsOf(kErrorRed, view.screenX(box.x) - 12, view.screenY(box.y) - 12, 24, 24);
    }
    int redOnPanel() {
        const UI_PropertiesPanel& panel = panelOf("w");
        return pixelsOf(kFaultColor, panel.x, panel.y, panel.width, panel.height);
    }
    int redInLog() {
        const UI_Panel& right = *ui.rightPanel;
        return pixelsOf(kFaultColor, right.x, right.y, right.width, right.height);
    }
    int redAtTheFoot() { return pixelsOf(kFaultColor, 0, 1056, 1920, 24); }
};

// Whatever becomes of a script: nodes, tracks, panels and boxes agree with each other, and the
// project is the one that a load of it gives.
class ScriptChurn : public ScriptOnScreen {
  protected:
    std::uint32_t below(std::uint32_t count) { return random_() % count; }

    // Up to four inputs and six parameters, each of any kind; one in eight does not compile. A
    // project finds parameters by their names: what is to be loaded again has each name once.
    enum class Names { Once, Any };
    std::string anyScript(Names names) {
        static constexpr const char* kNames[] = {"A", "B", "C", "D", "E", "F", "", "E.x"};
        static constexpr const char* kKinds[] = {"float, 0, 1, 0.5",
                                                 "floatEvolution, 0, 9, 2",
                                                 "int, 0, 9, 3",
                                                 "direction, 1, 2",
                                                 "position, 0.5, 0.5",
                                                 "color, 1, 0.5, 0, 1",
                                                 "option, 2, \"p\", \"q\", 1",
                                                 "option, 1, \"q\", 0",
                                                 "unknown"};
        const std::uint32_t first = below(6);
        const auto name = [&](std::uint32_t i) {
            const std::uint32_t place = names == Names::Once ? (first + i) % 6 : below(8);
            return "\"" + std::string(kNames[place]) + "\"";
        };
        std::string declarations;
        for (std::uint32_t i = 0, count = below(5); i < count; ++i) {
            declarations += "Input " + std::to_string(i) + ", " + name(i) + ", \"x\"\n";
        }
        for (std::uint32_t i = 0, count = below(7); i < count; ++i) {
            declarations +=
                "Param " + std::to_string(i) + ", " + name(i) + ", " + kKinds[below(9)] + "\n";
        }
        return text(declarations, below(8) == 0 ? "vec4(nothing)" : "vec4(0.5)");
    }
    void editAtRandom() {
        const std::string id = below(2) == 0 ? "w" : "x";
        const std::vector<Value_Object*> values = engine.valuesOf(&wave(id));
        if (!values.empty()) {
            const Value_Object& value = *values[below(static_cast<std::uint32_t>(values.size()))];
            if (below(2) == 0) engine.addAnimation(id, value.name);
            for (const ValueChannel& channel : ChannelsOf(value)) {
                *channel.data = static_cast<float>(below(100)) / 8;
            }
        }
        if (wave(id).inputCount > 0) {
            const int port =
                static_cast<int>(below(static_cast<std::uint32_t>(wave(id).inputCount)));
            if (!engine.connect(below(2) == 0 ? "w" : "x", id, port)) ADD_FAILURE();
        }
        if (below(2) == 0) ui.OpenPanel(id);
    }
    void checkNode(const std::string& id) {
        const ImageNode_Shader& node = wave(id);
        std::size_t declared = 0;
        for (const ShaderParam& param : node.script.params) {
            declared += param.type == kParamNone ? 0 : 1;
        }
        EXPECT_EQ(engine.valuesOf(&node).size(), declared);
        const auto isHere = [&](const float* target) {
            for (const ShaderParam& param : node.script.params) {
                for (const float& number : FloatsOf(param)) {
                    if (&number == target) return true;
                }
            }
            return false;
        };
        for (const Value_Object* value : engine.valuesOf(&node)) {
            for (const ValueChannel& channel : ChannelsOf(*value))
                EXPECT_TRUE(isHere(channel.data));
        }
        for (const KeyframeTrack* track : engine.allTracks()) {
            if (track->owner == &node && track->target != nullptr) {
                EXPECT_TRUE(isHere(track->target)) << track->name;
            }
        }
        ASSERT_EQ(node.inputs.size(), node.script.inputNames.size());
        for (const Node* source : node.inputs) {
            if (source == nullptr) continue;
            EXPECT_TRUE(std::ranges::count(source->consumers, &node) > 0);
        }
        EXPECT_EQ(ui.nodeCanvas->boxOf(id)->inputCount, node.inputCount);
        EXPECT_EQ(ui.nodeCanvas->boxOf(id)->inputNames, node.inputNames);
    }
    void checkProject() {
        ASSERT_TRUE(engine.save("again.vorn"));
        Engine second(types(), nullptr);
        second.viewerTarget = ui.editorTarget.get();
        second.init();
        ASSERT_TRUE(second.load("again.vorn", true, ""));
        second.updateAnimation();
        EXPECT_EQ(second.sceneBytes(), engine.sceneBytes());
    }

    std::mt19937 random_{7};
};

}  // namespace

TEST_F(ScriptChurn, KeepsEverythingTogether) {
    ui.playing = false;
    for (int round = 0; round < 120 && !HasFailure(); ++round) {
        SCOPED_TRACE(round);
        editAtRandom();
        ui.Rebuild(UI_Engine::Boxes::Capture);
        save(anyScript(round % 8 == 0 ? Names::Once : Names::Any));
        checkNode("w");
        checkNode("x");
        engine.update(static_cast<float>(below(4)));
        if (round % 8 != 0) continue;
        frame();
        ui.DrawFrame();
        if (!wave().hasError) checkProject();
    }
}

TEST_F(ScriptOnScreen, AnErrorShowsOnBoxPanelAndLogUntilItIsMended) {
    ui.OpenPanel("w");
    frame();
    EXPECT_EQ(redOnBox(), 0);
    EXPECT_EQ(redOnPanel(), 0);
    for (int i = 0; i < 40; ++i) DebugOutput("All is quiet.\n");  // for the tests before
    EXPECT_EQ(redInLog(), 0);
    const int height = panelOf("w").height;
    save(text(size("Size"), "vec4(nothing)"));
    frame();
    EXPECT_GT(redOnBox(), 50) << "a disc of 8 pixels has some 200";
    EXPECT_GT(panelOf("w").height, height);
    EXPECT_GT(redOnPanel(), 20);
    EXPECT_GT(redInLog(), 20);
    EXPECT_GT(redAtTheFoot(), 20);
    const std::vector<std::string> faults = FaultsOf(wave());
    ASSERT_GE(faults.size(), 2u);
    EXPECT_EQ(faults[0], "w.node does not compile; what ran before runs on:");
    EXPECT_THAT(faults[1], HasSubstr("line 6: error"));
    std::vector<std::string> red;
    for (const LogLine& line : LinesOf(RecentDebugOutput())) {
        if (line.text == "All is quiet.") red.clear();
        if (line.fault && line.text.find("w.node: ") != line.text.npos) red.push_back(line.text);
    }
    ASSERT_EQ(red.size(), 1u);
    EXPECT_THAT(red[0],
                HasSubstr(".\\Scripts\\w.node: its shader does not compile: line 6: error"));

    save(text(size("Size"), "vec4(0.5)"));
    frame();
    EXPECT_EQ(redOnBox(), 0);
    EXPECT_EQ(redOnPanel(), 0);
    EXPECT_EQ(redAtTheFoot(), 0);
    EXPECT_EQ(panelOf("w").height, height);
    EXPECT_THAT(FaultsOf(wave()), IsEmpty());
}

TEST_F(ScriptOnScreen, TheFaultToldForShortIsTheCompilersWhateverTheNameOfTheFile) {
    EXPECT_EQ(MainFaultOf(wave()), "");
    wave().refuseScript("0:6(1): warning: odd\nERROR: 0:7: 'nothing' : undeclared identifier\n");
    wave().script.fileName = ".\\Scripts\\error.node";
    EXPECT_EQ(MainFaultOf(wave()), "line 7: error: 'nothing' : undeclared identifier");
    std::string warnings;
    for (int i = 1; i < 20; ++i) warnings += "0:" + std::to_string(i) + "(1): warning: odd\n";
    wave().refuseScript(warnings + "0:20(1): error: far down\n");
    EXPECT_EQ(MainFaultOf(wave()), "line 20: error: far down");
    wave().refuseScript("ERROR: no main\n");
    EXPECT_EQ(MainFaultOf(wave()), "ERROR: no main");
    wave().refuseScript("");
    EXPECT_EQ(MainFaultOf(wave()), "error.node does not compile; what ran before runs on:");
    Node& view = *engine.findNode("view");
    view.setError(true);
    EXPECT_EQ(MainFaultOf(view), "This node has a fault; the messages tell which.");
}

TEST_F(ScriptOnScreen, AnOpenPanelShowsTheNewParametersInItsPlace) {
    ui.OpenPanel("w");
    ui.OpenPanel("x");
    frame();
    ui.DrawFrame();
    UI_PropertiesPanel* const before = &panelOf("w");
    *dynamic_cast<ValueFloat&>(*engine.findValue(&wave(), "Size")).data = 0.25f;
    save(text(size("Size") + "Param 1, \"Place\", position, 0.5, 0.5\n", "vec4(1)"));
    frame();
    ui.DrawFrame();
    EXPECT_EQ(&panelOf("w"), before);
    EXPECT_EQ(ui.propertiesPanel->children.at(0).get(), before);
    ASSERT_EQ(panelOf("w").children.size(), 2u);
    auto& control = dynamic_cast<UI_ValueControl&>(*panelOf("w").children[0]);
    EXPECT_EQ(control.value.data, &wave().script.params[0].value);
    EXPECT_EQ(*control.value.data, 0.25f);
    EXPECT_EQ(ui.imagePanel->pins.size(), 2u);
    EXPECT_EQ(ui.imagePanel->pins[0]->position, wave().script.params[1].position);
    save(text("", "vec4(1)"));
    frame();
    ui.DrawFrame();
    EXPECT_THAT(panelOf("w").children, IsEmpty());
    EXPECT_THAT(ui.imagePanel->pins, IsEmpty());
}

TEST_F(ScriptOnScreen, AWidgetInHandLetsGoWhenItsParameterGoes) {
    ui.OpenPanel("w");
    frame();
    ui.DrawFrame();
    const UI_Object& row = *panelOf("w").children[0];  // goes with its parameter
    const int x = row.x, y = row.y + 9;
    send(kMessageLeftDown, x + row.width / 2, y);
    ASSERT_NE(ui.master.captured, nullptr);
    save(text(size("Other"), "vec4(1)"));
    EXPECT_EQ(ui.master.captured, nullptr);
    send(kMessageMouseMove, x + 20, y);
    send(kMessageLeftUp, x + 20, y);
    frame();
    ui.DrawFrame();
    EXPECT_EQ(wave().script.params[0].value, 0.5f);
}

TEST_F(ScriptOnScreen, ADragGoesOnWhenOnlyTheShaderIsNew) {
    ui.OpenPanel("w");
    frame();
    ui.DrawFrame();
    const UI_Object& row = *panelOf("w").children[0];
    const int startX = row.x + row.width / 2;
    send(kMessageLeftDown, startX, row.y + 9);
    const UI_Object* const held = ui.master.captured;
    ASSERT_NE(held, nullptr);
    save(text(size("Size"), "vec4(0.25)"));
    EXPECT_EQ(ui.master.captured, held);
    send(kMessageMouseMove, startX + 40, row.y + 9);
    send(kMessageLeftUp, startX + 40, row.y + 9);
    EXPECT_NE(wave().script.params[0].value, 0.5f);
}

TEST_F(ScriptOnScreen, BoxesTakeTheNewInputsAndStayWhereTheyAre) {
    save(text("Input 0, \"A\", \"x\"\n", "vec4(1)"));
    engine.connect("x", "w", 0);
    ui.Rebuild(UI_Engine::Boxes::Capture);
    const int x = ui.nodeCanvas->boxOf("w")->x + 120;
    ui.nodeCanvas->boxOf("w")->SetPosition(x, 80);
    send(kMessageMouseMove, 700, 800);
    save(text("Input 0, \"B\", \"x\"\nInput 1, \"A\", \"x\"\n", "vec4(1)"));
    frame();
    ui.DrawFrame();
    const UI_Node& box = *ui.nodeCanvas->boxOf("w");
    EXPECT_EQ(box.x, x);
    EXPECT_EQ(box.y, 80);
    EXPECT_THAT(box.inputNames, ElementsAre("B", "A"));
    EXPECT_THAT(box.inputLinks, ElementsAre(nullptr, ui.nodeCanvas->boxOf("x")));
}

TEST_F(ScriptOnScreen, ALinkInHandIsDroppedWhenInputsChange) {
    frame();
    ui.DrawFrame();
    const UI_Node& box = *ui.nodeCanvas->boxOf("x");
    const CanvasView& view = ui.nodeCanvas->view;
    send(kMessageLeftDown, view.screenX(box.x + 80), view.screenY(box.y + box.height) + 2);
    send(kMessageMouseMove, 700, 800);
    ASSERT_NE(ui.master.captured, nullptr);
    save(text("Input 0, \"A\", \"x\"\n", "vec4(1)"));
    EXPECT_EQ(ui.master.captured, nullptr);
    send(kMessageMouseMove, 710, 810);
    send(kMessageLeftUp, 710, 810);
    frame();
    ui.DrawFrame();
    EXPECT_EQ(ui.nodeCanvas->boxOf("x")->inputCount, 1);
}

TEST_F(ScriptOnScreen, ANewScriptIsOfferedWithItsCategory) {
    save(
        "Name \"Fresh\", \"Tools\"\nSource\n#version 330 core\nout vec4 frag[1];\n"
        "void main() { frag[0] = vec4(1); }\n",
        "fresh.node");
    const NodeTypeCatalog catalog(engine);
    std::string category;
    for (const OfferedType& type : catalog.allTypes()) {
        if (type.name == "Fresh") category = type.category;
    }
    EXPECT_EQ(category, "Tools");
}

TEST_F(ScriptOnScreen, WorkIsUnsavedWhenAReloadChangesTheProjectAndNotOtherwise) {
    ui.Save();
    save(text(size("Size"), "vec4(0.25)"));
    EXPECT_TRUE(ui.MayQuit());
    EXPECT_THAT(questions, IsEmpty()) << "the project is what was saved";
    save(text(size("Size") + "Param 1, \"More\", float, 0, 1, 0\n", "vec4(1)"));
    ui.MayQuit();
    EXPECT_EQ(questions.size(), 1u);
    save(text(size("Size"), "vec4(0.25)"));
    questions.clear();
    ui.MayQuit();
    EXPECT_THAT(questions, IsEmpty());
}

TEST_F(ScriptOnScreen, UnsavedWorkStaysUnsavedAndUndoGoesBackAsBefore) {
    ui.Save();
    const std::vector<std::string> history = ui.backupHistory;
    wave().script.params[0].value = 0.75f;
    save(text(size("Size"), "vec4(0.25)"));
    EXPECT_EQ(ui.backupHistory, history);
    ui.MayQuit();
    EXPECT_EQ(questions.size(), 1u);
    ui.Undo();
    EXPECT_EQ(wave().script.params[0].value, 0.5f);
}

TEST_F(ScriptOnScreen, ThePlayerTakesScriptsUpTooAndTheScreenIsRightWhenItComes) {
    ui.OpenPanel("w");
    ui.ShowScreen(ScreenKind::Presentation);
    save(text("Input 0, \"A\", \"x\"\n" + size("Other"), "vec4(1)"));
    frame();
    ui.DrawFrame();
    edit();
    frame();
    ui.DrawFrame();
    EXPECT_EQ(ui.nodeCanvas->boxOf("w")->inputCount, 1);
    auto& control = dynamic_cast<UI_ValueControl&>(*panelOf("w").children.at(0));
    EXPECT_EQ(control.value.name, "Other");
    EXPECT_EQ(control.value.data, &wave().script.params[0].value);
}

TEST_F(ScriptOnScreen, ThePointerOnABoxWithAnErrorShowsWhatTheCompilerSays) {
    frame();
    ui.DrawFrame();
    const UI_Node& box = *ui.nodeCanvas->boxOf("w");
    const CanvasView& view = ui.nodeCanvas->view;
    const int x = view.screenX(box.x + 60), y = view.screenY(box.y + 10);
    const int below = view.screenY(box.y + box.height) + 8;
    const auto textPixels = [&] {
        send(kMessageMouseMove, x, y);
        return pixelsOf(ui.master.colorSlots[kColorText], view.screenX(box.x), below, 200, 26);
    };
    EXPECT_EQ(textPixels(), 0);
    save(text(size("Size"), "vec4(nothing)"));
    EXPECT_GT(textPixels(), 10);
}
