#include "core/node_script.h"

#include <algorithm>
#include <cstdlib>

#include "core/shader_library.h"
#include "platform/debug_output.h"

namespace {

constexpr std::size_t kMaxTokenLength = 255;
constexpr std::string_view kScriptEnding = ".node";

bool IsSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// Reads a script char by char; every reading ends at the end of the text.
class ScriptParser {
  public:
    ScriptParser(std::string_view text, NodeScript& script) : text_(text), script_(script) {}

    void run() {
        std::string token;
        while (readToken(token)) {
            if (token == "Type")
                readToken(token);
            else if (token == "Source")
                readSource();
            else if (token == "SourceLib")
                readLibrarySource();
            else if (token == "Name")
                readName();
            else if (token == "Input")
                readInput();
            else if (token == "Param")
                readParam();
        }
    }

    // The first thing that had to be cut or refused; empty when there was none.
    const std::string& fault() const { return fault_; }

  private:
    bool atEnd() const { return place_ >= text_.size(); }
    void note(std::string fault) {
        if (fault_.empty()) fault_ = std::move(fault);
    }

    // The next run of characters without white space, less one trailing comma.
    bool readToken(std::string& token) {
        token.clear();
        while (!atEnd() && IsSpace(text_[place_])) ++place_;
        if (atEnd()) return false;
        while (!atEnd() && !IsSpace(text_[place_]) && token.size() < kMaxTokenLength) {
            token += text_[place_++];
        }
        if (token.ends_with(',')) token.pop_back();
        return true;
    }

    std::string readQuoted() {
        std::string result;
        while (!atEnd() && text_[place_] == ' ') ++place_;
        if (atEnd() || text_[place_] != '"') return result;
        ++place_;
        while (!atEnd() && result.size() < kMaxTokenLength) {
            const char c = text_[place_++];
            if (c == '"') break;
            result += c;
        }
        if (!atEnd()) ++place_;  // the separator
        return result;
    }

    float readFloat() {
        std::string token;
        readToken(token);
        return static_cast<float>(std::atof(token.c_str()));
    }

    int readInt() {
        std::string token;
        readToken(token);
        const long long value = std::atoll(token.c_str());
        return static_cast<int>(std::clamp<long long>(value, INT32_MIN, INT32_MAX));
    }

    void readSource() {
        setSource(text_.substr(place_));
        const auto lineFeeds =
            std::count(text_.begin(), text_.begin() + static_cast<long>(place_), '\n');
        script_.sourceLine = static_cast<int>(lineFeeds) + 1;
        place_ = text_.size();
    }

    void setSource(std::string_view source) {
        if (source.size() > kMaxScriptSource) {
            note("the source is longer than 20480 bytes and was cut");
            source = source.substr(0, kMaxScriptSource);
        }
        script_.source = source;
    }

    void readLibrarySource() {
        std::string name;
        readToken(name);
        script_.source.clear();
        script_.sourceLine = 0;
        const auto it = shaderLibrary.find(name);
        if (it == shaderLibrary.end()) return note("no library shader \"" + name + "\"");
        setSource(it->second);
    }

    void readName() {
        script_.name = readQuoted();
        script_.category = readQuoted();
    }

    void readInput() {
        const int port = readInt();
        const std::string label = readQuoted();
        const std::string kind = readQuoted();
        if (port < 0 || port >= kMaxScriptInputs) {
            return note("input " + std::to_string(port) + " is outside 0 to 7");
        }
        const auto index = static_cast<std::size_t>(port);
        if (script_.inputNames.size() <= index) script_.inputNames.resize(index + 1);
        script_.inputNames[index] = label;
        if (script_.inputKinds.size() < static_cast<std::size_t>(kMaxScriptInputs)) {
            script_.inputKinds.push_back(kind == "rgba" ? 1 : 0);
        }
    }

    void readParam() {
        const int number = readInt();
        const std::string label = readQuoted();
        std::string type;
        readToken(type);
        ShaderParam param;
        param.label = label;
        readParamArguments(type, param);
        if (number < 0 || number >= kMaxScriptParams) {
            return note("parameter number " + std::to_string(number) + " is outside 0 to 255");
        }
        const auto index = static_cast<std::size_t>(number);
        if (script_.params.size() <= index) script_.params.resize(index + 1);
        script_.params[index] = std::move(param);
    }

    void readParamArguments(const std::string& type, ShaderParam& param) {
        if (type == "float")
            readRange(param, kParamFloat, true);
        else if (type == "floatEvolution")
            readRange(param, kParamFloat, false);
        else if (type == "int")
            readRange(param, kParamInt, true);
        else if (type == "option")
            readOptions(param);
        else if (type == "direction")
            readFloats(param, kParamDirection, param.direction, 2);
        else if (type == "position")
            readFloats(param, kParamPosition, param.position, 2);
        else if (type == "color")
            readFloats(param, kParamColor, param.color, 4);
    }

    void readRange(ShaderParam& param, ShaderParamType type, bool animatable) {
        param.type = type;
        param.min = readFloat();
        param.max = readFloat();
        param.defaultValue = readFloat();
        param.value = param.defaultValue;
        param.animatable = animatable;
    }

    void readFloats(ShaderParam& param, ShaderParamType type, float* values, int count) {
        param.type = type;
        for (int i = 0; i < count; ++i) values[i] = readFloat();
    }

    void readOptions(ShaderParam& param) {
        param.type = kParamOption;
        const int count = readInt();
        if (count > kMaxScriptOptions) note("a parameter has more than 256 options");
        for (int i = 0; i < std::min(count, kMaxScriptOptions) && !atEnd(); ++i) {
            param.options.push_back(readQuoted());
        }
        param.optionValue = readInt();
    }

    std::string_view text_;
    std::size_t place_ = 0;
    NodeScript& script_;
    std::string fault_;
};

}  // namespace

std::span<float> FloatsOf(ShaderParam& param) {
    switch (param.type) {
        case kParamFloat:
        case kParamInt:
            return {&param.value, 1};
        case kParamDirection:
            return param.direction;
        case kParamPosition:
            return param.position;
        case kParamColor:
            return param.color;
        default:
            return {};
    }
}

std::span<const float> FloatsOf(const ShaderParam& param) {
    return FloatsOf(const_cast<ShaderParam&>(param));
}

bool IsScriptFileName(std::string_view name) {
    return name.find(kScriptEnding) != std::string_view::npos;
}

bool IsWrittenScriptName(std::string_view name) {
    return name.ends_with(kScriptEnding) && !name.starts_with('.') && !name.starts_with('#');
}

bool parseScript(std::string_view text, std::string_view fileName, NodeScript& script) {
    script.fileName = fileName;
    ScriptParser parser(text, script);
    parser.run();
    if (!parser.fault().empty()) ReportBadFile(fileName, parser.fault());
    return true;
}
