#include "core/image_node_sequence.h"

#include <cstdlib>

#include "core/engine.h"

ImageNode_Sequence::ImageNode_Sequence(Engine* owner, const std::string& nodeId)
    : ImageNode(owner, nodeId) {
    setInputCount(kPorts);
    for (std::size_t i = 0; i < startTexts.size(); ++i) {
        const std::string name = std::string("Start ") + (i < 10 ? "0" : "") + std::to_string(i);
        engine->declareString(this, name.c_str(), startTexts[i], "0");
    }
}

bool ImageNode_Sequence::canConnect(int, const Node* source) const {
    return isImageSource(source);
}

bool ImageNode_Sequence::update() {
    int winner = -1;
    for (int port = 0; port < kPorts; ++port) {
        if (getInput(port) != nullptr && engine->time >= starts[static_cast<std::size_t>(port)]) {
            winner = port;
        }
    }
    bool ok = true;
    if (winner >= 0) {
        pullInput(getInput(winner));
        ok = process();
        ok = postProcess() && ok;
    }
    updated = true;
    return ok;
}

bool ImageNode_Sequence::process() {
    if (engine->renderEnabled == 0) return true;
    for (std::size_t port = 0; port < starts.size(); ++port) {
        starts[port] = static_cast<float>(std::atof(startTexts[port].c_str()) / 1000.0);
        const ImageNode* source = imageInput(static_cast<int>(port));
        if (source != nullptr && engine->time >= starts[port]) images = source->images;
    }
    return true;
}
