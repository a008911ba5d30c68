// Message boxes and the file dialog. Tests and headless runs install answers of their own; without
// a display the answer of a box is Cancel. Main thread only.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

enum class MessageButtons { Ok, OkCancel };
enum class MessageAnswer { Ok, Cancel };

MessageAnswer ShowMessageBox(std::string_view text, std::string_view caption,
                             MessageButtons buttons);

using MessageBoxHandler =
    std::function<MessageAnswer(std::string_view text, std::string_view caption, MessageButtons)>;
// An empty handler restores the real boxes. Returns the handler that was installed before.
MessageBoxHandler SetMessageBoxHandler(MessageBoxHandler handler);

// The desktop's own file dialog (portal, zenity or kdialog, whichever is there) for files that
// match `pattern` ("*.vorn"). Nothing when cancelled; no dialog to be had is a cancel with a line
// on the debug channel.
std::optional<std::string> AskForFile(std::string_view title, std::string_view pattern);
using FileDialogHandler = std::function<std::optional<std::string>(std::string_view pattern)>;
FileDialogHandler SetFileDialogHandler(FileDialogHandler handler);
