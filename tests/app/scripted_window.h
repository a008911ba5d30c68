// The window of a session with messages, an Esc key and a clipboard of the test's own.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "app/session.h"
#include "platform/window.h"

class ScriptedWindow : public Window {
  public:
    explicit ScriptedWindow(std::unique_ptr<Window> real) : real_(std::move(real)) {}

    bool fullScreen() const override { return false; }
    int drawableWidth() const override { return real_->drawableWidth(); }
    int drawableHeight() const override { return real_->drawableHeight(); }
    bool takeMessage(WindowMessage& message) override {
        if (messages.empty() && whenEmpty) whenEmpty();
        if (messages.empty()) return false;
        message = messages.front();
        messages.pop_front();
        return true;
    }
    bool escapePressed() override { return escapeAfterPolls-- == 0; }
    bool shiftHeld() const override { return false; }
    void swap() override {
        ++swaps;
        messagesLeftAtSwap = messages.size();
        if (afterSwap) afterSwap();
        real_->swap();
    }
    void showCursor(bool visible) override { real_->showCursor(visible); }
    void setTitle(const std::string& title) override { real_->setTitle(title); }
    std::string clipboardText() const override { return clipboard; }
    void setClipboardText(const std::string& text) override { clipboard = text; }

    std::deque<WindowMessage> messages;
    std::string clipboard;
    int escapeAfterPolls = -1;
    int swaps = 0;
    std::size_t messagesLeftAtSwap = 0;
    std::function<void()> afterSwap;
    std::function<void()> whenEmpty;  // may add messages

  private:
    std::unique_ptr<Window> real_;
};

// A session whose window is `window`; null with a reason when there is no OpenGL.
inline std::unique_ptr<Session> StartScriptedSession(ScriptedWindow*& window, std::string& reason) {
    int exitCode = 0;
    std::unique_ptr<Session> session = Session::Start(WindowKind::Offscreen, reason, exitCode);
    if (session == nullptr) return nullptr;
    auto scripted = std::make_unique<ScriptedWindow>(std::move(session->window));
    window = scripted.get();
    session->window = std::move(scripted);
    return session;
}
