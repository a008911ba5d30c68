// One run of the program from its window to its tear-down: the window with its context, the engine,
// and the editor, started in the order in which they need each other. Main thread.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "core/engine.h"
#include "editor/ui_engine.h"
#include "platform/folder_watch.h"
#include "platform/window.h"

class Session {
  public:
    // Null with a reason when no window or no usable OpenGL is to be had. `exitCode` tells how the
    // program should end then. The first two frames, with the loading picture, have been shown.
    static std::unique_ptr<Session> Start(WindowKind kind, std::string& reason, int& exitCode);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Clears what is drawn to, runs the graph at a time and leaves the result in the viewer's
    // target. The run begins with opaque black as the colour to clear with, since some nodes clear
    // with what they find.
    void runGraph(float seconds);
    // Draws the editor into the picture and shows it in the window, letterboxed.
    void drawEditor();
    // The same with a line along the bottom that is as long as the part of a load that is done.
    void drawLoadProgress(double part);
    // Takes up node scripts that were saved since the last frame. Without a window: nothing.
    void followScripts();
    // What the window shows, 1920 by 1080, bottom row first.
    const GL_FrameBuffer& picture() const { return *screen_; }

    // Changes between the player's picture and the authoring screen, which has a mouse pointer.
    void showScreen(ScreenKind kind);

    // Members die in reverse order: the editor, the engine, the window.
    std::unique_ptr<Window> window;
    std::unique_ptr<Engine> engine;
    std::unique_ptr<UI_Engine> ui;

  private:
    Session() = default;
    bool startEditor();
    void showFirstFrames();
    void showLoadProgress(double part);
    void drawPicture();
    void showPicture();

    std::unique_ptr<FolderWatch> scriptWatch_;  // null without a window
    std::uint64_t progressShown_ = 0;           // the counter when it was last brought up to date
    std::unique_ptr<GL_FrameBuffer> screen_;    // the 1920 by 1080 picture that the window shows
};
