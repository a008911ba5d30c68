// The engine's node scripts: the scan of their folder, and what comes of files that change later.
#include <algorithm>
#include <utility>

#include "core/engine.h"
#include "core/image_node_shader.h"
#include "core/project_reader.h"
#include "core/script_changes.h"
#include "core/script_faults.h"
#include "gpu/shader_program.h"
#include "platform/debug_output.h"
#include "platform/files.h"
#include "platform/folder_watch.h"

namespace {

constexpr std::string_view kUnreadable = "cannot be read, or is longer than 16 MB";

std::string ScriptPath(std::string_view name) {
    return ".\\Scripts\\" + std::string(name);
}

// False when the file cannot be read.
bool ReadScript(const std::string& path, NodeScript& script) {
    constexpr std::uint64_t kMaxScriptFile = 16u << 20;
    const auto bytes = ReadWholeFile(path, kMaxScriptFile);
    if (!bytes) return false;
    const std::string_view text(reinterpret_cast<const char*>(bytes->data()), bytes->size());
    return parseScript(text, path, script);
}

std::string CountOfNodes(std::size_t count) {
    return count == 1 ? "1 node" : std::to_string(count) + " nodes";
}

// A fault is not talked over by what is told after it.
void Tell(ScriptChanges& changes, const std::string& path, const std::string& text) {
    const std::string line = path + ": " + text;
    if (!changes.anyFault) changes.told = line;
    DebugOutput(line + "\n");
}

void TellFault(ScriptChanges& changes, const std::string& path, const std::string& text) {
    changes.told = path + ": " + text;
    changes.anyFault = true;
    ReportBadFile(path, text);
}

}  // namespace

void Engine::scanScripts(bool& folderOpened) {
    const auto names = ListFiles("Scripts");
    folderOpened = names.has_value();
    if (!names) return;
    for (const std::string& name : *names) {
        if (!IsScriptFileName(name)) continue;
        const std::string path = ScriptPath(name);
        NodeScript script;
        if (ReadScript(path, script)) {
            scripts.push_back(std::move(script));
        } else {
            ReportBadFile(path, kUnreadable);
        }
    }
}

// In the order of the scan, wherever they came from.
void Engine::listScripts() {
    std::ranges::stable_sort(scripts, {}, &NodeScript::fileName);
    listTypeNames();
}

void Engine::listTypeNames() {
    typeNames.clear();
    for (const NodeScript& script : scripts) typeNames.push_back(script.name);
    for (const NodeType& type : builtInTypes_) typeNames.emplace_back(type.name);
}

NodeScript* Engine::scriptOfFile(std::string_view path) {
    const auto it = std::find_if(scripts.begin(), scripts.end(),
                                 [&](const NodeScript& s) { return s.fileName == path; });
    return it == scripts.end() ? nullptr : &*it;
}

std::vector<ImageNode_Shader*> Engine::nodesOfFile(std::string_view path) const {
    std::vector<ImageNode_Shader*> result;
    for (const auto& [nodeId, node] : nodes) {
        auto* shaderNode = dynamic_cast<ImageNode_Shader*>(node.get());
        if (shaderNode != nullptr && shaderNode->script.fileName == path) {
            result.push_back(shaderNode);
        }
    }
    return result;
}

std::unique_ptr<Node> Engine::makeScriptNode(const std::string& nodeId, const NodeScript& script) {
    auto node = std::make_unique<ImageNode_Shader>(this, nodeId, script);
    const auto refused = refusedScripts_.find(script.fileName);
    if (refused != refusedScripts_.end()) node->refuseScript(refused->second);
    return node;
}

// Files that are there come first, so that one that was given another name is known as such.
ScriptChanges Engine::takeScriptFiles(const std::vector<FileChange>& files) {
    ScriptChanges changes;
    std::vector<NodeScript> waiting;
    for (const FileChange& file : files) {
        if (!file.gone) takeScriptFile(file.name, waiting, changes);
    }
    takeWaiting(std::move(waiting), changes);
    for (const FileChange& file : files) {
        if (file.gone) loseScript(ScriptPath(file.name), changes);
    }
    return changes;
}

// A file whose new name another one still has goes to those that wait.
void Engine::takeScriptFile(const std::string& name, std::vector<NodeScript>& waiting,
                            ScriptChanges& changes) {
    const std::string path = ScriptPath(name);
    if (scriptOfFile(path) == nullptr && !IsWrittenScriptName(name)) return;
    NodeScript script;
    if (!ReadScript(path, script)) return TellFault(changes, path, std::string(kUnreadable));
    if (script.name.empty()) return TellFault(changes, path, "cannot be taken up: it has no Name");
    if (scriptOfFile(path) == nullptr && !followMovedFile(script, changes)) {
        return addScript(std::move(script), changes);
    }
    NodeScript& known = *scriptOfFile(path);
    if (known == script && !anyBehind(path)) return;
    if (known.name != script.name && nameIsTaken(script)) {
        waiting.push_back(std::move(script));
    } else {
        renewScript(known, script, changes);
    }
}

