// The authoring screen within the test's own process, without a window. It gets the gestures that
// the real program gets, so that it tells where each widget is, and what the window has to show.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "app/session.h"
#include "platform/debug_output.h"
#include "platform/user_dialogs.h"

class UI_Node;
class UI_Object;
class UI_Panel;

struct ScreenPoint {
    int x = 0, y = 0;
};

class EditorTwin {
  public:
    // In the working directory. `project` may be empty: an empty scene. `reason` tells why
    // `session` stayed null.
    explicit EditorTwin(const std::string& project);
    ~EditorTwin();

    std::unique_ptr<Session> session;
    std::string reason;
    std::string chosenFile;              // what the file dialog answers; empty: cancel
    std::vector<std::string> questions;  // that were asked, all answered with OK

    UI_Engine& ui() { return *session->ui; }
    void send(std::uint32_t message, int value = 0);
    void moveTo(ScreenPoint point);
    // Everything as it is drawn once nothing moves any more; RGB, top row first.
    std::vector<std::uint8_t> picture();

    // --- where things are
    UI_Node* box(const std::string& nodeId);
    ScreenPoint boxMiddle(const std::string& nodeId);
    ScreenPoint output(const std::string& nodeId);
    ScreenPoint socket(const std::string& nodeId, int input);
    // The number or text in an open properties panel.
    ScreenPoint valueField(const std::string& nodeId, std::string_view label);
    ScreenPoint checkbox(const std::string& nodeId, std::string_view label);  // its square
    ScreenPoint settingsField(std::string_view label);  // on the panel of the project
    static ScreenPoint middle(const UI_Object& widget);
    ScreenPoint key(float timeSeconds, float value);
    ScreenPoint ruler(float timeSeconds);

  private:
    UI_Panel* panel(const std::string& nodeId);  // null when it is closed

    ScreenPoint mouse_;
    DebugCapture silent_;
    MessageBoxHandler oldBoxes_;
    FileDialogHandler oldDialogs_;
};
