// A panel of 500 widgets of rectangles and text, drawn as the editor draws it, in one ordered
// stream, and next to it in the plain way: for every rectangle and glyph a vertex array, a buffer
// and a draw call of its own. Prints the CPU time of the calling thread and the draw calls a frame.
#include <GL/glew.h>
#include <benchmark/benchmark.h>
#include <time.h>

#include <cstdio>
#include <memory>
#include <string>

#include "editor/ui_master.h"
#include "editor/ui_panel.h"
#include "gpu/gl_framebuffer.h"
#include "gpu/shader_program.h"
#include "platform/window.h"

namespace {

constexpr int kWidgets = 500;

// Where drawing goes: the editor's stream, or objects of their own for every primitive.
class PlainDrawing {
  public:
    PlainDrawing()
        : program_("plain",
                   "#version 330 core\n"
                   "in vec4 vertex; uniform mat4 projectionMatrix;\n"
                   "void main() { gl_Position = projectionMatrix * vec4(vertex.xy, 0.0, 1.0); }\n",
                   nullptr,
                   "#version 330 core\n"
                   "uniform vec4 color; out vec4 frag[1]; void main() { frag[0] = color; }\n",
                   {"vertex"}, 1) {}

    void begin() {
        calls = 0;
        Mat4 projection;
        Mat4Ortho2D(projection, 0, 1920, 1080, 0);
        program_.Use();
        glUniformMatrix4fv(program_.UniformLocation("projectionMatrix"), 1, GL_FALSE, projection.m);
    }
    void rect(int x, int y, int w, int h, const Vec4& color) {
        const float left = static_cast<float>(x), top = static_cast<float>(y);
        const float right = static_cast<float>(x + w), bottom = static_cast<float>(y + h);
        const float corners[] = {left, top, right, top, left, bottom, right, bottom};
        glUniform4f(program_.UniformLocation("color"), color.r, color.g, color.b, color.a);
        GLuint array = 0, buffer = 0;
        glGenVertexArrays(1, &array);
        glBindVertexArray(array);
        glGenBuffers(1, &buffer);
        glBindBuffer(GL_ARRAY_BUFFER, buffer);
        glBufferData(GL_ARRAY_BUFFER, sizeof corners, corners, GL_STATIC_DRAW);
        glEnableVertexAttribArray(0);
        glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 8, nullptr);
        glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
        glBindVertexArray(0);
        glBindBuffer(GL_ARRAY_BUFFER, 0);
        glDeleteVertexArrays(1, &array);
        glDeleteBuffers(1, &buffer);
        ++calls;
    }

    int calls = 0;

  private:
    ShaderProgram program_;
};

// A row as the value widgets look: background, field, outline, label and number.
class Row : public UI_Object {
  public:
    Row(int index, PlainDrawing& plain) : plain_(plain) {
        SetPosition(10 + index % 5 * 380, 20 + index / 5 * 10);
        SetSize(370, 18);
        label_ = "Parameter " + std::to_string(index);
        number_ = std::to_string(index * 7 % 100) + ".25";
    }
    void Draw() override {
        master->SetColor(master->colorSlots[kColorWidget]);
        master->FillRect(x, y, width, height);
        master->SetColor(master->colorSlots[kColorSelection]);
        master->FillRect(x + width / 2, y + 2, width / 2, height - 4);
        master->SetColor(master->colorSlots[kColorKeyed]);
        master->OutlineRect(x, y, width, height);
        master->DrawText(x + 10, y + 14, 12, master->colorSlots[kColorText], label_);
        master->DrawText(x + width / 2, y + 14, 12, master->colorSlots[kColorKeyed], number_);
    }
    // The same number of quads, one at a time. Glyphs are flat here, which costs less than
    // textured ones.
    void drawPlain() {
        plain_.rect(x, y, width, height, master->colorSlots[kColorWidget]);
        plain_.rect(x + width / 2, y + 2, width / 2, height - 4,
                    master->colorSlots[kColorSelection]);
        plain_.rect(x, y, width, 1, master->colorSlots[kColorKeyed]);
        for (std::size_t i = 0; i < label_.size() + number_.size(); ++i) {
            plain_.rect(x + 10 + 8 * static_cast<int>(i), y + 4, 7, 10,
                        master->colorSlots[kColorText]);
        }
    }
    bool HandleEvent(UI_Event* /*event*/) override { return false; }

  private:
    PlainDrawing& plain_;
    std::string label_, number_;
};

struct Scene {
    UI_Master master;
    PlainDrawing plain;
    UI_Panel panel{0, 0, 1920, 1080, false};
    GL_FrameBuffer target{1920, 1080, 1, 16, GL_RGBA, TargetDepth::None, TargetWrap::Border};

    Scene() {
        master.Init();
        panel.title = "500 widgets";
        master.AddTopLevel(&panel);
        for (int i = 0; i < kWidgets; ++i) panel.AddChild(new Row(i, plain));
    }
};

double ThreadSeconds() {
    timespec now = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

Scene& SharedScene() {
    static Scene* scene = new Scene;  // lives as long as the context, that is, to the end
    return *scene;
}

template <typename DrawFrame, typename CallCount>
void Measure(benchmark::State& state, DrawFrame drawFrame, CallCount callCount) {
    Scene& scene = SharedScene();
    scene.target.Bind();
    scene.target.SelectDrawBuffers();
    drawFrame(scene);
    glFinish();
    for ([[maybe_unused]] auto iteration : state) {
        const double start = ThreadSeconds();
        drawFrame(scene);
        state.SetIterationTime(ThreadSeconds() - start);
        glFinish();  // the renderer's own work is not what is measured
    }
    state.counters["draw calls"] = callCount(scene);
    GL_FrameBuffer::Unbind();
}

void BM_PanelInOneStream(benchmark::State& state) {
    Measure(
        state,
        [](Scene& scene) {
            scene.master.BeginFrame();
            scene.master.DrawAll();
        },
        [](Scene& scene) { return scene.master.drawCalls(); });
}

// Everything but the last step, which hands the stream to OpenGL.
void BM_PanelCollectedOnly(benchmark::State& state) {
    Measure(
        state,
        [](Scene& scene) {
            scene.master.BeginFrame();
            scene.panel.Draw();
            scene.master.BeginFrame();  // drops what was collected
        },
        [](Scene&) { return 0; });
}

void BM_PanelWithADrawCallForEach(benchmark::State& state) {
    Measure(
        state,
        [](Scene& scene) {
            scene.plain.begin();
            for (const auto& child : scene.panel.children) {
                static_cast<Row*>(child.get())->drawPlain();
            }
            ShaderProgram::Unuse();
        },
        [](Scene& scene) { return scene.plain.calls; });
}

BENCHMARK(BM_PanelInOneStream)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PanelCollectedOnly)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PanelWithADrawCallForEach)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    std::string reason;
    const std::unique_ptr<Window> window = MakeWindow(WindowKind::Offscreen, reason);
    if (window == nullptr) {
        std::fprintf(stderr, "%s\n", reason.c_str());
        return 1;
    }
    std::printf("renderer: %s\n", reinterpret_cast<const char*>(glGetString(GL_RENDERER)));
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
