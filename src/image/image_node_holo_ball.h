// A hologram of twenty metaballs: slices through their field, reduced to outlines and laid in space
// one behind the other, between two planes that show the balls' light. The balls move between ten
// preset shapes by animated weights, and into a free orbit. It has its own camera unless one is
// connected. Main thread, with the OpenGL context.
#pragma once

#include <memory>
#include <vector>

#include "core/image_node.h"
#include "gpu/gl_framebuffer.h"
#include "image/holo_extent.h"
#include "image/holo_frame.h"

class ShaderProgram;

class ImageNode_HoloBall : public ImageNode {
  public:
    ImageNode_HoloBall(Engine* owner, const std::string& nodeId);
    ~ImageNode_HoloBall() override;

    bool canConnect(int port, const Node* source) const override;
    bool process() override;

    // The shape that the weights and the orbit give at the engine's time.
    HoloFrame currentFrame() const;
    // The target that slices are drawn into at present.
    const GL_FrameBuffer& sliceTarget() const { return resize > 0.5f ? *sliceSmall : *sliceLarge; }
    // What process uses for all slices of a frame, then for each of them. The target keeps what
    // lies outside the part.
    void setBalls(const HoloFrame& frame) const;
    void fillSlice(float z, const SlicePart& part) const;
    void fillLight(const Vec3& center) const;

    float color[4];
    float edge;
    float brightness;
    float scale;
    float uvRepeat;
    float metaballFX;
    float resize;
    float anim[10];

    // Leaves out what cannot be seen of slices; off only to measure and to prove that.
    bool skipUnseen = true;

    const std::vector<HoloFrame> frames;  // the resting shape and the presets
    std::unique_ptr<GL_FrameBuffer> sliceLarge, sliceSmall;
    std::unique_ptr<ShaderProgram> holoShader, holoLightShader, composeHolo, composeWallHolo;

  private:
    // Uniforms that change during a frame, and those that are set once for it.
    struct FieldLocations {
        int part, pixel, layerCenter, balls;
    };
    struct ComposeLocations {
        int part, layerCenter, edgeStep, brightness, color, viewMatrix, scaleHolo;
    };

    void declareParameters();
    void findLocations();
    void setConstantUniforms() const;
    void fill(const ShaderProgram& program, const FieldLocations& locations, const Vec3& center,
              const SlicePart& part) const;
    float pixelSize() const;
    Mat4 viewMatrix() const;
    void setView(const ShaderProgram& program, const ComposeLocations& locations,
                 const Mat4& view) const;
    void drawWalls() const;
    void drawSlices(const HoloFrame& frame, const Mat4& view) const;
    void drawSlice(float z, const SlicePart& seen, const Mat4& screen) const;
    bool isInView(const SlicePart& part, float depth, const Mat4& screen) const;
    void composeIntoProduct(const ShaderProgram& program, const ComposeLocations& locations,
                            const Vec3& center) const;

    FieldLocations sliceLocations_{}, lightLocations_{};
    ComposeLocations composeLocations_{}, wallLocations_{};
    std::shared_ptr<GL_FrameBuffer> target_;
};
