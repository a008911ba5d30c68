// The root of the editor: owns the widgets and the player's clock, and shows the viewer's target.
// In presentation, its only screen so far, one bare image panel fills the picture and the program
// is a player. Main thread, with the OpenGL context.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "editor/editor_timer.h"
#include "editor/ui_image_panel.h"
#include "editor/ui_master.h"
#include "editor/ui_object.h"
#include "gpu/gl_framebuffer.h"

class Engine;
class Node;

class UI_Engine : public UI_Evt_ValueChanged {
  public:
    UI_Engine();
    ~UI_Engine() override;

    // False, with a line on the debug channel, when the widgets' resources cannot be made.
    bool Init(Engine* newEngine);
    // Each frame before the engine's update: advances the clock.
    void BeginFrameUpdate();
    // Once, after the first frame: starts the clock and the music.
    void StartPlayback();
    // Each frame after the engine's update: draws all widgets into the target that is bound.
    void DrawFrame();

    // Pauses or goes on, and moves the music to the engine's time.
    void TogglePlay();
    // Moves the clock, not below 0, and the music with it.
    void SeekTo(float seconds);

    void OnValueEdited(UI_Object* sender) override;
    void OnValueHook() override {}
    void OnCommand(UI_Object* sender, int argument) override;

    UI_Master master;
    Engine* engine = nullptr;  // not owned
    bool presentationMode = true;
    float editorTime = 0.0f;  // seconds
    bool playing = false;
    EditorTimer frameTimer;
    int imageBackdrop = 0;             // backdrop colour of the image panel
    std::int64_t selectedOutput = -1;  // of outputs; -1: none is on screen
    std::vector<Node*> outputs;
    std::unique_ptr<UI_ImagePanel> imagePanel;
    std::shared_ptr<GL_FrameBuffer> editorTarget;

  private:
    void showLoadingPicture();
};
