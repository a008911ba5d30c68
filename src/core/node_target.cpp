#include "core/node_target.h"

#include <algorithm>
#include <utility>

#include "core/image_node.h"

NodeTarget::NodeTarget(ImageNode& node) : node_(node), front_(MakeFrameTarget()) {
    node_.images[0] = front_;
}

bool NodeTarget::nodeReadsOwnPicture() const {
    for (int port = 0; port < node_.inputCount; ++port) {
        const ImageNode* source = node_.imageInput(port);
        if (source == nullptr) continue;
        const auto& shown = source->images;
        if (std::find(shown.begin(), shown.end(), front_) != shown.end()) return true;
    }
    return false;
}

void NodeTarget::begin() {
    if (nodeReadsOwnPicture()) {
        if (back_ == nullptr) back_ = MakeFrameTarget();
        std::swap(front_, back_);
    }
    front_->Bind();
    front_->SelectDrawBuffers();
    front_->SetViewport();
}

void NodeTarget::end() {
    GL_FrameBuffer::Unbind();
    node_.images[0] = front_;
}
