// A node type made of text: a ".node" file declares ports, parameters and a fragment shader. The
// parser takes what it understands and never fails. No OpenGL; main thread.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// Kinds of script parameters, in the order of their numbers.
enum ShaderParamType : int {
    kParamNone = 0,
    kParamBool = 1,
    kParamFloat = 2,
    kParamInt = 3,
    kParamOption = 4,
    kParamDirection = 5,
    kParamPosition = 6,
    kParamColor = 7,
};

struct ShaderParam {
    int type = kParamNone;
    std::string label;  // the parameter's name and the uniform's
    float value = 0;    // live value of floats and ints
    float min = 0, max = 0, defaultValue = 0;
    bool animatable = false;
    float direction[2] = {0, 0};
    float position[2] = {0, 0};
    float color[4] = {0, 0, 0, 0};
    std::vector<std::string> options;
    std::int32_t optionValue = 0;  // default and live value
    bool flagValue = false, flagDefault = false;

    bool operator==(const ShaderParam&) const = default;
};

// The floats that hold a parameter's value; none for choices and switches.
std::span<float> FloatsOf(ShaderParam& param);
std::span<const float> FloatsOf(const ShaderParam& param);

struct NodeScript {
    std::vector<std::string> inputNames;  // by port
    std::vector<int> inputKinds;          // one for each Input line, in the order of the lines
    std::vector<ShaderParam> params;      // by number
    std::string fileName;                 // for messages
    std::string name;                     // the type name
    std::string category;
    std::string source;  // fragment shader text, at most kMaxScriptSource bytes
    int sourceLine = 0;  // of the file, counted from 1, where `source` begins; 0: of the library

    bool operator==(const NodeScript&) const = default;
};

constexpr std::size_t kMaxScriptSource = 20480;
constexpr int kMaxScriptInputs = 8;  // as many texture coordinates as the vertex stage gives
constexpr int kMaxScriptParams = 256;
constexpr int kMaxScriptOptions = 256;

// Is the file of this name in the folder Scripts a script? One that only has the ending somewhere
// in its name counts too.
bool IsScriptFileName(std::string_view name);
// Is it one that somebody writes, and not what a text editor leaves beside such a file: a copy, a
// lock, what is not saved yet?
bool IsWrittenScriptName(std::string_view name);

// Parses the text of a ".node" file. `fileName` is used in messages only. True always: what is not
// understood is passed over, and what had to be cut or refused is told in one line.
bool parseScript(std::string_view text, std::string_view fileName, NodeScript& script);