// Is there a node, or will there be one, that does not run the last version of its script, though
// it runs another one?
bool Engine::anyBehind(const std::string& path) const {
    if (refusedScripts_.contains(path)) return true;
    const std::vector<ImageNode_Shader*> users = nodesOfFile(path);
    return std::any_of(users.begin(), users.end(), [](const ImageNode_Shader* node) {
        return node->hasError && node->program->linked;
    });
}

// Names may move between files, also in a circle: each file that waits may get the name of another
// one that waits, unless that one cannot leave it.
void Engine::takeWaiting(std::vector<NodeScript> waiting, ScriptChanges& changes) {
    const auto tellTaken = [&](const NodeScript& script) {
        TellFault(changes, script.fileName,
                  "cannot be taken up: there is another type \"" + script.name + "\"");
    };
    for (std::size_t i = 0; i < waiting.size();) {
        if (!nameIsTaken(waiting[i], waiting)) {
            ++i;
            continue;
        }
        tellTaken(waiting[i]);
        waiting.erase(waiting.begin() + static_cast<std::ptrdiff_t>(i));
        i = 0;  // its own name stays taken, which those before may want
    }
    while (!waiting.empty()) {
        const NodeScript script = std::move(waiting.front());
        waiting.erase(waiting.begin());
        NodeScript* known = scriptOfFile(script.fileName);
        if (known == nullptr) continue;  // gone meanwhile, and another file is in its place
        if (nameIsTaken(script, waiting)) {
            tellTaken(script);  // another one that waited has got it
        } else {
            renewScript(*known, script, changes);
        }
    }
}

// A file that has come in the place of another one, which has gone, with the same type: the other
// one's entry and nodes are this one's now. False when there is no such other one.
bool Engine::followMovedFile(const NodeScript& script, ScriptChanges& changes) {
    for (NodeScript& known : scripts) {
        if (known.name != script.name || FileExists(known.fileName)) continue;
        for (ImageNode_Shader* node : nodesOfFile(known.fileName)) {
            node->script.fileName = script.fileName;
        }
        if (auto refused = refusedScripts_.extract(known.fileName)) {
            refused.key() = script.fileName;
            refusedScripts_.insert(std::move(refused));
        }
        Tell(changes, known.fileName, "is now " + script.fileName);
        known.fileName = script.fileName;
        listScripts();
        return true;
    }
    return false;
}

// The names of `leaving` are as good as free: these files have others now.
bool Engine::nameIsTaken(const NodeScript& script, std::span<const NodeScript> leaving) const {
    const auto leaves = [&](const NodeScript& other) {
        return std::ranges::find(leaving, other.fileName, &NodeScript::fileName) != leaving.end();
    };
    return std::any_of(builtInTypes_.begin(), builtInTypes_.end(),
                       [&](const NodeType& type) { return script.name == type.name; }) ||
           std::any_of(scripts.begin(), scripts.end(), [&](const NodeScript& other) {
               return other.name == script.name && other.fileName != script.fileName &&
                      !leaves(other);
           });
}

void Engine::addScript(NodeScript script, ScriptChanges& changes) {
    const std::unique_ptr<ShaderProgram> program = ImageNode_Shader::MakeProgram(script);
    Tell(changes, script.fileName,
         (nameIsTaken(script) ? "another script of the type \"" : "new node type \"") +
             script.name + "\"");
    if (!program->linked) TellFault(changes, script.fileName, CompileFault(program->errorLog()));
    scripts.push_back(std::move(script));
    listScripts();
}

void Engine::renewScript(NodeScript& known, const NodeScript& script, ScriptChanges& changes) {
    std::unique_ptr<ShaderProgram> program = ImageNode_Shader::MakeProgram(script);
    if (!program->linked) return refuseScript(known, script, program->errorLog(), changes);
    refusedScripts_.erase(script.fileName);
    known = script;
    listTypeNames();
    const std::vector<ImageNode_Shader*> users = nodesOfFile(script.fileName);
    const bool mended = std::any_of(users.begin(), users.end(),
                                    [](const ImageNode_Shader* node) { return node->hasError; });
    std::size_t taken = 0;
    std::string driverLog;
    for (ImageNode_Shader* node : users) {
        if (program == nullptr) program = ImageNode_Shader::MakeProgram(script);
        nodeTypes[node->id] = script.name;
        if (program->linked) {
            takeScriptIn(*node, script, std::move(program), changes);
            ++taken;
        } else {
            // The driver may fail with any program. This node alone runs on as it is.
            driverLog = program->errorLog();
            node->refuseScript(driverLog);
            program = nullptr;
        }
    }
    if (!changes.otherParams.empty()) orderValues();
    if (taken < users.size()) TellFault(changes, script.fileName, CompileFault(driverLog));
    const std::string by = users.empty() ? "" : " by " + CountOfNodes(taken);
    Tell(changes, script.fileName, (mended ? "mended, and taken up" : "taken up") + by);
}

