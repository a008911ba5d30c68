// The end of a chain: draws its input's picture into the editor's target. Main thread, with the
// OpenGL context.
#pragma once

#include <memory>
#include <string>

#include "core/node.h"

class GL_FrameBuffer;
class ShaderProgram;

class UI_ViewerNode : public OutputNode {
  public:
    // `defaultTarget` is not owned and may be null: nothing is drawn then.
    UI_ViewerNode(Engine* owner, const std::string& nodeId, GL_FrameBuffer* defaultTarget);
    ~UI_ViewerNode() override;

    bool canConnect(int port, const Node* source) const override;
    bool inputTypeName(int port, std::string& typeName) const override;
    bool process() override { return true; }
    void present() override { DrawToTarget(); }
    // Clears the target to transparent black and blends the input's picture over it.
    void DrawToTarget();

    std::unique_ptr<ShaderProgram> viewerShader;
    GL_FrameBuffer* target;

  private:
    void drawInput() const;

    int textureMatrixLocation_;
};
