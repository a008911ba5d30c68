// What tests of the authoring screen share: the editor over a small graph in a folder of its own,
// answers to its questions, and gestures played as the window's messages.
#pragma once

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/engine.h"
#include "editor/ui_button.h"
#include "editor/ui_engine.h"
#include "editor/ui_image_panel.h"
#include "editor/ui_key_timeline.h"
#include "editor/ui_label.h"
#include "editor/ui_node.h"
#include "editor/ui_node_canvas.h"
#include "editor/ui_properties_column.h"
#include "editor/ui_selection.h"
#include "editor/ui_text_box.h"
#include "editor/ui_viewer_node.h"
#include "platform/debug_output.h"
#include "platform/user_dialogs.h"
#include "platform/window.h"
#include "support/core_nodes.h"
#include "support/gl_fixture.h"
#include "support/temp_folder.h"

inline std::unique_ptr<Node> MakeViewer(Engine& engine, const std::string& id) {
    return std::make_unique<UI_ViewerNode>(&engine, id, engine.viewerTarget);
}

// 23:59:07 of the 9th of February 2026.
inline std::tm LastMinuteOfADay() {
    std::tm time{};
    time.tm_sec = 7;
    time.tm_min = 59;
    time.tm_hour = 23;
    time.tm_mday = 9;
    time.tm_mon = 1;
    time.tm_year = 126;
    return time;
}

class AuthoringTest : public GlTest {
  protected:
    AuthoringTest() : engine(types(), nullptr) {}

    void SetUp() override {
        GlTest::SetUp();
        if (HasFatalFailure()) return;
        const char* fonts = std::getenv("VORN_TEST_FONTS");
        ASSERT_NE(fonts, nullptr) << "VORN_TEST_FONTS names the folder of the fonts";
        std::filesystem::create_directory_symlink(fonts, folder.path() / "fonts");
        RunLog().clear();
        engine.init();
        engine.music = std::make_unique<MusicPlayer>(&sound);
        engine.projectFolder = ".";
        engine.projectName = "work";
        ASSERT_TRUE(ui.Init(&engine));
        engine.viewerTarget = ui.editorTarget.get();
        ui.localTime = [this] { return localTime; };
        oldBoxes_ = SetMessageBoxHandler(
            [this](std::string_view text, std::string_view caption, MessageButtons buttons) {
                questions.emplace_back(text);
                EXPECT_EQ(caption, "VORN");
                EXPECT_EQ(buttons, MessageButtons::OkCancel);
                return answer;
            });
        oldDialogs_ = SetFileDialogHandler([this](std::string_view pattern) {
            patterns.emplace_back(pattern);
            return chosenFile;
        });
    }

    void TearDown() override {
        SetMessageBoxHandler(oldBoxes_);
        SetFileDialogHandler(oldDialogs_);
        GlTest::TearDown();
    }

    static std::vector<NodeType> types() {
        std::vector<NodeType> all = TestNodeTypes();
        all.push_back({"Viewer", &MakeViewer});
        return all;
    }

    void edit() { ui.ShowScreen(ScreenKind::Authoring); }
    // Two nodes and a viewer: "a" feeds "b", which feeds "view".
    void makeScene() {
        engine.createNode("a", "Node");
        engine.createNode("b", "Node");
        engine.createNode("view", "Viewer");
        engine.connect("a", "b", 0);
        engine.connect("b", "view", 0);
    }
    TestNode& node(const std::string& id) { return dynamic_cast<TestNode&>(*engine.findNode(id)); }

    void send(std::uint32_t message, int x, int y, int value = 0) {
        ui.master.Dispatch({message, value, x, y});
    }
    void click(int x, int y) {
        send(kMessageLeftDown, x, y);
        send(kMessageLeftUp, x, y);
    }
    void press(const UI_Object* widget) {
        ASSERT_NE(widget, nullptr);
        click(widget->x + widget->width / 2, widget->y + widget->height / 2);
    }
    void key(int virtualKey, int x = 5, int y = 5) {
        send(kMessageMouseMove, x, y);
        send(kMessageKeyDown, x, y, virtualKey);
        send(kMessageKeyUp, x, y, virtualKey);
    }
    void ctrlKey(int virtualKey, int x = 5, int y = 5) {
        send(kMessageMouseMove, x, y);
        send(kMessageKeyDown, x, y, kKeyControl);
        send(kMessageKeyDown, x, y, virtualKey);
        send(kMessageKeyUp, x, y, virtualKey);
        send(kMessageKeyUp, x, y, kKeyControl);
    }
    // A press that goes on: the window repeats it. The key stays down.
    void hold(int virtualKey, int x, int y) {
        send(kMessageMouseMove, x, y);
        send(kMessageKeyDown, x, y, virtualKey);
        for (int i = 0; i < 3; ++i) ui.master.Dispatch({kMessageKeyDown, virtualKey, x, y, true});
    }
    void frame() {
        ui.BeginFrameUpdate();
        engine.update(ui.editorTime);
    }
    bool exists(const std::string& name) {
        return std::filesystem::is_regular_file(folder.path() / name);
    }
    std::vector<std::string> filesOf(const std::string& ending) {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
            const std::string name = entry.path().filename().string();
            if (name.ends_with(ending)) names.push_back(name);
        }
        return names;
    }

    TempFolder folder;
    WorkingFolder workingFolder{folder.path()};
    DebugCapture said;
    FakeSoundSystem::Notes soundNotes;
    FakeSoundSystem sound{soundNotes};
    Engine engine;
    UI_Engine ui;
    std::tm localTime = LastMinuteOfADay();
    MessageAnswer answer = MessageAnswer::Ok;
    std::vector<std::string> questions, patterns;
    std::optional<std::string> chosenFile;

  private:
    MessageBoxHandler oldBoxes_;
    FileDialogHandler oldDialogs_;
};
