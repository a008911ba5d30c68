// Passes its input's picture on only inside up to four windows of time. Outside them the branch of
// the graph behind it is not run. Main thread.
#pragma once

#include "core/image_node.h"
#include "core/time_windows.h"

class ImageNode_TimeSwitch : public ImageNode {
  public:
    ImageNode_TimeSwitch(Engine* owner, const std::string& nodeId);

    bool canConnect(int port, const Node* source) const override;
    bool update() override;
    bool process() override;

    TimeWindows windows;
    int hidden = 0;
};
