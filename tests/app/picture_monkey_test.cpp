// Someone without any sense at the authoring screen: seeded random gestures through the main loop,
// with the real nodes. Nothing may crash, leak, leave an OpenGL error, or save what cannot be
// loaded. The suite plays a few thousand events; VORN_MONKEY_EVENTS sets another number and
// VORN_MONKEY_SEED another seed. The same seed gives the same events.
#include <GL/glew.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "app/builtin_node_types.h"
#include "app/main_loop.h"
#include "app/scripted_window.h"
#include "app/session.h"
#include "editor/ui_button.h"
#include "editor/ui_node.h"
#include "editor/ui_node_canvas.h"
#include "editor/ui_panel.h"
#include "editor/ui_properties_column.h"
#include "gpu/gl_debug.h"
#include "platform/debug_output.h"
#include "platform/files.h"
#include "platform/user_dialogs.h"
#include "support/temp_folder.h"

namespace {

struct Place {
    int x = 0, y = 0;
};

// The counter of the run's own clock: a 50th of a second passes at each look.
std::uint64_t SteadyCounter() {
    static std::uint64_t count = 0;
    return count += PerformanceFrequency() / 50;
}

long NumberFromEnvironment(const char* name, long otherwise) {
    const char* const text = std::getenv(name);
    return text == nullptr ? otherwise : std::atol(text);
}

// Plays gestures as window messages. What it aims at is looked up anew for each gesture.
class Monkey {
  public:
    Monkey(Session& session, ScriptedWindow& window, std::uint32_t seed)
        : session_(session), window_(window), random_(seed) {}

    int below(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }
    bool oneIn(int count) { return below(count) == 0; }

    // Nothing in a player answers to the mouse: there it goes back to work before long.
    void gesture() {
        if (ui().presentationMode && oneIn(4)) {
            key(kKeyF12);
            return;
        }
        const int kind = below(100);
        if (kind < 20) {
            click(kMessageLeftDown, kMessageLeftUp, somewhere());
        } else if (kind < 34) {
            drag(kMessageLeftDown, kMessageLeftUp);
        } else if (kind < 48) {
            link();
        } else if (kind < 58) {
            animate();
        } else if (kind < 63) {
            click(kMessageRightDown, kMessageRightUp, somewhere());
        } else if (kind < 65) {
            drag(kMessageMiddleDown, kMessageMiddleUp);
        } else if (kind < 68) {
            wheel();
        } else if (kind < 71) {
            doubleClick();
        } else if (kind < 83) {
            shortcut();
        } else if (kind < 88) {
            type();
        } else if (kind < 96) {
            newNode();
        } else {
            oddMessage();
        }
    }

  private:
    UI_Engine& ui() { return *session_.ui; }

    void send(std::uint32_t message, const Place& place, int value = 0) {
        window_.messages.push_back({message, value, place.x, place.y});
    }

    Place anywhere() { return {below(1960) - 20, below(1120) - 20}; }

    Place insideOf(int x, int y, int width, int height) {
        return {x + below(std::max(width, 1)), y + below(std::max(height, 1))};
    }

    Place somewhere() {
        switch (below(4)) {
            case 0:
                return anywhere();
            case 1:
            case 2:
                return onBox();
            default:
                return onWidget();
        }
    }

    // On a box of the canvas or on the sockets above it.
    Place onBox() {
        const UI_NodeCanvas* const canvas = ui().nodeCanvas.get();
        if (canvas == nullptr || canvas->boxes().empty()) return anywhere();
        const UI_Node& box = anyBox();
        const Place place = insideOf(box.x, box.y - 15, UI_Node::kWidth, UI_Node::kHeight + 25);
        return {canvas->view.screenX(place.x), canvas->view.screenY(place.y)};
    }

    const UI_Node& anyBox() {
        const auto& boxes = ui().nodeCanvas->boxes();
        return *boxes[static_cast<std::size_t>(below(static_cast<int>(boxes.size())))];
    }

