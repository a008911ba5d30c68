// What the node canvas needs from the screen around it. The canvas edits the graph through the
// engine's own operations; everything that is not the graph, and all that others keep about it, is
// asked for here. Main thread.
#pragma once

#include <string>
#include <string_view>

#include "core/ordered_map.h"
#include "gpu/math_types.h"

class Engine;

class NodeCanvasHost {
  public:
    virtual ~NodeCanvasHost() = default;

    virtual Engine& graph() = 0;
    virtual void openProperties(const std::string& id) = 0;
    // The node is deleted right after this call: close its panel, and drop what points into it.
    virtual void nodeGoes(const std::string& id) = 0;
    // Nodes or links were made or cut, or names, positions or folds changed; the boxes are up to
    // date already. The lists of outputs and of tracks are to be taken anew, and the project is
    // unsaved.
    virtual void graphChanged() = 0;
    // One line on what the gesture under the pointer does, or why one did nothing.
    virtual void setStatus(std::string_view text) = 0;

    // Where boxes lie, by node id, in pixels relative to the canvas. Ids without a node are kept.
    virtual OrderedMap<std::string, Vec2>& nodePositions() = 0;
    // True: the subtree behind the node is folded.
    virtual bool folded(const std::string& id) const = 0;
    virtual void setFolded(const std::string& id, bool fold) = 0;

    virtual std::string clipboardText() const = 0;
    virtual void setClipboardText(const std::string& text) = 0;
};
