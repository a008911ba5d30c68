#include "image/image_node_compose.h"

#include <GL/glew.h>

#include "core/engine.h"
#include "gpu/embedded_shaders.h"
#include "gpu/full_screen_quad.h"
#include "gpu/gl_debug.h"
#include "gpu/shader_program.h"

ImageNode_Compose::ImageNode_Compose(Engine* owner, const std::string& nodeId)
    : ImageNode(owner, nodeId), target_(*this) {
    setInputCount(2);
    inputNames = {"A", "B"};
    shader = std::make_unique<ShaderProgram>("composeComb", EmbeddedShader("picture.vert").data(),
                                             nullptr, EmbeddedShader("picture.frag").data(),
                                             QuadAttributes(), 1);
    setError(!shader->linked);
    shader->Use();
    glUniform1i(shader->UniformLocation("image"), 0);
    ShaderProgram::Unuse();
}

ImageNode_Compose::~ImageNode_Compose() = default;

bool ImageNode_Compose::canConnect(int, const Node* source) const {
    return isImageSource(source);
}

bool ImageNode_Compose::process() {
    if (engine->renderEnabled == 0) return true;
    const GlDebugGroup group(id);
    target_.begin();
    glClearColor(0, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT);
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    shader->Use();
    for (int port = 0; port < 2; ++port) {
        const ImageNode* source = imageInput(port);
        if (source != nullptr && source->images[0] != nullptr) DrawImageQuad(*source->images[0]);
    }
    ShaderProgram::Unuse();
    glDisable(GL_BLEND);
    target_.end();
    return true;
}