    Place onWidget() {
        std::vector<const UI_Object*> widgets;
        for (const UI_Object* widget : ui().master.topLevel) collect(*widget, widgets);
        if (widgets.empty()) return anywhere();
        const auto count = static_cast<int>(widgets.size());
        const UI_Object& widget = *widgets[static_cast<std::size_t>(below(count))];
        return insideOf(widget.x, widget.y, widget.width, widget.height);
    }

    static void collect(const UI_Object& widget, std::vector<const UI_Object*>& widgets) {
        const auto* const panel = dynamic_cast<const UI_Panel*>(&widget);
        if (panel == nullptr) {
            widgets.push_back(&widget);
            return;
        }
        if (panel->hidden) return;
        for (const auto& child : panel->children) collect(*child, widgets);
    }

    void key(int virtualKey) {
        send(kMessageKeyDown, place_, virtualKey);
        if (!oneIn(40)) send(kMessageKeyUp, place_, virtualKey);
    }

    void moveTo(const Place& place) {
        place_ = place;
        send(kMessageMouseMove, place);
    }

    void click(std::uint32_t press, std::uint32_t release, const Place& place) {
        const int held = below(12);
        if (held == 0) send(kMessageKeyDown, place, kKeyShift);
        if (held == 1) send(kMessageKeyDown, place, kKeyControl);
        moveTo(place);
        send(press, place);
        if (!oneIn(60)) send(release, place);
        if (held == 0) send(kMessageKeyUp, place, kKeyShift);
        if (held == 1) send(kMessageKeyUp, place, kKeyControl);
    }

    void drag(std::uint32_t press, std::uint32_t release) {
        moveTo(somewhere());
        send(press, place_);
        for (int steps = below(6); steps > 0; --steps) {
            if (oneIn(30)) key(kKeyEscape);
            moveTo(oneIn(3) ? anywhere() : somewhere());
        }
        if (!oneIn(60)) send(release, place_);
    }

    // From the output of a box to a socket of another, or back.
    void link() {
        const UI_NodeCanvas* const canvas = ui().nodeCanvas.get();
        if (canvas == nullptr || canvas->boxes().empty()) return;
        if (oneIn(4)) key(kKeyHome);
        const UI_Node& source = anyBox();
        const UI_Node& target = anyBox();
        if (target.sockets.empty()) return;
        const auto count = static_cast<int>(target.sockets.size());
        const NodeSocket& socket = target.sockets[static_cast<std::size_t>(below(count))];
        const CanvasView& view = canvas->view;
        Place from = {view.screenX(source.x + source.width / 2),
                      view.screenY(source.y + source.height)};
        Place to = {view.screenX(socket.x), view.screenY(socket.y)};
        if (oneIn(4)) std::swap(from, to);
        moveTo(from);
        send(kMessageLeftDown, from);
        moveTo({(from.x + to.x) / 2, (from.y + to.y) / 2});
        moveTo(to);
        send(kMessageLeftUp, to);
    }

    // Opens the values of a node, or animates what is under the pointer.
    void animate() {
        if (oneIn(2)) {
            const Place box = onBox();
            click(kMessageRightDown, kMessageRightUp, box);
            return;
        }
        const UI_PropertiesColumn* const column = ui().propertiesPanel.get();
        std::vector<const UI_Object*> rows;
        if (column != nullptr) collect(*column, rows);
        if (rows.empty()) return;
        const UI_Object& row =
            *rows[static_cast<std::size_t>(below(static_cast<int>(rows.size())))];
        moveTo(insideOf(row.x, row.y, row.width, row.height));
        static constexpr std::string_view kKeys = "SSP";
        key(kKeys[static_cast<std::size_t>(below(3))]);
        if (oneIn(3)) key(oneIn(2) ? kKeyRight : kKeyLeft);
    }

    void wheel() {
        moveTo(somewhere());
        for (int turns = 1 + below(4); turns > 0; --turns) {
            send(kMessageWheel, place_, oneIn(2) ? kWheelNotch : -kWheelNotch);
        }
    }

