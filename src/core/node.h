// The base of everything in the graph. A node has numbered inputs, each holding at most one other
// node, and computes its product in place: consumers read it from the node's fields after pulling
// the node up to date. Links are made and cut by the engine. Main thread.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

class Engine;
class TaskPool;

// Families of nodes; the numbers are answered by getType and compared by canConnect.
enum NodeFamily : int {
    kOutputNode = 0,
    kImageNode = 1,
    kGeometryNode = 2,
    kMaterialNode = 3,
    kTransform3DNode = 4,
};

class Node {
  public:
    Node(Engine* owner, std::string nodeId);
    virtual ~Node() = default;
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    virtual int getType() const = 0;
    // May this source feed this port? A null source may not.
    virtual bool canConnect(int port, const Node* source) const = 0;
    // Hooks that the engine never calls; nodes answer false unless they have something to say.
    virtual bool inputTypeName(int port, std::string& typeName) const;
    // Called once on every node before the load pass: how many times the next process is going to
    // call Engine::loadStepDone, and once more for itself.
    virtual std::size_t countLoadSteps() { return 1; }
    // Called before the load pass runs process: begins work on other threads that process is going
    // to wait for, such as the decoding of a file.
    virtual void prepareLoad(TaskPool&) {}
    // The node's own work for this frame, then its second step.
    virtual bool process() = 0;
    virtual bool postProcess() { return true; }
    // Brings the inputs and then the node up to date. Call it through pull.
    virtual bool update();

    // Runs update, but never enters a node that is already running: in a cycle the consumer sees
    // that node's product of the last time. Also gives up at a depth that no stack could hold.
    bool pull();
    // True while the node itself, or an input that it has pulled, runs.
    bool isRunning() const { return running_; }

    void setInputCount(int count);
    std::string getInputName(int port) const;
    Node* getInput(int port) const;
    void setError(bool failed) { hasError = failed; }
    bool removeConsumer(const Node* node);

    Engine* engine;
    int disabled = 0;  // not 0: the pull passes over this node as an input
    int inputCount = 0;
    std::string id;
    std::vector<Node*> consumers;  // nodes whose inputs hold this one, once for each link
    std::vector<Node*> inputs;     // null where a port is empty
    std::vector<std::string> inputNames;
    bool hasError = false;
    bool updated = false;  // has run in the present frame

  protected:
    // Pulls the input on a port if it needs it; an empty, disabled or updated one is a success.
    bool pullInput(Node* input);

  private:
    friend class Engine;
    bool running_ = false;
    std::vector<Node*> listedBy_;  // sources whose consumers name this node, once for each entry
};

// The end of a chain: presents its input.
class OutputNode : public Node {
  public:
    using Node::Node;
    int getType() const override { return kOutputNode; }
    // After update: hands the product on.
    virtual void present() = 0;
};
