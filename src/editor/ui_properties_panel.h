// The properties of one node: a widget for each of its values, and the node's faults where it has
// any. Main thread.
#pragma once

#include <string>
#include <vector>

#include "editor/ui_panel.h"

class Engine;
class Node;
class UI_ImagePanel;

// What is wrong with a node, in lines; none when nothing is. Of a script's node these are the name
// of the script's file and the compiler's words, with lines of that file.
std::vector<std::string> FaultsOf(const Node& node);
// The one to tell where there is room for one; empty when nothing is wrong.
std::string MainFaultOf(const Node& node);

class UI_PropertiesPanel : public UI_Panel {
  public:
    static constexpr int kWidth = 390;  // pixels

    // Of a node of the engine; the panel must go before the node does. The height is set when the
    // widgets are added.
    UI_PropertiesPanel(Engine& owner, std::string nodeId);

    // Adds a widget for each value, and for places a pin on the picture.
    void AddWidgets(UI_ImagePanel& pins);
    // The same for a node that has other values now; the panel stays where it is.
    void RemakeWidgets(UI_ImagePanel& pins);
    // Takes up before whether values are animated, when the node's tracks have come or gone, and
    // the node's faults, whose lines make the panel longer.
    void Draw() override;
    bool HandleEvent(UI_Event* event) override;
    void DrawOverlay() override;

    const std::string id;

  private:
    void addWidget(UI_Object* widget, int& top);
    void refresh();
    void takeFaults(std::vector<std::string> faults);
    std::vector<std::string> trackNames() const;

    Engine& engine_;
    int widgetsHeight_ = 0;
    std::vector<std::string> faults_;
    std::vector<std::string> faultRows_;     // cut to the panel's width
    std::vector<std::string> syncedTracks_;  // those for which the widgets' flags are right
};