    void doubleClick() {
        click(kMessageLeftDown, kMessageLeftUp, somewhere());
        send(kMessageLeftDoubleClick, place_);
        send(kMessageLeftUp, place_);
    }

    void shortcut() {
        const std::array kPlain = {static_cast<int>(kKeySpace),
                                   static_cast<int>(kKeyLeft),
                                   static_cast<int>(kKeyRight),
                                   static_cast<int>(kKeyUp),
                                   static_cast<int>(kKeyDown),
                                   oneIn(3) ? static_cast<int>(kKeyDelete) : int{'E'},
                                   static_cast<int>(kKeyReturn),
                                   static_cast<int>(kKeyHome),
                                   static_cast<int>(kKeyEnd),
                                   static_cast<int>(kKeyEscape),
                                   static_cast<int>(kKeyTab),
                                   static_cast<int>(kKeyF1),
                                   static_cast<int>(kKeyF12),
                                   static_cast<int>(kKeyBack),
                                   int{'F'},
                                   static_cast<int>(kKeyPageUp),
                                   static_cast<int>(kKeyInsert)};
        static constexpr std::string_view kWithControl = "CCVDFACVDX";
        if (oneIn(3)) moveTo(somewhere());
        if (oneIn(2)) {
            key(kPlain[static_cast<std::size_t>(below(static_cast<int>(kPlain.size())))]);
            return;
        }
        send(kMessageKeyDown, place_, kKeyControl);
        // What takes long is rare: save, load, import, new.
        const std::string_view keys = oneIn(12) ? "SSOIN" : kWithControl;
        key(keys[static_cast<std::size_t>(below(static_cast<int>(keys.size())))]);
        send(kMessageKeyUp, place_, kKeyControl);
    }

    void type() {
        // No separators of folders: what is typed may name a file that is written.
        static constexpr std::string_view kLetters = "0123456789.-abcxyzABC _\"%#\x01\xE9";
        if (oneIn(2)) click(kMessageLeftDown, kMessageLeftUp, onWidget());
        for (int count = 1 + below(8); count > 0; --count) {
            const auto letter = static_cast<unsigned char>(
                kLetters[static_cast<std::size_t>(below(static_cast<int>(kLetters.size())))]);
            send(kMessageCharacter, place_, letter);
        }
        if (!oneIn(3)) key(oneIn(4) ? kKeyEscape : kKeyReturn);
    }

    // Through the palette, like everyone.
    void newNode() {
        const std::vector<std::string>& names = session_.engine->typeNames;
        if (names.empty()) return;
        moveTo({400 + below(900), 600 + below(300)});
        key(kKeyTab);
        const std::string& name =
            names[static_cast<std::size_t>(below(static_cast<int>(names.size())))];
        const std::size_t length = oneIn(3) ? 2 : name.size();
        for (const char letter : name.substr(0, length)) {
            send(kMessageCharacter, place_, static_cast<unsigned char>(letter));
        }
        key(kKeyReturn);
    }

    // What no window sends, but a broken driver or another program may.
    void oddMessage() {
        constexpr std::uint32_t kNoMessage = 518;  // among those of the mouse
        static constexpr std::array<std::uint32_t, 14> kAll = {
            kMessageKeyDown,  kMessageKeyUp,  kMessageCharacter,       kMessageMouseMove,
            kMessageLeftDown, kMessageLeftUp, kMessageLeftDoubleClick, kMessageRightDown,
            kMessageRightUp,  kNoMessage,     kMessageMiddleDown,      kMessageMiddleUp,
            kMessageWheel,    kMessageClose};
        const std::uint32_t message = kAll[static_cast<std::size_t>(below(14))];
        const auto value = oneIn(3) ? static_cast<int>(random_()) : below(256);
        Place place = anywhere();
        if (oneIn(4)) place = {static_cast<int>(random_()), static_cast<int>(random_())};
        send(message, place, value);
    }

