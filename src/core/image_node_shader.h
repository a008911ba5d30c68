// A node script at work: an image node with the script's ports and parameters that runs its
// fragment shader over a full-screen quad into a target of its own. Main thread, with the OpenGL
// context.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/image_node.h"
#include "core/node_script.h"
#include "core/node_target.h"

class ShaderProgram;

class ImageNode_Shader : public ImageNode {
  public:
    ImageNode_Shader(Engine* owner, const std::string& nodeId, const NodeScript& nodeScript);
    ~ImageNode_Shader() override;

    bool canConnect(int port, const Node* source) const override;
    bool process() override;      // sets all uniforms
    bool postProcess() override;  // draws

    std::unique_ptr<ShaderProgram> program;
    NodeScript script;  // the node's own copy, whose parameter records are the node's members

  private:
    void declareParams();
    void findLocations();
    void setFrameUniforms();
    void setInput(std::size_t port);
    void setParam(const ShaderParam& param, int location);

    struct InputLocations {
        int matrix;
        int sampler;
    };
    struct FrameLocations {
        int textureMatrix, time, aspectRatio, sampleSize;
    };
    FrameLocations frameLocations_{};
    std::vector<InputLocations> inputLocations_;
    std::vector<int> paramLocations_;
    NodeTarget target_;
};
