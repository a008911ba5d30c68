#include "core/engine.h"

#include <algorithm>
#include <utility>

#include "core/frame_profiler.h"
#include "platform/debug_output.h"
#include "platform/task_pool.h"
#include "platform/window.h"

Engine::Engine(std::vector<NodeType> builtInTypes, std::unique_ptr<SoundSystem> sound)
    : builtInTypes_(std::move(builtInTypes)), sound_(std::move(sound)) {}

Engine::~Engine() {
    clearScene();
}

bool Engine::init() {
    projectName = "demo";
    projectFolder = "c:\\temp\\K4409\\";
    musicFile = ".\\data\\";
    dataFolder = ".\\data\\";
    lengthText = "240";
    time = -1.0f;
    deltaTime = frameCost = 0.0f;
    renderEnabled = 1;

    bool folderOpened = false;
    scanScripts(folderOpened);
    listTypeNames();
    music = std::make_unique<MusicPlayer>(sound_.get());
    return folderOpened;
}

void Engine::update(float timeSeconds) {
    const std::uint64_t started = PerformanceCounter();
    if (music) {
        music->setFile(musicFile);
        music->update();
    }
    if (time >= 0.0f) deltaTime = timeSeconds - time;
    time = timeSeconds;
    rerunsLeft = kMostReruns;
    updateAnimation();
    for (auto& [nodeId, node] : nodes) {
        if (node) node->updated = false;
    }
    for (OutputNode* output : outputs) {
        output->pull();
        if (profiler != nullptr) profiler->beginNode(*output);
        output->present();
        if (profiler != nullptr) profiler->endNode(*output);
    }
    frameCost = static_cast<float>(static_cast<double>(PerformanceCounter() - started) /
                                   static_cast<double>(PerformanceFrequency()));
}

std::unique_ptr<Node> Engine::makeNode(const std::string& nodeId, const std::string& typeName) {
    const auto script = std::find_if(scripts.begin(), scripts.end(),
                                     [&](const NodeScript& s) { return s.name == typeName; });
    if (script != scripts.end()) {
        DebugOutput("Load Script from File: " + script->name + "\n");
    }
    // A built-in type goes before a script of its name.
    for (const NodeType& type : builtInTypes_) {
        if (typeName == type.name) return type.make(*this, nodeId);
    }
    if (script == scripts.end()) return nullptr;
    return makeScriptNode(nodeId, *script);
}

bool Engine::createNode(const std::string& givenId, const std::string& typeName) {
    const std::string nodeId = givenId;  // may be the text of a key that is erased here
    if (findNode(nodeId) != nullptr) return false;
    // An empty place under this id goes to the end, so that nodes, types and values keep one order,
    // which is the order that a load of the saved file gives.
    nodes.erase(nodeId);
    nodeTypes.erase(nodeId);
    nodes[nodeId];
    std::unique_ptr<Node> node = makeNode(nodeId, typeName);
    nodeTypes[nodeId] = typeName;
    return node != nullptr && addNode(nodeId, std::move(node));
}

bool Engine::addNode(const std::string& nodeId, std::unique_ptr<Node> node) {
    if (node == nullptr) return false;
    std::unique_ptr<Node>& place = nodes[nodeId];
    if (place) {
        values.erase(node.get());  // dies here, and its values with it
        return false;
    }
    place = std::move(node);
    nodeIds[place.get()] = nodeId;
    if (place->getType() == kOutputNode) {
        outputs.push_back(static_cast<OutputNode*>(place.get()));
    }
    return true;
}

Node* Engine::findNode(std::string_view nodeId) const {
    const std::unique_ptr<Node>* place = nodes.find(nodeId);
    return place == nullptr ? nullptr : place->get();
}

bool Engine::connect(const std::string& sourceId, const std::string& targetId, int port) {
    Node* source = findNode(sourceId);
    Node* target = findNode(targetId);
    if (source == nullptr || target == nullptr || target->inputCount < port) return false;
    if (!target->canConnect(port, source)) return false;
    if (port >= 0 && port < target->inputCount) {
        Node*& input = target->inputs[static_cast<std::size_t>(port)];
        if (input == nullptr) input = source;
    }
    source->consumers.push_back(target);
    target->listedBy_.push_back(source);
    return true;
}

bool Engine::disconnect(const std::string& targetId, int port) {
    Node* target = findNode(targetId);
    Node* source = target == nullptr ? nullptr : target->getInput(port);
    if (source == nullptr) return false;
    target->inputs[static_cast<std::size_t>(port)] = nullptr;
    const auto drop = [](std::vector<Node*>& list, const Node* node) {
        const auto it = std::find(list.begin(), list.end(), node);
        if (it != list.end()) list.erase(it);
    };
    drop(source->consumers, target);
    drop(target->listedBy_, source);
    return true;
}

// Takes a node out of all links, so that nothing points at it any more.
void Engine::unlink(Node& node) {
    for (Node* consumer : node.consumers) {
        std::replace(consumer->inputs.begin(), consumer->inputs.end(), &node,
                     static_cast<Node*>(nullptr));
        std::erase(consumer->listedBy_, &node);
    }
    for (Node* source : node.listedBy_) {
        if (source != &node) source->removeConsumer(&node);
    }
}

bool Engine::deleteNode(const std::string& givenId) {
    const std::string nodeId = givenId;  // may be the node's own text, which dies here
    Node* node = findNode(nodeId);
    if (node == nullptr) return false;
    unlink(*node);
    if (const auto output = std::find(outputs.begin(), outputs.end(), node);
        output != outputs.end()) {
        outputs.erase(output);
    }
    if (auto* list = tracks.find(nodeId)) {
        list->clear();
        ++trackEdits_;
    }
    if (const std::string* type = nodeTypes.find(nodeId)) typeCounters.erase(*type);
    nodeTypes.erase(nodeId);
    values.erase(node);
    nodeIds.erase(node);
    nodes.erase(nodeId);
    return true;
}

void Engine::clearScene() {
    std::vector<std::string> ids;
    for (const auto& [node, nodeId] : nodeIds) ids.push_back(nodeId);
    for (const std::string& nodeId : ids) deleteNode(nodeId);
    nodes.clear();
    nodeTypes.clear();
    values.clear();
    outputs.clear();
    typeCounters.clear();
    nodeIds.clear();
    tracks.clear();
    ++trackEdits_;
    deltaTime = 0.0f;
    time = 0.0f;
}

// Files are decoded on all cores a few nodes ahead of the walk, so that neither time nor memory is
// wasted on a project of many pictures.
void Engine::refreshNodes() {
    constexpr std::size_t kNodesAhead = 32;
    TaskPool pool;
    renderEnabled = 0;
    loadSteps_ = loadStepsDone_ = 0;
    for (auto& [nodeId, node] : nodes) {
        if (node) loadSteps_ += node->countLoadSteps();
    }
    auto ahead = nodes.begin();
    std::size_t prepared = 0, done = 0;
    for (auto& [nodeId, node] : nodes) {
        for (; ahead != nodes.end() && prepared < done + kNodesAhead; ++ahead, ++prepared) {
            if (ahead->second) ahead->second->prepareLoad(pool);
        }
        if (node) {
            node->process();
            loadStepDone();
        }
        ++done;
    }
    loadSteps_ = loadStepsDone_ = 0;
    renderEnabled = 1;
}

void Engine::loadStepDone() {
    if (loadStepsDone_ >= loadSteps_) return;
    ++loadStepsDone_;
    if (showLoadProgress == nullptr) return;
    showLoadProgress(static_cast<double>(loadStepsDone_) / static_cast<double>(loadSteps_));
}