    Session& session_;
    ScriptedWindow& window_;
    std::minstd_rand random_;
    Place place_;
};

class MonkeyTest : public ::testing::Test {
  protected:
    void SetUp() override {
        makeFiles();
        const DebugCapture quiet;
        std::string reason;
        session_ = StartScriptedSession(window_, reason);
        ASSERT_NE(session_, nullptr) << reason;
        session_->ui->frameTimer.readCounter = &SteadyCounter;
        session_->ui->localTime = [this] {
            std::tm time{};
            time.tm_year = 126;
            time.tm_min = saves_ / 60 % 60;
            time.tm_sec = saves_ % 60;
            ++saves_;
            return time;
        };
        session_->engine->projectFolder = ".";
        session_->engine->projectName = "work";
        seed_ = static_cast<std::uint32_t>(NumberFromEnvironment("VORN_MONKEY_SEED", 1));
        monkey_ = std::make_unique<Monkey>(*session_, *window_, seed_);
        makeOtherProject();
        answers();
    }

    void TearDown() override {
        SetMessageBoxHandler(oldBoxes_);
        SetFileDialogHandler(oldDialogs_);
    }

    // Some folders deep, so that a ".." for the project's folder leads to nowhere else.
    std::filesystem::path home() const { return folder_.path() / "a" / "b" / "c"; }

    void makeFiles() {
        std::filesystem::create_directories(home() / "Graphics");
        if (const char* const fonts = std::getenv("VORN_TEST_FONTS")) {
            std::filesystem::create_directory_symlink(fonts, home() / "fonts");
        }
        std::filesystem::create_directory_symlink(VORN_SOURCE_DIR "/demo/Scripts",
                                                  home() / "Scripts");
        folder_.write("a/b/c/junk.vorn", "this is no project");
        std::filesystem::current_path(home());
    }

    void makeOtherProject() {
        const DebugCapture quiet;
        Engine& engine = *session_->engine;
        engine.createNode("Reader1", "Reader");
        engine.createNode("Glow1", "Glow");
        engine.createNode("Viewer1", "Viewer");
        engine.connect("Reader1", "Glow1", 0);
        engine.connect("Glow1", "Viewer1", 0);
        engine.save(".\\other.vorn");
        engine.clearScene();
    }

    void answers() {
        oldBoxes_ =
            SetMessageBoxHandler([this](std::string_view, std::string_view, MessageButtons) {
                return done_ || monkey_->oneIn(2) ? MessageAnswer::Ok : MessageAnswer::Cancel;
            });
        oldDialogs_ = SetFileDialogHandler([this](std::string_view) -> std::optional<std::string> {
            static constexpr std::array kFiles = {"other.vorn", "work.vorn", "junk.vorn",
                                                  "none.vorn", "noending"};
            const int which = monkey_->below(6);
            if (which == 5) return {};
            return (home() / kFiles[static_cast<std::size_t>(which)]).string();
        });
    }

    // The editor holds nothing that has gone.
    void checkEditor() {
        const UI_Engine& ui = *session_->ui;
        const Engine& engine = *session_->engine;
        std::set<const Node*> alive;
        for (const auto& [id, node] : engine.nodes) alive.insert(node.get());
        for (const Node* output : ui.outputs) {
            ASSERT_TRUE(alive.contains(output)) << "an output that has gone";
        }
        if (ui.nodeCanvas != nullptr) {
            for (const auto& box : ui.nodeCanvas->boxes()) {
                ASSERT_NE(engine.findNode(box->id), nullptr) << box->id << " has a box only";
            }
        }
        for (const auto& [id, panel] : ui.openPanels) {
            ASSERT_TRUE(panel == nullptr || engine.findNode(id) != nullptr) << id;
        }
        ASSERT_EQ(GlErrorCount(), 0u);
    }

