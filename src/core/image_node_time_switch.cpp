#include "core/image_node_time_switch.h"

#include "core/engine.h"

ImageNode_TimeSwitch::ImageNode_TimeSwitch(Engine* owner, const std::string& nodeId)
    : ImageNode(owner, nodeId) {
    setInputCount(1);
    inputNames[0] = "Image";
    windows.declareOn(*engine, *this);
}

bool ImageNode_TimeSwitch::canConnect(int, const Node* source) const {
    return isImageSource(source);
}

bool ImageNode_TimeSwitch::update() {
    const TimeWindows::Scan scan = windows.scan(engine->time);
    hidden = scan.missedOne && !scan.found ? 1 : 0;
    if (scan.missedOne) images = {};
    const bool ok = scan.found && inputs[0] != nullptr && ImageNode::update();
    updated = true;
    return ok;
}

bool ImageNode_TimeSwitch::process() {
    if (engine->renderEnabled == 0) return true;
    if (hidden != 0) {
        images = {};
    } else if (const ImageNode* source = imageInput(0)) {
        images = source->images;
        textureMatrix = source->textureMatrix;
    }
    return true;
}
