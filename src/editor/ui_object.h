// The base of all widgets, and the interface through which widgets tell of changes. Places and
// sizes are pixels of the 1920 by 1080 screen, origin top left. Main thread.
#pragma once

#include "editor/ui_event.h"

class UI_Master;
class UI_Object;

class UI_Evt_ValueChanged {
  public:
    virtual ~UI_Evt_ValueChanged() = default;
    virtual void OnValueEdited(UI_Object* sender) = 0;
    virtual void OnValueHook() {}
    virtual void OnCommand(UI_Object* sender, int argument) = 0;
};

class UI_Object {
  public:
    UI_Object() = default;
    // Gives back the capture and leaves the top level.
    virtual ~UI_Object();
    UI_Object(const UI_Object&) = delete;
    UI_Object& operator=(const UI_Object&) = delete;

    virtual void Draw() = 0;
    virtual int GetHeight() const { return 30; }
    // True when the event is consumed.
    virtual bool HandleEvent(UI_Event* event) = 0;
    virtual void SetPosition(int newX, int newY);
    virtual void SetSize(int newWidth, int newHeight);
    // Widgets bound to a value take up whether it is animated.
    virtual void SyncKeyed() {}
    virtual void SetMaster(UI_Master* newMaster) { master = newMaster; }

    // True for the widget itself and for all that it is made of, at any depth.
    virtual bool Holds(const UI_Object* widget) const { return widget == this; }

    // Both ends of both ranges are inside.
    bool Contains(int pointX, int pointY) const;

    UI_Evt_ValueChanged* listener = nullptr;  // not owned, may be null
    bool keyed = false;                       // drawn as an outline
    int x = 0, y = 0, width = 0, height = 0;
    UI_Master* master = nullptr;  // not owned; must outlive the widget

  protected:
    // Capture sends all events to this widget alone. `onTop`: drawn after everything else. False
    // when it is taken already, even by this widget.
    bool takeCapture(bool onTop);
    bool hasCapture() const;
    void releaseCapture();  // nothing happens when another widget has it
};
