#include "app/main_loop.h"

#include "app/session.h"
#include "platform/window.h"

namespace {

// The demo's end, whatever length the project names.
constexpr double kEndSeconds = 230.0;

// A press, and not the repeats of a held key.
bool IsKeyDown(const WindowMessage& message, std::int32_t key) {
    return message.message == kMessageKeyDown && message.value == key && !message.repeat;
}

// False when the run is to end. While a widget has the mouse or the keyboard, Esc is its own: it
// gives up what is typed or dragged.
bool HandleMessage(Session& session, const WindowMessage& message) {
    UI_Engine& ui = *session.ui;
    if (message.message == kMessageClose) return !ui.MayQuit();
    if (IsKeyDown(message, kKeyF12)) {
        session.showScreen(ui.presentationMode ? ScreenKind::Authoring : ScreenKind::Presentation);
        return true;
    }
    if (IsKeyDown(message, kKeyEscape) && !ui.presentationMode) {
        if (ui.master.captured == nullptr) return ui.GiveUp() || !ui.MayQuit();
    }
    ui.master.Dispatch(message);
    return true;
}

// A player ends on the key as such, whenever it was pressed; the authoring screen hears of it as of
// every key. A press waits in `pressed` until it is known which of the two it was meant for: an F12
// before it may still be among the messages.
bool EscapeEnds(Session& session, bool& pressed) {
    pressed = session.window->escapePressed() || pressed;
    if (!pressed || !session.ui->presentationMode) return false;
    pressed = false;
    return session.ui->MayQuit();
}

// The demo's end ends the player, unless work would be lost with it. Who makes it stays, and the
// clock stops there.
bool EndReached(Session& session) {
    UI_Engine& ui = *session.ui;
    if (!(static_cast<double>(session.engine->time) > kEndSeconds)) return false;
    if (ui.presentationMode) {
        if (ui.MayQuit()) return true;
        session.showScreen(ScreenKind::Authoring);
    }
    if (ui.playing) {
        ui.TogglePlay();
        ui.SetStatus("The demo ends at 230 seconds");
    }
    return false;
}

void RunFrame(Session& session, bool& started) {
    session.ui->BeginFrameUpdate();
    session.followScripts();
    session.runGraph(session.ui->editorTime);
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
    bool escape = false;
    for (;;) {
        if (EscapeEnds(session, escape)) return;
        WindowMessage message;
        if (session.window->takeMessage(message)) {
            const bool forAuthoring = !session.ui->presentationMode;
            if (!HandleMessage(session, message)) return;
            if (forAuthoring && IsKeyDown(message, kKeyEscape)) escape = false;
            continue;
        }
        escape = false;
        RunFrame(session, started);
        if (EndReached(session)) return;
    }
}
