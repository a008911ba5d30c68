#include "core/node_target.h"

#include <GL/glew.h>

#include <algorithm>
#include <utility>

#include "core/image_node.h"

NodeTarget::NodeTarget(ImageNode& node) : node_(node), front_(MakeFrameTarget()) {
    node_.images[0] = front_;
}

bool NodeTarget::isRead(const std::shared_ptr<GL_FrameBuffer>& picture) const {
    for (int port = 0; port < node_.inputCount; ++port) {
        const ImageNode* source = node_.imageInput(port);
        if (source == nullptr) continue;
        const auto& shown = source->images;
        if (std::find(shown.begin(), shown.end(), picture) != shown.end()) return true;
    }
    return false;
}

// The inputs are bound already, and making a target leaves its texture on the active unit: there it
// would be read while it is drawn to.
void NodeTarget::makeBack() {
    GLint bound = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &bound);
    back_ = MakeFrameTarget();
    glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(bound));
}

void NodeTarget::begin() {
    if (isRead(front_)) swapTargets();
    resume();
}

void NodeTarget::beginAside() {
    if (back_ == nullptr || !isRead(back_)) swapTargets();
    resume();
}

void NodeTarget::swapTargets() {
    if (back_ == nullptr) makeBack();
    std::swap(front_, back_);
}

void NodeTarget::resume() const {
    front_->Bind();
    front_->SelectDrawBuffers();
    front_->SetViewport();
}

void NodeTarget::end() {
    GL_FrameBuffer::Unbind();
    node_.images[0] = front_;
}
