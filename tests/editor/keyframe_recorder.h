// A handler of keyframes that writes down what it is told.
#pragma once

#include <string>
#include <vector>

#include "core/value_keyframe_handler.h"

class KeyframeRecorder : public Value_Keyframe_Handler {
  public:
    bool addAnimation(const std::string& nodeId, const std::string& valueName) override {
        calls.push_back("add " + nodeId + "/" + valueName);
        return true;
    }
    bool removeAnimation(const std::string& nodeId, const std::string& valueName) override {
        calls.push_back("remove " + nodeId + "/" + valueName);
        return true;
    }
    bool setKeyframe(const std::string& nodeId, const std::string& valueName) override {
        calls.push_back("key " + nodeId + "/" + valueName);
        return true;
    }
    bool isAnimated(const std::string& nodeId, const std::string& valueName) const override {
        return animated == nodeId + "/" + valueName;
    }

    std::vector<std::string> calls;
    std::string animated;  // the one value that is
};
