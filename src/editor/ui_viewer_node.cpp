#include "editor/ui_viewer_node.h"

#include <GL/glew.h>

#include "core/image_node.h"
#include "gpu/embedded_shaders.h"
#include "gpu/full_screen_quad.h"
#include "gpu/gl_debug.h"
#include "gpu/gl_framebuffer.h"
#include "gpu/math_types.h"
#include "gpu/shader_program.h"

UI_ViewerNode::UI_ViewerNode(Engine* owner, const std::string& nodeId,
                             GL_FrameBuffer* defaultTarget)
    : OutputNode(owner, nodeId), target(defaultTarget) {
    setInputCount(1);
    viewerShader = std::make_unique<ShaderProgram>(
        "viewerShader", EmbeddedShader("viewer.vert").data(), nullptr,
        EmbeddedShader("viewer.frag").data(), QuadAttributes(), 1);
    textureMatrixLocation_ = viewerShader->UniformLocation("textureMatrix");
    const Mat4 identity;
    viewerShader->Use();
    glUniformMatrix4fv(viewerShader->UniformLocation("projectionMatrix"), 1, GL_FALSE, identity.m);
    glUniform1i(viewerShader->UniformLocation("tex"), 0);
    ShaderProgram::Unuse();
}

UI_ViewerNode::~UI_ViewerNode() = default;

bool UI_ViewerNode::canConnect(int, const Node* source) const {
    return ImageNode::isImageSource(source);
}

bool UI_ViewerNode::inputTypeName(int, std::string& typeName) const {
    typeName = "Image";
    return true;
}

void UI_ViewerNode::drawInput() const {
    const Node* source = getInput(0);
    if (!ImageNode::isImageSource(source)) return;
    const auto& image = static_cast<const ImageNode&>(*source);
    if (image.images[0] == nullptr) return;
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    viewerShader->Use();
    glUniformMatrix4fv(textureMatrixLocation_, 1, GL_FALSE, image.textureMatrix.m);
    DrawImageQuad(*image.images[0]);
    ShaderProgram::Unuse();
    glDisable(GL_BLEND);
}

void UI_ViewerNode::DrawToTarget() {
    if (target == nullptr) return;
    const GlDebugGroup group(id);
    target->Bind();
    target->SelectDrawBuffers();
    target->SetViewport();
    glClearColor(0, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT);
    drawInput();
    GL_FrameBuffer::Unbind();
}
