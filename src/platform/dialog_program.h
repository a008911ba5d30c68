// Runs a program that asks the user something and prints the answer. Depends on SDL2, whose events
// it keeps flowing so that the desktop does not take the window for dead. Main thread only.
#pragma once

#include <string>
#include <vector>

enum class DialogEnd { NotThere, Cancelled, Chosen };

struct DialogResult {
    DialogEnd end = DialogEnd::NotThere;
    std::string answer;  // what it printed, without the last line feed
};

// `command`: the program, searched for in PATH, and its arguments; no shell sees them. Waits for
// its end. A status other than 0, or no answer, is a cancel.
DialogResult RunDialogProgram(const std::vector<std::string>& command);
