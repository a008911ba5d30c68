// Plays layered 2-D animation: up to 30 scenes on one timeline, each a .scn file of picture layers
// with a track of keys. The layers of the scene that the time falls in are drawn into a colour and
// a neon picture; the colour, weighted by the neon, is blurred and laid over as a glow. A picture
// on the input is shown through the layers that are masks. Type name "2D Parallax Engine". Main
// thread, with the OpenGL context; pictures are decoded on all cores.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/image_node.h"
#include "image/parallax_scene.h"
#include "image/picture_queue.h"

class DirectionalBlur;
class GL_FrameBuffer;
class ShaderProgram;

struct ParallaxLayer {
    std::shared_ptr<GL_Image> image;  // never null
    std::shared_ptr<GL_Image> neon;   // the same picture for a neon layer, else null
    float mask = 0;                   // 1: shows the input picture
    std::vector<ParallaxKey> keys;
    std::int32_t mode = 0;
};

struct ParallaxScene {
    std::vector<ParallaxLayer> layers;  // front first
    float startTime = 0;                // seconds
    float timeOffset = 0;               // seconds
    float timeStretch = 1;
};

// How long and how strong the glow of a scene is; it goes by the slot.
struct ParallaxGlow {
    float lengthScale;
    float amount;
};
ParallaxGlow ParallaxGlowOfSlot(std::size_t slot);
// Does the name of a layer say that it shows the input picture?
bool IsParallaxMask(std::string_view name);

class ImageNode_2DParallaxRenderer : public ImageNode {
  public:
    static constexpr std::size_t kScenes = 30;

    ImageNode_2DParallaxRenderer(Engine* owner, const std::string& nodeId);
    ~ImageNode_2DParallaxRenderer() override;

    bool canConnect(int port, const Node* source) const override;
    std::size_t countLoadSteps() override;
    void prepareLoad(TaskPool& pool) override;
    bool process() override;

    // The slot that is played at a time of the node: of those with layers, which must stand in the
    // order of their starts, the last one that has begun, or the first one before that.
    std::size_t sceneAt(float seconds) const;

    // Leaves out a glow of which is known that it adds nothing; off only to prove that.
    bool skipNeutralWork = true;

    float globalOffset, globalTimeStretch, globalAlpha;
    float fxIntensity;
    float glowRadius, glowIntensity, glowMask;
    float background[4];
    std::array<std::string, kScenes> scnFiles;
    std::array<std::string, kScenes> loadedFiles;
    std::array<ParallaxScene, kScenes> scenes;
    // By full path; shared by all scenes and kept as long as the node.
    std::map<std::string, std::shared_ptr<GL_Image>> imageCache;

    std::array<std::unique_ptr<GL_FrameBuffer>, 2> layerBuffers;  // attachments: colour, neon
    std::unique_ptr<GL_FrameBuffer> blurBufferH, blurBufferV;
    std::shared_ptr<GL_FrameBuffer> resultBuffer;
    std::unique_ptr<DirectionalBlur> blurShader;
    std::unique_ptr<ShaderProgram> composeShader, composeDodgeShader;

  private:
    // A scene's file as it was read, before its pictures are there.
    struct SceneFile {
        std::size_t slot = 0;
        std::string path;
        bool opened = false;
        std::string fault;
        std::vector<ParallaxRecord> records;
    };
    // What has to be read for the slots whose file has changed.
    struct LoadPlan {
        std::vector<SceneFile> files;
        PictureQueue pictures;
    };
    // One of the two programs that draw layers.
    struct LayerProgram {
        explicit LayerProgram(const ShaderProgram& program);
        const ShaderProgram& shader;
        int rect, textureMatrix, alpha, neonIntensity, maskedEffectIntensity;
    };
    struct LayerPass;
    struct DrawnLayers {
        const GL_FrameBuffer& target;
        bool haveNeon;  // else the neon picture is black all over
    };

    void declareParameters();
    void makeTargets();
    void makePrograms();

    bool isPlanned() const;
    LoadPlan makePlan() const;
    void loadChangedScenes();
    void loadPictures(PictureQueue& pictures);
    void loadScene(SceneFile& file);
    std::shared_ptr<GL_Image> cachedLayerImage(const std::string& path) const;

    DrawnLayers drawLayers(std::size_t slot, float sceneSeconds) const;
    void drawLayer(LayerPass& pass, const ParallaxLayer& layer, const ParallaxPlace& place) const;
    void beginBlended(LayerPass& pass, std::int32_t mode) const;
    void beginDodge(LayerPass& pass) const;
    void blurGlow(const GL_FrameBuffer& layers, float lengthScale) const;
    void compose(const GL_FrameBuffer& layers, bool glows, float glowAmount) const;

    std::unique_ptr<LayerProgram> composeProgram_, dodgeProgram_;
    std::unique_ptr<LoadPlan> plan_;  // made ahead of the load pass
};
