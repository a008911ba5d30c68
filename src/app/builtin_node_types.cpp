#include "app/builtin_node_types.h"

#include "core/image_node_sequence.h"
#include "core/image_node_time_switch.h"
#include "core/transform3d_node_time_switch.h"
#include "editor/ui_viewer_node.h"
#include "image/image_node_compose.h"
#include "image/image_node_reader.h"
#include "image/image_node_transform2d.h"

namespace {

template <typename NodeClass>
std::unique_ptr<Node> Make(Engine& engine, const std::string& id) {
    return std::make_unique<NodeClass>(&engine, id);
}

std::unique_ptr<Node> MakeViewer(Engine& engine, const std::string& id) {
    return std::make_unique<UI_ViewerNode>(&engine, id, engine.viewerTarget);
}

}  // namespace

std::vector<NodeType> BuiltInNodeTypes() {
    return {
        {"Viewer", MakeViewer},
        {"Reader", Make<ImageNode_Reader>},
        {"Transform2D", Make<ImageNode_Transform2D>},
        {"Time Switch Image", Make<ImageNode_TimeSwitch>},
        {"Time Switch Camera", Make<Transform3DNode_TimeSwitch>},
        {"Sequencer", Make<ImageNode_Sequence>},
        {"Compose", Make<ImageNode_Compose>},
    };
}
