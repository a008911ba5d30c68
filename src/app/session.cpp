#include "app/session.h"

#include <GL/glew.h>

#include "app/builtin_node_types.h"
#include "app/exit_codes.h"
#include "core/shader_library.h"
#include "gpu/full_screen_quad.h"
#include "gpu/gl_debug.h"

namespace {

void ClearColour() {
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
}

}  // namespace

std::unique_ptr<Session> Session::Start(WindowKind kind, std::string& reason, int& exitCode) {
    buildShaderLibrary();
    std::unique_ptr<Session> session(new Session);
    exitCode = kExitNoOpenGl;
    session->window = MakeWindow(kind, reason);
    if (session->window == nullptr) return nullptr;
    InstallGlDebugMessages();
    // A player's picture has no arrow on it.
    session->window->showCursor(false);

    const bool audible = kind != WindowKind::Offscreen;
    session->engine = std::make_unique<Engine>(BuiltInNodeTypes(), MakeSoundSystem(audible));
    // The watch comes before the engine reads the folder, so that no change falls in between.
    if (kind != WindowKind::Offscreen) {
        session->scriptWatch_ = std::make_unique<FolderWatch>("Scripts", &IsScriptFileName);
    }
    session->engine->init();
    session->ui = std::make_unique<UI_Engine>();
    if (!session->startEditor()) {
        reason = "the editor's resources could not be made";
        exitCode = kExitDone;
        return nullptr;
    }
    session->showFirstFrames();
    if (kind != WindowKind::Offscreen) {
        session->engine->showLoadProgress = [self = session.get()](double part) {
            self->showLoadProgress(part);
        };
    }
    exitCode = kExitDone;
    return session;
}

bool Session::startEditor() {
    if (!ui->Init(engine.get())) return false;
    ui->master.readShiftKey = [this] { return window->shiftHeld(); };
    ui->readClipboard = [this] { return window->clipboardText(); };
    ui->writeClipboard = [this](const std::string& text) { window->setClipboardText(text); };
    engine->viewerTarget = ui->editorTarget.get();
    screen_ = std::make_unique<GL_FrameBuffer>(kFrameWidth, kFrameHeight, 1, 8, GL_RGBA,
                                               TargetDepth::None, TargetWrap::Border);
    return true;
}

// Something to see while the project loads.
void Session::showFirstFrames() {
    GL_FrameBuffer::Unbind();
    runGraph(0.0f);
    window->swap();
    drawEditor();
    window->swap();
}

Session::~Session() {
    ui = nullptr;
    engine = nullptr;
    screen_ = nullptr;
    if (window != nullptr) ReleaseFullScreenQuad();
}

void Session::runGraph(float seconds) {
    ClearColour();
    engine->update(seconds);
}

void Session::showScreen(ScreenKind kind) {
    ui->ShowScreen(kind);
    window->showCursor(kind == ScreenKind::Authoring);
}

void Session::followScripts() {
    if (scriptWatch_ == nullptr) return;
    const double now =
        static_cast<double>(PerformanceCounter()) / static_cast<double>(PerformanceFrequency());
    ui->TakeScriptFiles(scriptWatch_->takeChanges(now));
}

// A few times a second: each costs a little of the time that the load takes.
void Session::showLoadProgress(double part) {
    constexpr std::uint64_t kTimesPerSecond = 15;
    const std::uint64_t now = PerformanceCounter();
    if (now - progressShown_ < PerformanceFrequency() / kTimesPerSecond) return;
    progressShown_ = now;
    drawLoadProgress(part);
    window->swap();
}

void Session::drawEditor() {
    drawPicture();
    showPicture();
}

void Session::drawLoadProgress(double part) {
    constexpr int kLineHeight = 6;
    // The authoring screen stays as it is: what it shows is what is being replaced.
    if (ui->presentationMode) drawPicture();
    screen_->Bind();
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, static_cast<int>(part * kFrameWidth), kLineHeight);
    glClearColor(0.8f, 0.8f, 0.8f, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glDisable(GL_SCISSOR_TEST);
    showPicture();
}

void Session::drawPicture() {
    screen_->Bind();
    screen_->SelectDrawBuffers();
    screen_->SetViewport();
    ClearColour();
    ui->DrawFrame();
}

void Session::showPicture() {
    glBindFramebuffer(GL_READ_FRAMEBUFFER, screen_->framebuffer);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0);
    const int width = window->drawableWidth();
    const int height = window->drawableHeight();
    const PictureArea area = LetterboxArea(width, height);
    glViewport(0, 0, width, height);
    ClearColour();
    const bool sameSize = area.width == kFrameWidth && area.height == kFrameHeight;
    glBlitFramebuffer(0, 0, kFrameWidth, kFrameHeight, area.x, area.y, area.x + area.width,
                      area.y + area.height, GL_COLOR_BUFFER_BIT, sameSize ? GL_NEAREST : GL_LINEAR);
    GL_FrameBuffer::Unbind();
}
