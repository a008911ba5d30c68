// Any text as a node script: no fault, no hang, and what comes of it stays within its limits.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "core/node_script.h"
#include "core/shader_library.h"
#include "platform/debug_output.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    buildShaderLibrary();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const DebugCapture debug;
    NodeScript script;
    const std::string_view text(reinterpret_cast<const char*>(bytes), size);
    const bool within = parseScript(text, "x.node", script) &&
                        script.source.size() <= kMaxScriptSource &&
                        script.inputNames.size() <= kMaxScriptInputs &&
                        script.inputKinds.size() <= kMaxScriptInputs &&
                        script.params.size() <= kMaxScriptParams && debug.messages().size() <= 1;
    if (!within) std::abort();
    for (const ShaderParam& param : script.params) {
        if (param.options.size() > kMaxScriptOptions || param.label.size() > 255) std::abort();
    }
    return 0;
}