void Engine::takeScriptIn(ImageNode_Shader& node, const NodeScript& script,
                          std::unique_ptr<ShaderProgram> program, ScriptChanges& changes) {
    TakenScript taken = node.takeScript(script, std::move(program));
    changes.otherInputs = changes.otherInputs || taken.otherInputs;
    if (!taken.retired) return;
    retargetTracks(node, *taken.retired);
    changes.otherParams.push_back(&node);
    changes.retired.push_back(std::move(*taken.retired));
}

// Tracks go with their parameters. Those that drive nothing are looked at as a load would do it,
// and then for a parameter with a dot in its name, which a load does not find.
void Engine::retargetTracks(ImageNode_Shader& node, const RetiredParams& old) {
    const auto named = [&](const KeyframeTrack& track) -> float* {
        if (float* target = TargetByName(*this, track, node.id)) return target;
        for (const Value_Object* value : valuesOf(&node)) {
            for (const ValueChannel& channel : ChannelsOf(*value)) {
                if (track.name == node.id + "." + value->name + channel.suffix) return channel.data;
            }
        }
        return nullptr;
    };
    for (KeyframeTrack* track : allTracks()) {
        if (const auto successor = old.successorOf(track->target, node.script.params)) {
            track->target = *successor;
        }
        if (track->target == nullptr && track->owner == &node) track->target = named(*track);
    }
    ++trackEdits_;
}

// A node that was given its values anew has them at the end; a load of the saved file would have
// them in the order of the nodes.
void Engine::orderValues() {
    for (const auto& [nodeId, node] : nodes) {
        auto* list = values.find(node.get());
        if (list == nullptr) continue;
        auto moved = std::move(*list);
        values.erase(node.get());
        values[node.get()] = std::move(moved);
    }
}

// While nodes run the version before, that one is kept also for nodes to come.
void Engine::refuseScript(NodeScript& known, const NodeScript& script, const std::string& driverLog,
                          ScriptChanges& changes) {
    TellFault(changes, script.fileName, CompileFault(driverLog));
    bool runs = false;
    for (ImageNode_Shader* node : nodesOfFile(script.fileName)) {
        node->refuseScript(driverLog);
        runs = runs || node->program->linked;
    }
    if (runs) {
        refusedScripts_[script.fileName] = driverLog;
    } else {
        refusedScripts_.erase(script.fileName);
        known = script;
        listTypeNames();
    }
}

void Engine::loseScript(const std::string& path, ScriptChanges& changes) {
    const NodeScript* known = scriptOfFile(path);
    if (known == nullptr) return;
    const std::vector<ImageNode_Shader*> users = nodesOfFile(path);
    const std::string whose =
        users.empty() ? "its type" : "its type and its " + CountOfNodes(users.size());
    const auto copy = std::find_if(scripts.begin(), scripts.end(), [&](const NodeScript& other) {
        return &other != known && other.name == known->name && FileExists(other.fileName);
    });
    if (copy == scripts.end()) {
        return Tell(changes, path,
                    "has gone; " + whose + (users.empty() ? " stays" : " stay") + " till the end");
    }
    Tell(changes, path,
         "has gone; " + whose + (users.empty() ? " goes" : " go") + " on with " + copy->fileName);
    handOver(path, *copy, changes);
}

// The nodes of a file that has gone are those of a copy now, and run its version of the script.
void Engine::handOver(const std::string& path, NodeScript& copy, ScriptChanges& changes) {
    const std::string heir = copy.fileName;
    const NodeScript theirs = copy;
    NodeScript ours = *scriptOfFile(path);
    ours.fileName = heir;
    const std::vector<ImageNode_Shader*> users = nodesOfFile(path);
    const bool behind = anyBehind(path);
    for (ImageNode_Shader* node : users) node->script.fileName = heir;
    refusedScripts_.erase(path);
    std::erase_if(scripts, [&](const NodeScript& script) { return script.fileName == path; });
    listTypeNames();
    const auto refused = refusedScripts_.find(heir);
    if (refused != refusedScripts_.end()) {
        for (ImageNode_Shader* node : users) node->refuseScript(refused->second);
    } else if (!users.empty() && (behind || ours != theirs)) {
        NodeScript& known = *scriptOfFile(heir);
        known = std::move(ours);  // what runs, for the case that the copy does not compile
        renewScript(known, theirs, changes);
    }
}
