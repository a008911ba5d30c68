// Draws geometry: a pass over the meshes writes colour, normals, positions, light and reflections;
// screen-space passes find occlusion and one bounce of light; they are joined, and may be blurred
// by depth. Type name "3DRender_RAD". All work happens in process, on the main thread, with the
// OpenGL context.
#pragma once

#include <memory>
#include <string>

#include "core/image_node.h"

class GL_FrameBuffer;
class GeometryNode;
class ShaderProgram;
struct GeometryObject;
struct MaterialData;

class ImageNode_RadiosityRenderer : public ImageNode {
  public:
    enum Port { kGeometryPort = 0, kCameraPort = 1, kEnvironmentPort = 2 };
    // The geometry targets have the bottom of the picture in their first row, all others the top.
    enum PrepareAttachment {
        kColour = 0,
        kEyeNormal = 1,
        kEyePosition = 2,
        kIllumination = 3,
        kReflection = 4,
        kPrepareAttachments = 5,
    };

    ImageNode_RadiosityRenderer(Engine* owner, const std::string& nodeId);
    ~ImageNode_RadiosityRenderer() override;

    bool canConnect(int port, const Node* source) const override;
    bool process() override;
    // Has every program linked without which there is no picture? The additive one is not among
    // them.
    bool programsLinked() const;

    float background[4];
    float fovDegrees;  // vertical, the full angle
    float dofRadius;   // 0: no depth of field
    float dofCoC;
    bool aoEnable;
    float aoIntensity, aoRadius, aoBias, aoScale, aoMaxDistance;
    bool giEnable;
    float giAmbiance, giIntensity, giRadius, giBias, giScale, giMaxDistance;
    std::string giSamples;  // a whole number as text

    // Leaves out work of which is known that the picture does not depend on it; off only to
    // measure and to prove that.
    bool skipNeutralWork = true;

    std::shared_ptr<GL_FrameBuffer> prepareBuffer;
    std::shared_ptr<GL_FrameBuffer> dofBuffer;      // the picture with depth of field
    std::shared_ptr<GL_FrameBuffer> composeBuffer;  // the picture without
    std::shared_ptr<GL_FrameBuffer> aoBuffer;       // r: 1 where nothing is near
    std::shared_ptr<GL_FrameBuffer> giBuffer;       // gathered light
    std::unique_ptr<ShaderProgram> prepareShader, prepareAdditiveShader;
    std::unique_ptr<ShaderProgram> composeShader, aoShader, giShader, dofShader;

  private:
    // Uniforms of a geometry program.
    struct SurfaceLocations {
        int cameraMatrix, projectionMatrix, modelMatrix;
        int diffuseIntensity, illuminationIntensity, reflectionIntensity, reflectionFresnel;
        int illuminationColor;
    };
    // Uniforms of a spiral pass, and their values.
    struct SpiralLocations {
        int intensity, radius, bias, scale, maxDistance, skipNeutral;
    };
    struct SpiralValues {
        float intensity, radius, bias, scale, maxDistance;
    };
    // The two sweeps over the objects; each draws the materials whose blend mode is its number.
    enum class Sweep { Opaque = 0, Additive = 1 };
    struct SweepState {
        Sweep sweep;
        const SurfaceLocations& locations;
        const MaterialData* lastMaterial;  // survives from the first sweep into the second
    };

    void declareParameters();
    void makeTargets();
    void makePrograms();
    void findLocations();
    void setConstantUniforms() const;

    Mat4 cameraMatrix() const;
    Mat4 projectionMatrix() const;
    void prepare();
    void clearPrepareBuffer() const;
    void bindEnvironment() const;
    void gatherLight() const;
    void findOcclusion() const;
    void compose() const;
    void blurByDepth() const;
    void setSpiral(const SpiralLocations& locations, const SpiralValues& values) const;

    void sweepObjects(const GeometryNode& geometry, SweepState& state) const;
    void beginSweep(const SweepState& state) const;
    static bool chooseMaterial(const GeometryNode& geometry, const GeometryObject& object,
                               SweepState& state);
    static void applyMaterial(const MaterialData& material, const SurfaceLocations& locations);

    SurfaceLocations prepareLocations_{}, additiveLocations_{};
    SpiralLocations aoLocations_{}, giLocations_{};
    int giSampleCountLocation_ = -1;
    int composeIntensityLocation_ = -1;
    struct {
        int radius, coc, skipNeutral;
    } dofLocations_{};
};

// The number of samples that a text asks for: its leading whole number, 0 where there is none, from
// 0 to 4096 so that no text keeps the GPU busy for ever.
int GatherSampleCount(const std::string& text);
