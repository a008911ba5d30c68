// The debug channel: diagnostics of the whole program, written as they stand to standard error and
// kept in a bounded ring that the editor's log shows. Depends on nothing; any thread may write.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// Writes `text` as it stands: nothing is added, not even a line feed.
void DebugOutput(std::string_view text);
// The same for what tells that something went wrong: the log shows it in red.
void DebugFault(std::string_view text);

struct DebugMessage {
    std::string text;
    bool fault = false;
};

// The last messages, oldest first, at most kDebugRingSize of them.
constexpr std::size_t kDebugRingSize = 2000;
std::vector<DebugMessage> RecentDebugOutput();

// Number of messages ever written; a log view compares it to see whether anything is new.
std::size_t DebugOutputCount();

// A fault in the user's files: one line "name: reason\n" on the debug channel, counted so that a
// strict run can fail. `name` is the file as the project gives it.
void ReportBadFile(std::string_view name, std::string_view reason);
std::size_t BadFileCount();

// Collects what is written on the debug channel while it lives; standard error stays silent. For
// tests. Captures nest; the innermost one collects.
class DebugCapture {
  public:
    DebugCapture();
    ~DebugCapture();
    DebugCapture(const DebugCapture&) = delete;
    DebugCapture& operator=(const DebugCapture&) = delete;

    std::vector<std::string> messages() const;
    std::string text() const;

  private:
    friend struct DebugState;

    std::vector<std::string> messages_;
    DebugCapture* outer_;
};
