// The owner of the graph: nodes by id, their types, values, keyframe tracks, the music, and the run
// of one frame. It reads no clock: the time of each frame is given to it. Depends on a table of
// node types that is put together above it. Main thread, with the OpenGL context.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/animation_player.h"
#include "core/keyframe_track.h"
#include "core/music_player.h"
#include "core/node.h"
#include "core/node_script.h"
#include "core/ordered_map.h"
#include "core/value_keyframe_handler.h"
#include "core/value_object.h"

class DelayedFlush;
class Engine;
class FrameProfiler;
class GL_FrameBuffer;
class ImageNode_Shader;
class ShaderProgram;
struct FileChange;
struct RetiredParams;
struct ScriptChanges;

// How to make a node of a type, its family (a NodeFamily), and the families that its inputs take,
// a bit each, where these are known beforehand.
struct NodeFactory {
    using Function = std::unique_ptr<Node> (*)(Engine& engine, const std::string& id);
    static constexpr int kUnknownFamily = -1, kUnknownInputs = -1;

    NodeFactory(Function makeNode, int nodeFamily = kUnknownFamily,
                int takenFamilies = kUnknownInputs)
        : make(makeNode), family(nodeFamily), takes(takenFamilies) {}
    std::unique_ptr<Node> operator()(Engine& engine, const std::string& id) const {
        return make(engine, id);
    }

    Function make;
    int family;
    int takes;  // 1 << NodeFamily of each
};

// A built-in node type: the name in menus and files, and how to make one.
struct NodeType {
    const char* name;
    NodeFactory make;
};

class Engine : public Value_Keyframe_Handler {
  public:
    // `builtInTypes` in the order in which they are offered. `sound` may be null: silence.
    Engine(std::vector<NodeType> builtInTypes, std::unique_ptr<SoundSystem> sound);
    ~Engine() override;
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    // Default strings, the scan of the folder Scripts, the list of types. True when the folder
    // could be opened.
    bool init();
    const std::vector<NodeType>& builtInTypes() const { return builtInTypes_; }
    // Takes up files of the folder Scripts that were changed, made or deleted while the program
    // runs; between frames. Nodes of a changed script get the new shader and keep values, keys and
    // links by name. Where the shader does not compile, they keep the version that runs and have an
    // error until it is mended. The nodes of a deleted file go to another one of its type; where
    // there is none they stay as they are, and the type stays on offer. Each file is told of in one
    // line.
    ScriptChanges takeScriptFiles(const std::vector<FileChange>& files);
    // One frame: music, animation, then every output in order, each with what it pulls.
    void update(float timeSeconds);

    // --- the graph
    bool createNode(const std::string& givenId, const std::string& typeName);
    bool addNode(const std::string& nodeId, std::unique_ptr<Node> node);
    bool deleteNode(const std::string& givenId);
    // Links a source to a port that is free; a taken port keeps its source. True when the target
    // may take such a source there.
    bool connect(const std::string& sourceId, const std::string& targetId, int port);
    // Empties a port; false when there was nothing on it.
    bool disconnect(const std::string& targetId, int port);
    Node* findNode(std::string_view nodeId) const;
    // The value of a node by name, the first of that name; null when there is none.
    Value_Object* findValue(const Node* node, std::string_view valueName) const;
    std::vector<Value_Object*> valuesOf(const Node* node) const;

    // --- declaration of parameters, called from node constructors: the default is written into the
    // member, and the value object is appended to the node's list. Always true.
    bool declareString(Node* node, const char* name, std::string& member, std::string defaultValue);
    bool declareBool(Node* node, const char* name, bool& member, bool defaultValue);
    bool declareFloat(Node* node, const std::string& name, float& member, float min, float max,
                      int decimals, float defaultValue, bool animatable);
    bool declareVec2(Node* node, const char* name, float (&member)[2], const float (&defaults)[2],
                     bool animatable);
    bool declareVec4(Node* node, const char* name, float (&member)[4], const float (&defaults)[4]);
    bool declareInt(Node* node, const char* name, std::int32_t& member, std::int32_t defaultValue,
                    std::vector<std::string> options);
    // Three animatable floats named with ".X", ".Y" and ".Z" on consecutive floats. They always
    // show two decimals; `decimals` is not read.
    bool declareVec3(Node* node, const char* name, float* member, float min, float max,
                     int decimals, const float (&defaults)[3]);

    // --- animation
    bool addAnimation(const std::string& nodeId, const std::string& valueName) override;
    bool removeAnimation(const std::string& nodeId, const std::string& valueName) override;
    bool setKeyframe(const std::string& nodeId, const std::string& valueName) override;
    bool isAnimated(const std::string& nodeId, const std::string& valueName) const override;
    void updateAnimation();
    std::vector<KeyframeTrack*> allTracks() const;
    // Makes a track without keys and files it under an id. For the project reader.
    KeyframeTrack& appendTrack(const std::string& listId, std::unique_ptr<KeyframeTrack> track);
    std::unique_ptr<KeyframeTrack> makeTrack();

