// The parameters of a node as lines of text, in their order, such as
//   "Scale float 0 to 10, 2 decimals, 1, animatable"
// so that a test can state the whole table. Users link vorn_core.
#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "core/engine.h"

// The number in which a default and the member's present value are alike, else both.
inline std::string AtDefault(float defaultValue, float value) {
    std::ostringstream text;
    text << defaultValue;
    if (defaultValue != value) text << " but is " << value;
    return text.str();
}

inline std::string TextOf(const ValueBool& value) {
    return "bool " + AtDefault(value.defaultValue, *value.data);
}

inline std::string TextOf(const ValueInt& value) {
    std::string text = "choice";
    for (const std::string& option : value.options) text += " '" + option + "'";
    return text + ", " +
           AtDefault(static_cast<float>(value.defaultValue), static_cast<float>(*value.data));
}

inline std::string TextOf(const ValueFloat& value) {
    std::ostringstream text;
    text << "float " << value.min << " to " << value.max << ", " << value.decimals << " decimals, "
         << AtDefault(value.defaultValue, *value.data) << (value.animatable ? ", animatable" : "");
    return text.str();
}

inline std::string TextOf(const ValueVec4& value) {
    std::string text = "vec4";
    for (int i = 0; i < 4; ++i) text += " " + AtDefault(value.defaultValue[i], value.data[i]);
    return text;
}

inline std::string TextOf(const ValueString& value) {
    const bool changed = *value.data != value.defaultValue;
    return "text '" + value.defaultValue + "'" + (changed ? " but is '" + *value.data + "'" : "");
}

inline std::string ParameterLine(const Value_Object& value) {
    std::string text = "of another class";
    switch (value.getType()) {
        case kValueBool:
            text = TextOf(dynamic_cast<const ValueBool&>(value));
            break;
        case kValueInt:
            text = TextOf(dynamic_cast<const ValueInt&>(value));
            break;
        case kValueFloat:
            text = TextOf(dynamic_cast<const ValueFloat&>(value));
            break;
        case kValueVec4:
            text = TextOf(dynamic_cast<const ValueVec4&>(value));
            break;
        case kValueString:
            text = TextOf(dynamic_cast<const ValueString&>(value));
            break;
        default:
            break;
    }
    return value.name + " " + text;
}

// The member that a parameter of one float drives; null where there is no such parameter.
inline const float* FloatMember(const Engine& engine, const Node& node, const char* name) {
    const auto* value = dynamic_cast<const ValueFloat*>(engine.findValue(&node, name));
    return value == nullptr ? nullptr : value->data;
}

inline std::vector<std::string> ParameterTable(const Engine& engine, const Node& node) {
    std::vector<std::string> lines;
    for (const Value_Object* value : engine.valuesOf(&node)) lines.push_back(ParameterLine(*value));
    return lines;
}
