// Someone at the authoring screen: gestures with the mouse and the keyboard of an X server, each
// played to the real program and to its twin. Coordinates come from the twin; after each gesture
// one waits until the window shows what the twin does.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "program/editor_twin.h"
#include "program/x_screen.h"
#include "program/x_server.h"
#include "support/child_process.h"
#include "support/temp_folder.h"

class AuthoringUser {
  public:
    // `programFolder` is the real program's, `twinFolder` the twin's, with the same files.
    // `pictures`: the folder for what was on the screen.
    AuthoringUser(std::string programFolder, std::string twinFolder, std::string pictures);
    bool ready() const { return screen_.isOpen(); }

    // Starts both, in the authoring screen, at time 0 and paused. An empty name: without a project.
    void start(const std::string& project);
    bool running() { return program_->running(); }
    ProcessResult waitForEnd();
    EditorTwin& twin() { return *twin_; }

    // --- gestures
    void moveTo(ScreenPoint point);
    void click(ScreenPoint point) { press(point, 1); }
    void middleClick(ScreenPoint point) { press(point, 2); }
    void rightClick(ScreenPoint point) { press(point, 3); }
    void doubleClick(ScreenPoint point);
    void drag(ScreenPoint from, ScreenPoint to);
    // Names as X has them: a letter, a digit, "Tab", "Return", "BackSpace" and the like.
    void key(const std::string& name, int times = 1);
    void ctrlKey(const std::string& letter);
    void type(const std::string& smallLettersAndDigits);
    // Esc where no widget has the keyboard: what is selected is given up, or the program asked to
    // end. The twin only gives up.
    void escape();

    // What the file dialog answers next.
    void willChoose(const std::string& file);
    std::string asked() const { return tools_.read("asked"); }  // how the dialog was called
    // Waits for a message box of the real program, and answers it by a key.
    void answerQuestion(const std::string& keyName);

    // Fails when it does not come to be in time; `what` says what is waited for.
    void waitFor(const std::string& what, const std::function<bool()>& reached);
    // Waits until the window shows what the twin does, and keeps the picture.
    void see(const std::string& pictureName);
    const std::vector<std::uint8_t>& seen() const { return seen_; }  // RGB, top row first

  private:
    void press(ScreenPoint point, int button);
    void xdotool(std::vector<std::string> arguments);
    // Within a widget; null: anywhere.
    std::size_t pixelsApart(const std::vector<std::uint8_t>& window,
                            const std::vector<std::uint8_t>& twin,
                            const UI_Object* within = nullptr);
    void keep(const std::string& name, const std::vector<std::uint8_t>& rgb);

    std::string programFolder_, pictures_;
    XServer server_{"1920x1080x24"};
    XScreen screen_{server_.display()};
    TempFolder tools_;  // with the file dialog of the test's own
    WorkingFolder inTwinFolder_;
    std::unique_ptr<EditorTwin> twin_;
    std::unique_ptr<ChildProcess> program_;
    unsigned long window_ = 0;
    std::vector<std::uint8_t> seen_;
    int pictureNumber_ = 0;
};
