#include "platform/user_dialogs.h"

#include <SDL.h>

#include <algorithm>
#include <cctype>
#include <utility>
#include <vector>

#include "platform/debug_output.h"
#include "platform/dialog_program.h"
#include "platform/window.h"

namespace {

// The answers that tests and headless runs installed; empty: ask the user.
struct Handlers {
    MessageBoxHandler messageBox;
    FileDialogHandler fileDialog;
};

Handlers& Installed() {
    static Handlers handlers;
    return handlers;
}

void TellUnasked(std::string_view what) {
    DebugFault(std::string(what).append(": there is no display to ask on\n"));
}

MessageAnswer AskOnScreen(const std::string& text, const std::string& caption,
                          MessageButtons buttons) {
    constexpr int kOk = 1;
    constexpr int kCancel = 0;
    constexpr SDL_MessageBoxButtonData kButtons[] = {
        {SDL_MESSAGEBOX_BUTTON_RETURNKEY_DEFAULT, kOk, "OK"},
        {SDL_MESSAGEBOX_BUTTON_ESCAPEKEY_DEFAULT, kCancel, "Cancel"},
    };
    SDL_MessageBoxData box = {};
    box.flags = SDL_MESSAGEBOX_INFORMATION | SDL_MESSAGEBOX_BUTTONS_LEFT_TO_RIGHT;
    box.window = SDL_GL_GetCurrentWindow();  // so that the box comes up above it
    box.title = caption.c_str();
    box.message = text.c_str();
    box.numbuttons = buttons == MessageButtons::OkCancel ? 2 : 1;
    box.buttons = kButtons;
    int pressed = kCancel;
    if (SDL_ShowMessageBox(&box, &pressed) != 0) TellUnasked(text);
    return pressed == kOk ? MessageAnswer::Ok : MessageAnswer::Cancel;
}

// What the dialogs take for a Windows pattern: all files are "*" where names need no dot, and names
// have a case.
std::string FilterOf(std::string_view pattern) {
    if (pattern == "*.*") return "*";
    std::string upper(pattern);
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return upper == pattern ? upper : std::string(pattern) + " " + upper;
}

// The programs that show a desktop's file dialog, with their arguments, in the order of trying.
std::vector<std::vector<std::string>> DialogPrograms(std::string_view title,
                                                     std::string_view pattern) {
    const std::string files = FilterOf(pattern);
    const std::string titleText(title);
    return {{"zenity", "--file-selection", "--title=" + titleText, "--file-filter=" + files},
            {"kdialog", "--title", titleText, "--getopenfilename", ".", files}};
}

}  // namespace

MessageAnswer ShowMessageBox(std::string_view text, std::string_view caption,
                             MessageButtons buttons) {
    if (Installed().messageBox) return Installed().messageBox(text, caption, buttons);
    if (!DisplayAvailable()) {
        TellUnasked(text);
        return MessageAnswer::Cancel;
    }
    return AskOnScreen(std::string(text), std::string(caption), buttons);
}

MessageBoxHandler SetMessageBoxHandler(MessageBoxHandler handler) {
    return std::exchange(Installed().messageBox, std::move(handler));
}

std::optional<std::string> AskForFile(std::string_view title, std::string_view pattern) {
    if (Installed().fileDialog) return Installed().fileDialog(pattern);
    if (!DisplayAvailable()) {
        TellUnasked(title);
        return {};
    }
    for (const std::vector<std::string>& command : DialogPrograms(title, pattern)) {
        DialogResult result = RunDialogProgram(command);
        if (result.end == DialogEnd::Chosen) return std::move(result.answer);
        if (result.end == DialogEnd::Cancelled) return {};
    }
    DebugFault("No file dialog: neither zenity nor kdialog can be run\n");
    return {};
}

FileDialogHandler SetFileDialogHandler(FileDialogHandler handler) {
    return std::exchange(Installed().fileDialog, std::move(handler));
}
