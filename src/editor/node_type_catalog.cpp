#include "editor/node_type_catalog.h"

#include <algorithm>
#include <memory>
#include <set>

#include "core/engine.h"
#include "core/image_node.h"
#include "editor/graph_edit.h"

namespace {

// Stands for a node of a script, which is an image node, without building its shader.
class AnyImage : public ImageNode {
  public:
    explicit AnyImage(Engine& owner) : ImageNode(&owner, "probe") {}
    bool canConnect(int, const Node* source) const override { return isImageSource(source); }
    bool process() override { return true; }
};

const char* FamilyName(int family) {
    switch (family) {
        case kOutputNode:
            return "Output";
        case kImageNode:
            return "Image";
        case kGeometryNode:
            return "Geometry";
        case kMaterialNode:
            return "Material";
        case kTransform3DNode:
            return "Camera";
        default:
            return "Other";
    }
}

const NodeType* BuiltIn(const Engine& engine, const std::string& typeName) {
    for (const NodeType& type : engine.builtInTypes()) {
        if (typeName == type.name) return &type;
    }
    return nullptr;
}

const NodeScript* ScriptOf(const Engine& engine, const std::string& typeName) {
    for (const NodeScript& script : engine.scripts) {
        if (script.name == typeName) return &script;
    }
    return nullptr;
}

std::string CategoryOf(const Engine& engine, const std::string& typeName) {
    // A built-in type goes before a script of its name.
    if (const NodeType* type = BuiltIn(engine, typeName)) return FamilyName(type->make.family);
    const NodeScript* script = ScriptOf(engine, typeName);
    return script == nullptr || script->category.empty() ? "Other" : script->category;
}

bool Fits(const Node& made, const OpenLink& link) {
    if (link.source != nullptr) {
        return FirstFittingPort(made, *link.source, Ports::All).has_value();
    }
    return link.target != nullptr && link.target->canConnect(link.port, &made);
}

}  // namespace

std::vector<OfferedType> NodeTypeCatalog::allTypes() const {
    std::vector<OfferedType> result;
    std::set<std::string> seen;
    for (const std::string& name : engine_.typeNames) {
        if (seen.insert(name).second) result.push_back({name, CategoryOf(engine_, name)});
    }
    return result;
}

std::string NodeTypeCatalog::typeNameOf(const Node& node) const {
    const std::string* type = engine_.nodeTypes.find(node.id);
    return type == nullptr ? std::string() : *type;
}

bool NodeTypeCatalog::scriptFits(const std::string& typeName, const OpenLink& link,
                                 bool& known) const {
    const NodeScript* script = ScriptOf(engine_, typeName);
    known = script != nullptr && BuiltIn(engine_, typeName) == nullptr;
    if (!known) return false;
    AnyImage probe(engine_);
    probe.setInputCount(static_cast<int>(script->inputNames.size()));
    return Fits(probe, link);
}

bool NodeTypeCatalog::fits(Engine& scratch, const std::string& typeName,
                           const OpenLink& link) const {
    bool isScript = false;
    const bool scriptAnswer = scriptFits(typeName, link, isScript);
    if (isScript) return scriptAnswer;
    scratch.createNode("probe", typeName);
    const Node* made = scratch.findNode("probe");
    const bool answer = made != nullptr && Fits(*made, link);
    scratch.deleteNode("probe");
    return answer;
}

std::vector<OfferedType> NodeTypeCatalog::fittingTypes(const OpenLink& link) {
    const Node* end = link.source != nullptr ? link.source : link.target;
    if (end == nullptr) return allTypes();
    const std::string endType = typeNameOf(*end);
    const int endPort = link.source != nullptr ? -1 : link.port;
    Engine scratch(engine_.builtInTypes(), nullptr);
    std::vector<OfferedType> result;
    for (OfferedType& type : allTypes()) {
        const auto key = std::make_tuple(type.name, endType, endPort);
        auto known = answers_.find(key);
        if (known == answers_.end()) {
            known = answers_.emplace(key, fits(scratch, type.name, link)).first;
        }
        if (known->second) result.push_back(std::move(type));
    }
    return result;
}
