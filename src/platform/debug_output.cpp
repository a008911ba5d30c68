#include "platform/debug_output.h"

#include <atomic>
#include <cstdio>
#include <deque>
#include <mutex>

struct DebugState {
    void write(std::string_view text, bool fault);

    std::mutex mutex;
    std::deque<DebugMessage> ring;
    std::size_t count = 0;
    DebugCapture* innermost = nullptr;
};

void DebugState::write(std::string_view text, bool fault) {
    const std::lock_guard lock(mutex);
    ++count;
    ring.push_back({std::string(text), fault});
    if (ring.size() > kDebugRingSize) ring.pop_front();
    if (innermost != nullptr) {
        innermost->messages_.emplace_back(text);
    } else {
        std::fwrite(text.data(), 1, text.size(), stderr);
    }
}

namespace {

// Never destroyed, so that messages of late destructors still find it.
DebugState& State() {
    static DebugState* const state = new DebugState;
    return *state;
}

std::atomic<std::size_t> badFileCount = 0;

}  // namespace

void DebugOutput(std::string_view text) {
    State().write(text, false);
}

void DebugFault(std::string_view text) {
    State().write(text, true);
}

std::vector<DebugMessage> RecentDebugOutput() {
    DebugState& state = State();
    const std::lock_guard lock(state.mutex);
    return {state.ring.begin(), state.ring.end()};
}

std::size_t DebugOutputCount() {
    DebugState& state = State();
    const std::lock_guard lock(state.mutex);
    return state.count;
}

void ReportBadFile(std::string_view name, std::string_view reason) {
    ++badFileCount;
    std::string line;
    line.reserve(name.size() + reason.size() + 3);
    line.append(name).append(": ").append(reason).append("\n");
    DebugFault(line);
}

std::size_t BadFileCount() {
    return badFileCount;
}

DebugCapture::DebugCapture() {
    DebugState& state = State();
    const std::lock_guard lock(state.mutex);
    outer_ = state.innermost;
    state.innermost = this;
}

DebugCapture::~DebugCapture() {
    DebugState& state = State();
    const std::lock_guard lock(state.mutex);
    state.innermost = outer_;
}

std::vector<std::string> DebugCapture::messages() const {
    const std::lock_guard lock(State().mutex);
    return messages_;
}

std::string DebugCapture::text() const {
    const std::lock_guard lock(State().mutex);
    std::string all;
    for (const std::string& message : messages_) all += message;
    return all;
}
