// The place of the picture on the authoring screen: gives the image panel its events once, and
// keeps what is zoomed or panned inside. Main thread.
#pragma once

#include "editor/ui_object.h"

class UI_ImagePanel;

class UI_PictureView : public UI_Object {
  public:
    // `shownPanel` is not owned and must outlive the view.
    explicit UI_PictureView(UI_ImagePanel& shownPanel);

    // Takes a rectangle of the screen, and gives the panel the largest 16:9 picture in its middle.
    void Place(int viewX, int viewY, int viewWidth, int viewHeight);
    void Draw() override;
    bool HandleEvent(UI_Event* event) override;
    void SetMaster(UI_Master* newMaster) override;

  private:
    UI_ImagePanel& panel_;
};
