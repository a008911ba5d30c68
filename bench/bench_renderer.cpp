// What the deferred renderer saves by leaving out work that the picture does not depend on: frames
// of a ball before an empty background, with occlusion and gathered light, beside the same frames
// with all work done. Both pictures are compared first. The GPU's work is waited for; "CPU" is the
// time of all threads, which on a software renderer is the work itself.
#include <GL/glew.h>
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "core/engine.h"
#include "geometry/geometry_node_particle_mesher.h"
#include "geometry/material_node.h"
#include "geometry/transform3d_node_orbit_camera.h"
#include "image/image_node_radiosity_renderer.h"
#include "platform/window.h"

namespace {

// A ball in the middle of the frame, and a renderer that looks at it.
struct Scene {
    static std::unique_ptr<Window> OpenWindow() {
        std::string reason;
        std::unique_ptr<Window> window = MakeWindow(WindowKind::Offscreen, reason);
        if (window == nullptr) std::abort();
        return window;
    }

    Scene() {
        ball.inputs[0] = &material;
        renderer.inputs[0] = &ball;
        renderer.inputs[1] = &camera;
        renderer.aoEnable = renderer.giEnable = true;
        renderer.giSamples = "12";
        camera.radius = 6;
        camera.height = 1;
        camera.targetHeight = 0;
        for (Node* node : std::vector<Node*>{&material, &ball, &camera}) node->process();
    }
    void draw(bool skip) {
        renderer.skipNeutralWork = skip;
        renderer.process();
        glFinish();
    }
    std::vector<float> pixels() const {
        const GL_Image& picture = *renderer.images[0];
        std::vector<float> rgba(static_cast<std::size_t>(picture.width * picture.height) * 4);
        glBindTexture(GL_TEXTURE_2D, picture.textures[0]);
        glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_FLOAT, rgba.data());
        glBindTexture(GL_TEXTURE_2D, 0);
        return rgba;
    }

    std::unique_ptr<Window> window = OpenWindow();
    Engine engine{{}, nullptr};
    MaterialNode material{&engine, "material"};
    GeometryNode_ParticleMesher ball{&engine, "ball"};
    Transform3DNode_OrbitCamera camera{&engine, "camera"};
    ImageNode_RadiosityRenderer renderer{&engine, "renderer"};
};

// Argument: 1 to leave out what does not show.
void RenderBall(benchmark::State& state) {
    static Scene scene;
    scene.draw(false);
    const std::vector<float> plain = scene.pixels();
    scene.draw(true);
    if (scene.pixels() != plain) state.SkipWithError("the pictures differ");
    for (auto _ : state) scene.draw(state.range(0) != 0);
}
BENCHMARK(RenderBall)
    ->Arg(0)
    ->Arg(1)
    ->Iterations(3)
    ->MeasureProcessCPUTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
