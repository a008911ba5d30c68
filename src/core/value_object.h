// Parameters of nodes: a value object is a named handle on a plain member of a node, with its range
// and default. The editor builds widgets from them, the project file stores them, and keyframe
// tracks write through the same address. The engine owns them. Main thread.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

class Value_Keyframe_Handler;

// Kinds of values; the numbers are part of the project file.
enum ValueType : int {
    kValueBool = 0,
    kValueInt = 1,
    kValueFloat = 2,
    kValueVec2 = 3,
    kValueVec4 = 4,
    kValueString = 5,
    kValueMultiInt = 6,
};

class Value_Object {
  public:
    Value_Object(std::string valueName, std::string ownerId)
        : name(std::move(valueName)), nodeId(std::move(ownerId)) {}
    virtual ~Value_Object() = default;
    Value_Object(const Value_Object&) = default;
    Value_Object& operator=(const Value_Object&) = default;
    virtual int getType() const = 0;

    Value_Keyframe_Handler* handler = nullptr;
    bool flag = false;   // a two-float value that is a direction, not a place; never saved
    std::string name;    // as the editor and the file show it
    std::string nodeId;  // the owner's id
};

class ValueBool : public Value_Object {
  public:
    using Value_Object::Value_Object;
    int getType() const override { return kValueBool; }
    bool* data = nullptr;
    bool defaultValue = false;
};

class ValueInt : public Value_Object {
  public:
    using Value_Object::Value_Object;
    int getType() const override { return kValueInt; }
    std::int32_t* data = nullptr;
    std::int32_t defaultValue = 0;
    std::vector<std::string> options;  // labels of the choices 0, 1, 2 ...
};

class ValueFloat : public Value_Object {
  public:
    using Value_Object::Value_Object;
    int getType() const override { return kValueFloat; }
    float* data = nullptr;
    float min = 0, max = 1;  // bounds of the editor's slider only
    bool animatable = true;
    float defaultValue = 0;
    std::int32_t decimals = 2;
};

class ValueVec2 : public Value_Object {
  public:
    using Value_Object::Value_Object;
    int getType() const override { return kValueVec2; }
    float* data = nullptr;  // two floats
    float defaultValue[2] = {0, 0};
    bool animatable = true;
};

class ValueVec4 : public Value_Object {
  public:
    using Value_Object::Value_Object;
    int getType() const override { return kValueVec4; }
    float* data = nullptr;  // four floats
    float defaultValue[4] = {0, 0, 0, 0};
};

class ValueString : public Value_Object {
  public:
    using Value_Object::Value_Object;
    int getType() const override { return kValueString; }
    std::string* data = nullptr;
    std::string defaultValue;
};

// A choice that lives only inside the editor; nodes never declare it and no file holds it.
class ValueMultiInt : public Value_Object {
  public:
    using Value_Object::Value_Object;
    int getType() const override { return kValueMultiInt; }
    std::int32_t value = 0;
    std::vector<std::string> options;
};

// A float of a value that a track can drive: the suffix that its track name carries, and its place.
struct ValueChannel {
    const char* suffix;
    float* data;
};
// The animatable floats of a value: one for a float, two for a Vec2, four for a Vec4, none else.
std::vector<ValueChannel> ChannelsOf(const Value_Object& value);
