// A titled container of widgets. Main thread.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "editor/ui_object.h"

class UI_Panel : public UI_Object {
  public:
    UI_Panel(int panelX, int panelY, int panelWidth, int panelHeight, bool hasCloseBox);
    ~UI_Panel() override;

    void Draw() override;
    bool HandleEvent(UI_Event* event) override;
    void SetPosition(int newX, int newY) override;  // takes the children along
    void SetMaster(UI_Master* newMaster) override;  // hands it on to the children
    bool Holds(const UI_Object* widget) const override;

    virtual void DrawOverlay() {}   // after the children
    virtual void DrawUnderlay() {}  // before the background
    virtual bool HandleOwnEvent(UI_Event* event);

    // Takes the child over, with its place relative to the panel. Null and a child that it has
    // already are ignored.
    virtual void AddChild(UI_Object* child);
    // Hands the child back to the caller; null when the panel has no such child.
    [[nodiscard]] virtual std::unique_ptr<UI_Object> RemoveChild(UI_Object* child);

    bool closable;
    std::vector<std::unique_ptr<UI_Object>> children;
    bool hidden = false;
    std::string title;  // a node id or a text; empty for a panel without title

  private:
    bool releasesInCloseBox(const UI_Event& event) const;
    void drawInside();
    void drawTitle(int bar);
};