    // --- projects
    // `later` (may be null) flushes the file to the disk.
    bool save(const std::string& path, DelayedFlush* later = nullptr);
    // What save would write, with the values of time 0.
    std::vector<std::uint8_t> sceneBytes();
    bool load(const std::string& path, bool clearSceneFirst, const std::string& idPrefix);
    void clearScene();
    // Runs process once on every node, with the GPU off, so that nodes take in new parameters.
    void refreshNodes();
    // A node has done one of the steps of a load that it counted. Outside of a load: nothing.
    void loadStepDone();
    // Called while nodes take in their files, with the part that is done, 0 to 1. May be empty.
    std::function<void(double part)> showLoadProgress;

    float time = -1.0f;                 // seconds
    float deltaTime = 0.0f;             // seconds since the frame before
    float frameCost = 0.0f;             // seconds that the last update took
    int renderEnabled = 1;              // 0 while nodes only take in parameters
    FrameProfiler* profiler = nullptr;  // not owned; null: nothing is measured
    int pullDepth = 0;                  // nodes that are running now, each pulled by the one before
    // How often nodes may still run their inputs another time in this frame. Nodes that do so, one
    // behind the other, multiply; this keeps a frame from never ending.
    static constexpr int kMostReruns = 65536;
    int rerunsLeft = kMostReruns;

    OrderedMap<std::string, std::int32_t> typeCounters;
    OrderedMap<std::string, std::unique_ptr<Node>> nodes;  // a place may be empty
    OrderedMap<const Node*, std::string> nodeIds;
    OrderedMap<std::string, std::string> nodeTypes;
    std::vector<OutputNode*> outputs;
    std::vector<std::string> typeNames;
    std::vector<NodeScript> scripts;
    OrderedMap<const Node*, std::vector<std::unique_ptr<Value_Object>>> values;
    OrderedMap<std::string, std::vector<std::unique_ptr<KeyframeTrack>>> tracks;

    std::string projectName;
    std::string projectFolder;
    std::string musicFile;
    std::string dataFolder;
    std::string lengthText;  // seconds as text
    GL_FrameBuffer* viewerTarget = nullptr;
    std::unique_ptr<MusicPlayer> music;

  private:
    // --- node scripts: engine_scripts.cpp
    void scanScripts(bool& folderOpened);
    void listScripts();
    void listTypeNames();
    NodeScript* scriptOfFile(std::string_view path);
    std::vector<ImageNode_Shader*> nodesOfFile(std::string_view path) const;
    void takeScriptFile(const std::string& name, std::vector<NodeScript>& waiting,
                        ScriptChanges& changes);
    bool anyBehind(const std::string& path) const;
    void takeWaiting(std::vector<NodeScript> waiting, ScriptChanges& changes);
    bool followMovedFile(const NodeScript& script, ScriptChanges& changes);
    bool nameIsTaken(const NodeScript& script, std::span<const NodeScript> leaving = {}) const;
    void addScript(NodeScript script, ScriptChanges& changes);
    void renewScript(NodeScript& known, const NodeScript& script, ScriptChanges& changes);
    void refuseScript(NodeScript& known, const NodeScript& script, const std::string& driverLog,
                      ScriptChanges& changes);
    void loseScript(const std::string& path, ScriptChanges& changes);
    void handOver(const std::string& path, NodeScript& copy, ScriptChanges& changes);
    void takeScriptIn(ImageNode_Shader& node, const NodeScript& script,
                      std::unique_ptr<ShaderProgram> program, ScriptChanges& changes);
    void retargetTracks(ImageNode_Shader& node, const RetiredParams& old);
    void orderValues();
    std::unique_ptr<Node> makeScriptNode(const std::string& nodeId, const NodeScript& script);
    std::unique_ptr<Node> makeNode(const std::string& nodeId, const std::string& typeName);
    template <typename V>
    V& declare(Node* node, std::string name);
    KeyframeTrack* findTrack(const std::string& nodeId, const std::string& trackName) const;
    void unlink(Node& node);

    std::vector<NodeType> builtInTypes_;
    std::unique_ptr<SoundSystem> sound_;
    AnimationPlayer player_;
    std::uint64_t trackEdits_ = 1;                   // grows with every change of tracks or keys
    std::size_t loadSteps_ = 0, loadStepsDone_ = 0;  // of a load; 0 of 0 outside of one
    std::uint64_t compiledEdits_ = 0;                // the state that player_ holds
    // By file: what the driver says of a version that came after the one in `scripts`, which runs.
    std::map<std::string, std::string, std::less<>> refusedScripts_;
};
