// How values and widgets reach the animation. The engine implements it. Main thread.
#pragma once

#include <string>

class Value_Keyframe_Handler {
  public:
    virtual ~Value_Keyframe_Handler() = default;

    // Makes the tracks of a value, each with one key at the present time. False when there is no
    // such node or value, or its kind cannot be animated.
    virtual bool addAnimation(const std::string& nodeId, const std::string& valueName) = 0;
    // Removes all tracks of a value.
    virtual bool removeAnimation(const std::string& nodeId, const std::string& valueName) = 0;
    // Adds or overwrites one key for each track of a value, at the present time.
    virtual bool setKeyframe(const std::string& nodeId, const std::string& valueName) = 0;
    virtual bool isAnimated(const std::string& nodeId, const std::string& valueName) const = 0;
};
