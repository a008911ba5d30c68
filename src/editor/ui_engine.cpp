#include "editor/ui_engine.h"

#include <GL/glew.h>

#include "core/engine.h"
#include "editor/ui_authoring_screen.h"
#include "editor/ui_button.h"
#include "editor/ui_canvas_host.h"
#include "editor/ui_key_timeline.h"
#include "editor/ui_label.h"
#include "editor/ui_labels.h"
#include "editor/ui_node_canvas.h"
#include "editor/ui_properties_column.h"
#include "editor/ui_viewer_node.h"
#include "gpu/embedded_shaders.h"
#include "gpu/gl_mem_texture.h"
#include "gpu/shader_program.h"
#include "image/read_image_file.h"
#include "platform/debug_output.h"

UI_Engine::UI_Engine() {
    frameTimer.Reset(0.0f);
}

UI_Engine::~UI_Engine() = default;

bool UI_Engine::Init(Engine* newEngine) {
    presentationMode = true;
    playing = false;
    editorTime = 0.0f;
    engine = newEngine;
    if (!master.Init()) {
        DebugFault("ERROR: Unable to init the UI master.\n");
        return false;
    }
    imagePanel = std::make_unique<UI_ImagePanel>("", 0, 0, kFrameWidth, kFrameHeight, true);
    imagePanel->SetBackdrop(&imageBackdrop);
    master.AddTopLevel(imagePanel.get());
    editorTarget = MakeFrameTarget();
    editorTarget->Bind();
    editorTarget->SelectDrawBuffers();
    glClearColor(0, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT);
    showLoadingPicture();
    GL_FrameBuffer::Unbind();
    imagePanel->SetImage(editorTarget.get());
    return true;
}

// Until a viewer draws over it, this is what the screen shows. Without the file it stays black.
void UI_Engine::showLoadingPicture() {
    std::uint32_t width = 0, height = 0, channels = 0;
    std::unique_ptr<std::uint8_t[]> pixels;
    ReadImageFile(".\\Graphics\\Loading.png", width, height, channels, pixels, false);
    if (pixels == nullptr) return;
    const ShaderProgram program("fwd", EmbeddedShader("picture.vert").data(), nullptr,
                                EmbeddedShader("picture.frag").data(), QuadAttributes(), 1);
    const GL_MemTexture loading(static_cast<int>(width), static_cast<int>(height),
                                channels == 3 ? GL_RGB : GL_RGBA, GL_CLAMP_TO_EDGE,
                                GL_CLAMP_TO_EDGE, pixels.get());
    pixels = nullptr;
    program.Use();
    glUniform1i(program.UniformLocation("image"), 0);
    loading.BindTextures(GL_TEXTURE0);
    editorTarget->Fill();
    loading.UnbindTextures(GL_TEXTURE0);
    ShaderProgram::Unuse();
}

void UI_Engine::BeginFrameUpdate() {
    closedPanels_.clear();
    seekUnseen_ = false;
    if (playing) {
        frameTimer.Update();
        editorTime += frameTimer.deltaSeconds;
    }
    if (presentationMode) return;
    updateLabels();
    if (!keyTimeline->IsUpToDate()) RefreshTimeline();
}

void UI_Engine::updateLabels() {
    timeLabel->text = TimeLabelText(editorTime);
    frameCostLabel->text = FrameCostLabelText(engine->frameCost);
}

void UI_Engine::StartPlayback() {
    playing = true;
    if (playButton != nullptr) playButton->keyed = true;
    frameTimer.Reset(0.0f);
    engine->music->seek(static_cast<double>(engine->time));
    engine->music->play();
}

void UI_Engine::DrawFrame() {
    if (loading_) return;
    // The selected viewer draws into the editor's target in the next update; the others idle. In
    // presentation the list is empty and every viewer keeps the target that it was made with.
    for (Node* output : outputs) {
        if (auto* viewer = dynamic_cast<UI_ViewerNode*>(output)) viewer->target = nullptr;
    }
    if (selectedOutput >= 0 && selectedOutput < static_cast<std::int64_t>(outputs.size())) {
        Node* output = outputs[static_cast<std::size_t>(selectedOutput)];
        if (auto* viewer = dynamic_cast<UI_ViewerNode*>(output))
            viewer->target = editorTarget.get();
    }
    master.BeginFrame();
    master.DrawAll();
    glDisable(GL_BLEND);
}
