// How the node canvas reaches the editor around it. Main thread.
#pragma once

#include "editor/node_canvas_host.h"

class UI_Engine;

class CanvasHost : public NodeCanvasHost {
  public:
    explicit CanvasHost(UI_Engine& editor) : ui_(editor) {}

    Engine& graph() override;
    void openProperties(const std::string& id) override;
    void nodeGoes(const std::string& id) override;
    void graphChanged() override;
    void setStatus(std::string_view text) override;
    OrderedMap<std::string, Vec2>& nodePositions() override;
    bool folded(const std::string& id) const override;
    void setFolded(const std::string& id, bool fold) override;
    std::string clipboardText() const override;
    void setClipboardText(const std::string& text) override;

  private:
    UI_Engine& ui_;
};