    // What a save left can be loaded, and saved again gives the same bytes.
    void checkSave() {
        const std::vector<std::string>& history = session_->ui->backupHistory;
        if (history.empty() || history.back() == lastChecked_ || ++savesSeen_ % 4 != 1) return;
        lastChecked_ = history.back();
        const auto bytes = ReadWholeFile(lastChecked_);
        ASSERT_TRUE(bytes) << lastChecked_;
        const DebugCapture quiet;
        Engine second(BuiltInNodeTypes(), nullptr);
        second.init();
        ASSERT_TRUE(second.load(lastChecked_, true, "")) << lastChecked_;
        ASSERT_EQ(second.sceneBytes(), *bytes) << lastChecked_;
        ++savesChecked_;
    }

    // Plays until so many events were taken, or something is wrong.
    void play(long events) {
        const DebugCapture quiet;
        session_->showScreen(ScreenKind::Authoring);
        long sent = 0, frameEnd = 0;
        window_->afterSwap = [&] {
            session_->engine->music->pause();
            checkEditor();
            if (HasFatalFailure() || sent >= events) {
                done_ = true;
                window_->messages = {{.message = kMessageClose}};
                return;
            }
            checkSave();
            note();
            keepSmall();
            frameEnd = sent + 50 + monkey_->below(1500);
        };
        window_->whenEmpty = [&] {
            if (done_ || sent >= frameEnd) return;
            while (window_->messages.empty()) monkey_->gesture();
            sent += static_cast<long>(window_->messages.size());
        };
        while (!done_) {
            // A player that has come to its end, or was closed, is started again.
            if (session_->ui->editorTime > 200) session_->ui->SeekTo(0);
            RunMainLoop(*session_);
            if (!done_ && session_->ui->presentationMode && monkey_->oneIn(3)) {
                session_->showScreen(ScreenKind::Authoring);
            }
        }
        window_->afterSwap = window_->whenEmpty = nullptr;
        std::cout << sent << " events of seed " << seed_ << ", " << window_->swaps << " frames, "
                  << saves_ << " saves of which " << savesChecked_ << " were loaded; at most "
                  << most_.nodes << " nodes, " << most_.links << " links, " << most_.tracks
                  << " tracks, " << most_.panels << " panels\n";
    }

    // How far it came: a monkey that only ever sees an empty screen proves nothing.
    void note() {
        Counts now;
        now.nodes = session_->engine->nodes.size();
        now.tracks = session_->engine->allTracks().size();
        for (const auto& [id, node] : session_->engine->nodes) {
            now.links += node->inputs.size() -
                         static_cast<std::size_t>(std::ranges::count(node->inputs, nullptr));
        }
        for (const auto& [id, panel] : session_->ui->openPanels)
            now.panels += panel != nullptr ? 1 : 0;
        most_.nodes = std::max(most_.nodes, now.nodes);
        most_.links = std::max(most_.links, now.links);
        most_.tracks = std::max(most_.tracks, now.tracks);
        most_.panels = std::max(most_.panels, now.panels);
    }

    // A graph that doubles with each copy would soon be too slow to go on with.
    void keepSmall() {
        if (session_->engine->nodes.size() < 40) return;
        const MessageBoxHandler asking = SetMessageBoxHandler(
            [](std::string_view, std::string_view, MessageButtons) { return MessageAnswer::Ok; });
        session_->ui->New();
        SetMessageBoxHandler(asking);
    }

    struct Counts {
        std::size_t nodes = 0, links = 0, tracks = 0, panels = 0;
    };

    TempFolder folder_;
    WorkingFolder working_{folder_.path()};
    std::unique_ptr<Session> session_;
    ScriptedWindow* window_ = nullptr;
    std::unique_ptr<Monkey> monkey_;
    MessageBoxHandler oldBoxes_;
    FileDialogHandler oldDialogs_;
    std::string lastChecked_;
    std::uint32_t seed_ = 1;
    int saves_ = 0, savesSeen_ = 0, savesChecked_ = 0;
    Counts most_;
    bool done_ = false;
};

TEST_F(MonkeyTest, BreaksNothing) {
    play(NumberFromEnvironment("VORN_MONKEY_EVENTS", 20000));
    EXPECT_GT(most_.nodes, 5u);
    EXPECT_GT(most_.links, 2u);
    EXPECT_GT(most_.panels, 0u);
}

}  // namespace
