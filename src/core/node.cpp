#include "core/node.h"

#include <algorithm>

#include "core/engine.h"
#include "core/frame_profiler.h"

namespace {

// Chains longer than this are not followed in one frame: each link costs stack.
constexpr int kMaxPullDepth = 4096;

}  // namespace

Node::Node(Engine* owner, std::string nodeId) : engine(owner), id(std::move(nodeId)) {}

bool Node::inputTypeName(int, std::string&) const {
    return false;
}

bool Node::update() {
    bool ok = true;
    for (Node* input : inputs) ok = pullInput(input) && ok;
    ok = process() && ok;
    ok = postProcess() && ok;
    updated = true;
    return ok;
}

bool Node::pullInput(Node* input) {
    if (input == nullptr || input->disabled != 0 || input->updated) return true;
    return input->pull();
}

bool Node::pull() {
    if (running_ || engine->pullDepth >= kMaxPullDepth) return true;
    running_ = true;
    ++engine->pullDepth;
    if (engine->profiler != nullptr) engine->profiler->beginNode(*this);
    const bool ok = update();
    if (engine->profiler != nullptr) engine->profiler->endNode(*this);
    --engine->pullDepth;
    running_ = false;
    return ok;
}

void Node::setInputCount(int count) {
    inputCount = std::max(count, 0);
    inputs.assign(static_cast<std::size_t>(inputCount), nullptr);
    inputNames.resize(static_cast<std::size_t>(inputCount));
    for (int port = 0; port < inputCount; ++port) {
        inputNames[static_cast<std::size_t>(port)] = "input" + std::to_string(port);
    }
}

std::string Node::getInputName(int port) const {
    if (port < 0 || port >= inputCount) return {};
    return inputNames[static_cast<std::size_t>(port)];
}

Node* Node::getInput(int port) const {
    if (port < 0 || port >= inputCount) return nullptr;
    return inputs[static_cast<std::size_t>(port)];
}

bool Node::removeConsumer(const Node* node) {
    return std::erase(consumers, node) > 0;
}
