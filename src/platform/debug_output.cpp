#include "platform/debug_output.h"

#include <atomic>
#include <cstdio>
#include <deque>
#include <mutex>

namespace {

struct DebugState {
    std::mutex mutex;
    std::deque<std::string> ring;
    std::size_t count = 0;
    DebugCapture* innermost = nullptr;
};

// Never destroyed, so that messages of late destructors still find it.
DebugState& State() {
    static DebugState* const state = new DebugState;
    return *state;
}

std::atomic<std::size_t> badFileCount = 0;

}  // namespace

void DebugOutput(std::string_view text) {
    DebugState& state = State();
    const std::lock_guard lock(state.mutex);
    ++state.count;
    state.ring.emplace_back(text);
    if (state.ring.size() > kDebugRingSize) state.ring.pop_front();
    if (state.innermost != nullptr) {
        state.innermost->messages_.emplace_back(text);
    } else {
        std::fwrite(text.data(), 1, text.size(), stderr);
    }
}

std::vector<std::string> RecentDebugOutput() {
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
    DebugOutput(line);
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
