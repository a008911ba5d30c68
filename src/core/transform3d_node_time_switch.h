// Passes its input's matrix on only inside up to four windows of time; outside them it keeps the
// matrix that it last took. Main thread.
#pragma once

#include "core/time_windows.h"
#include "core/transform3d_node.h"

class Transform3DNode_TimeSwitch : public Transform3DNode {
  public:
    Transform3DNode_TimeSwitch(Engine* owner, const std::string& nodeId);

    bool canConnect(int port, const Node* source) const override;
    bool update() override;
    bool process() override;

    TimeWindows windows;
    int hidden = 0;
};
