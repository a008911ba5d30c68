#include "app/main_loop.h"

#include <GL/glew.h>

#include "app/session.h"
#include "platform/debug_output.h"

namespace {

// The demo's end, whatever length the project names.
constexpr double kEndSeconds = 230.0;
constexpr std::uint32_t kMessageKeyDown = 256;

void HandleMessage(Session& session, const WindowMessage& message) {
    if (message.message == kMessageKeyDown && message.value == kKeyF12) {
        DebugOutput("The authoring screen is not there yet.\n");
        return;
    }
    session.ui->master.Dispatch(message);
}

void RunFrame(Session& session, bool& started) {
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    session.ui->BeginFrameUpdate();
    session.engine->update(session.ui->editorTime);
    if (!started) {
        session.ui->StartPlayback();
        started = true;
    }
    session.drawEditor();
    session.window->swap();
}

}  // namespace

void RunMainLoop(Session& session) {
    bool started = false;
    for (;;) {
        if (session.window->escapePressed()) return;
        WindowMessage message;
        if (session.window->takeMessage(message)) {
            if (message.message == kMessageClose) return;
            HandleMessage(session, message);
            continue;
        }
        RunFrame(session, started);
        if (static_cast<double>(session.engine->time) > kEndSeconds) return;
    }
}
