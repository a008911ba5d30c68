// A node script at work: an image node with the script's ports and parameters that runs its
// fragment shader over a full-screen quad into a target of its own. Main thread, with the OpenGL
// context.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/image_node.h"
#include "core/node_script.h"
#include "core/node_target.h"

class ShaderProgram;
struct RetiredParams;
struct TakenScript;

class ImageNode_Shader : public ImageNode {
  public:
    ImageNode_Shader(Engine* owner, const std::string& nodeId, const NodeScript& nodeScript);
    ~ImageNode_Shader() override;

    bool canConnect(int port, const Node* source) const override;
    bool process() override;      // sets all uniforms
    bool postProcess() override;  // draws

    // The program of a script; of its messages the lines are those of the script's file.
    static std::unique_ptr<ShaderProgram> MakeProgram(const NodeScript& nodeScript);
    // Takes up another version of the script, with its program, which must be linked. Values and
    // links stay with parameters and inputs of their names, and are remembered for those that come
    // back later.
    TakenScript takeScript(const NodeScript& changed, std::unique_ptr<ShaderProgram> newProgram);
    // There is another version whose shader does not compile: the node runs on as it is, with an
    // error.
    void refuseScript(const std::string& driverLog);
    // Why there is an error: the compiler's words, line by line.
    const std::vector<std::string>& faults() const { return faults_; }

    std::unique_ptr<ShaderProgram> program;
    NodeScript script;  // the node's own copy, whose parameter records are the node's members

  private:
    // A link whose input has gone from the script.
    struct GoneLink {
        std::string inputName, sourceId;
    };

    void declareParams();
    std::optional<RetiredParams> takeParams(std::vector<ShaderParam> before);
    std::vector<int> carryValues(const std::vector<ShaderParam>& before);
    bool takeInputs();
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
    std::vector<ShaderParam> declaredParams_;  // as the script has them
    std::vector<ShaderParam> goneParams_;      // with the values that they had
    std::vector<GoneLink> goneLinks_;
    std::vector<std::string> faults_;
    NodeTarget target_;
};
