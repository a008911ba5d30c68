// What a script's node does when its script changes while the program runs.
#include <algorithm>
#include <span>
#include <utility>

#include "core/engine.h"
#include "core/image_node_shader.h"
#include "core/script_changes.h"
#include "core/script_faults.h"
#include "gpu/shader_program.h"

namespace {

// Do both hold the same kind of value, so that one can take over the other's?
bool HoldSameKind(const ShaderParam& a, const ShaderParam& b) {
    const std::size_t floats = FloatsOf(a).size();
    if (floats > 0) return floats == FloatsOf(b).size();
    return a.type == b.type && a.type != kParamNone;
}

// A choice stays with its text, so that it survives others that come before it.
void CarryOption(const ShaderParam& from, ShaderParam& to) {
    const auto chosen = static_cast<std::size_t>(from.optionValue);
    if (from.optionValue >= 0 && chosen < from.options.size()) {
        const auto same = std::find(to.options.begin(), to.options.end(), from.options[chosen]);
        if (same != to.options.end()) {
            to.optionValue = static_cast<std::int32_t>(same - to.options.begin());
            return;
        }
    }
    const bool offered = from.optionValue >= 0 && chosen < to.options.size();
    if (offered || from.options == to.options) to.optionValue = from.optionValue;
}

void CarryValue(const ShaderParam& from, ShaderParam& to) {
    std::ranges::copy(FloatsOf(from), FloatsOf(to).begin());
    if (to.type == kParamOption) CarryOption(from, to);
    if (to.type == kParamBool) to.flagValue = from.flagValue;
}

}  // namespace

std::optional<float*> RetiredParams::successorOf(const float* target,
                                                 std::vector<ShaderParam>& newParams) const {
    for (std::size_t place = 0; place < params.size(); ++place) {
        const std::span<const float> floats = FloatsOf(params[place]);
        for (std::size_t i = 0; i < floats.size(); ++i) {
            if (&floats[i] != target) continue;
            if (successors[place] < 0) return nullptr;
            return &FloatsOf(newParams[static_cast<std::size_t>(successors[place])])[i];
        }
    }
    return std::nullopt;
}

TakenScript ImageNode_Shader::takeScript(const NodeScript& changed,
                                         std::unique_ptr<ShaderProgram> newProgram) {
    std::vector<ShaderParam> before = std::move(script.params);
    script = changed;
    TakenScript taken;
    taken.retired = takeParams(std::move(before));
    taken.otherInputs = takeInputs();
    program = std::move(newProgram);
    findLocations();
    faults_.clear();
    setError(false);
    return taken;
}

// The same parameters stay where they are in memory, and all that points at them stays good.
std::optional<RetiredParams> ImageNode_Shader::takeParams(std::vector<ShaderParam> before) {
    if (script.params == declaredParams_) {
        script.params = std::move(before);
        return std::nullopt;
    }
    declaredParams_ = script.params;
    RetiredParams old;
    if (auto* values = engine->values.find(this)) old.values = std::move(*values);
    engine->values.erase(this);
    declareParams();
    old.params = std::move(before);
    old.successors = carryValues(old.params);
    return old;
}

// The successor of each of the parameters before: its index among the new ones, or -1.
std::vector<int> ImageNode_Shader::carryValues(const std::vector<ShaderParam>& before) {
    std::vector<int> successors(before.size(), -1);
    for (std::size_t index = 0; index < script.params.size(); ++index) {
        ShaderParam& param = script.params[index];
        const auto fits = [&](const ShaderParam& known) {
            return known.label == param.label && HoldSameKind(known, param);
        };
        std::size_t place = 0;
        while (place < before.size() && (successors[place] >= 0 || !fits(before[place]))) ++place;
        if (place < before.size()) {
            CarryValue(before[place], param);
            successors[place] = static_cast<int>(index);
            continue;
        }
        const auto gone = std::find_if(goneParams_.begin(), goneParams_.end(), fits);
        if (gone == goneParams_.end()) continue;
        CarryValue(*gone, param);
        goneParams_.erase(gone);
    }
    for (std::size_t place = 0; place < before.size(); ++place) {
        const ShaderParam& param = before[place];
        if (successors[place] >= 0 || param.type == kParamNone) continue;
        std::erase_if(goneParams_, [&](const ShaderParam& known) {
            return known.label == param.label && HoldSameKind(known, param);
        });
        goneParams_.push_back(param);
    }
    return successors;
}

bool ImageNode_Shader::takeInputs() {
    if (inputNames == script.inputNames) return false;
    const std::size_t count = script.inputNames.size();
    std::vector<Node*> links(count, nullptr);
    std::vector<bool> kept(inputs.size(), false), taken(count, false);
    for (std::size_t port = 0; port < count; ++port) {
        std::size_t before = 0;
        while (before < inputs.size() &&
               (kept[before] || inputNames[before] != script.inputNames[port])) {
            ++before;
        }
        if (before == inputs.size()) continue;
        links[port] = inputs[before];
        kept[before] = taken[port] = true;
    }
    for (std::size_t port = 0; port < inputs.size(); ++port) {
        if (kept[port] || inputs[port] == nullptr) continue;
        std::erase_if(goneLinks_,
                      [&](const GoneLink& link) { return link.inputName == inputNames[port]; });
        goneLinks_.push_back({inputNames[port], inputs[port]->id});
        engine->disconnect(id, static_cast<int>(port));
    }
    setInputCount(static_cast<int>(count));
    inputNames = script.inputNames;
    inputs = std::move(links);
    for (std::size_t port = 0; port < count; ++port) {
        if (taken[port]) continue;
        const auto gone =
            std::find_if(goneLinks_.begin(), goneLinks_.end(),
                         [&](const GoneLink& link) { return link.inputName == inputNames[port]; });
        if (gone == goneLinks_.end()) continue;
        engine->connect(gone->sourceId, id, static_cast<int>(port));
        goneLinks_.erase(gone);
    }
    return true;
}

void ImageNode_Shader::refuseScript(const std::string& driverLog) {
    faults_ = ScriptFaults(driverLog);
    setError(true);
}
