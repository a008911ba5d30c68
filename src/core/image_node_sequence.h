// Shows one of ten inputs, each from its start time on; only the input on show is run. Main thread.
#pragma once

#include <array>
#include <string>

#include "core/image_node.h"

class ImageNode_Sequence : public ImageNode {
  public:
    static constexpr int kPorts = 10;
    static constexpr int kStartValues = 20;  // twenty are shown and saved, ten have an effect

    ImageNode_Sequence(Engine* owner, const std::string& nodeId);

    bool canConnect(int port, const Node* source) const override;
    bool update() override;
    bool process() override;

    std::array<std::string, kStartValues> startTexts;  // milliseconds
    // Seconds, as read when the node last ran: a changed time acts one frame late.
    std::array<float, kPorts> starts{};
};
