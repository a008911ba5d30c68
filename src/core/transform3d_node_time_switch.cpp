#include "core/transform3d_node_time_switch.h"

#include "core/engine.h"

Transform3DNode_TimeSwitch::Transform3DNode_TimeSwitch(Engine* owner, const std::string& nodeId)
    : Transform3DNode(owner, nodeId) {
    setInputCount(1);
    inputNames[0] = "Matrix";
    windows.declareOn(*engine, *this);
}

bool Transform3DNode_TimeSwitch::canConnect(int, const Node* source) const {
    return source != nullptr && source->getType() == kTransform3DNode;
}

bool Transform3DNode_TimeSwitch::update() {
    const TimeWindows::Scan scan = windows.scan(engine->time);
    hidden = scan.missedOne && !scan.found ? 1 : 0;
    const bool ok = scan.found && inputs[0] != nullptr && Transform3DNode::update();
    updated = true;
    return ok;
}

bool Transform3DNode_TimeSwitch::process() {
    if (hidden != 0) {
        Mat4Identity(matrix);
    } else if (const Node* source = getInput(0);
               source != nullptr && source->getType() == kTransform3DNode) {
        matrix = static_cast<const Transform3DNode*>(source)->matrix;
    }
    return true;
}
