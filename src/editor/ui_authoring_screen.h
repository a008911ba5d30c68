// What the authoring screen has beside the widgets that UI_Engine names: its ground, its foot, and
// what lies over it. Belongs to UI_Engine. Main thread.
#pragma once

#include <functional>
#include <string>

#include "editor/ui_key_sheet.h"
#include "editor/ui_picture_view.h"
#include "editor/ui_screen_gate.h"
#include "editor/ui_status_line.h"
#include "gpu/math_types.h"

class UI_LogView;

// Hands the edits of one widget to a function.
class UI_EditRelay : public UI_Evt_ValueChanged {
  public:
    void OnValueEdited(UI_Object* /*sender*/) override {
        if (edited) edited();
    }
    void OnCommand(UI_Object* /*sender*/, int /*argument*/) override {
        if (edited) edited();
    }
    std::function<void()> edited;
};

struct AuthoringScreen {
    AuthoringScreen(UI_ImagePanel& imagePanel, int width, int height, int footHeight)
        : gate(width, height),
          picture(imagePanel),
          status(0, height - footHeight, width, footHeight) {}

    UI_ScreenGate gate;
    UI_PictureView picture;
    UI_StatusLine status;
    UI_OverlayPainter overlays;
    UI_KeySheet keySheet;
    UI_LogView* log = nullptr;  // on the right panel
    UI_EditRelay outputChosen, folderEdited;
    UI_EditRelay addNodePressed, arrangePressed, framePressed, helpPressed;
    std::string canvasStatus;  // what the canvas said last
    Mat4 pictureView;          // zoom and pan of the picture, kept while presenting
};
