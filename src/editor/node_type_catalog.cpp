#include "editor/node_type_catalog.h"

#include <algorithm>
#include <memory>
#include <set>

#include "core/engine.h"
#include "core/image_node.h"
#include "editor/graph_edit.h"

namespace {

// Stands for any image node as a source, and for one of a script, without building its shader.
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

NodeTypeCatalog::NodeTypeCatalog(Engine& graph) : engine_(graph) {}

NodeTypeCatalog::~NodeTypeCatalog() = default;

std::vector<OfferedType> NodeTypeCatalog::allTypes() const {
    std::vector<OfferedType> result;
    std::set<std::string> seen;
    for (const std::string& name : engine_.typeNames) {
        if (seen.insert(name).second) result.push_back({name, CategoryOf(engine_, name)});
    }
    return result;
}

const Node* NodeTypeCatalog::nodeOfGraph(const std::string& typeName) const {
    for (const auto& [id, type] : engine_.nodeTypes) {
        if (type != typeName) continue;
        if (const Node* node = engine_.findNode(id)) return node;
    }
    return nullptr;
}

// Null when it cannot be made. The id is the type's name.
const Node* NodeTypeCatalog::scratchNode(const std::string& typeName) {
    if (!scratch_) scratch_ = std::make_unique<Engine>(engine_.builtInTypes(), nullptr);
    if (scratch_->findNode(typeName) == nullptr) scratch_->createNode(typeName, typeName);
    return scratch_->findNode(typeName);
}

bool NodeTypeCatalog::scriptFits(const NodeScript& script, const OpenLink& link) const {
    AnyImage probe(engine_);
    probe.setInputCount(static_cast<int>(script.inputNames.size()));
    return Fits(probe, link);
}

bool NodeTypeCatalog::takesSource(const NodeType& type, const Node& source) {
    // A picture's node compiles its shaders when it is made: to try them all takes half a second.
    const int family = source.getType();
    const bool known = type.make.takes != NodeFactory::kUnknownInputs;
    if (known && family >= kOutputNode && family <= kTransform3DNode) {
        return (type.make.takes >> family & 1) != 0;
    }
    const OpenLink link = {&source, nullptr, 0};
    if (const Node* node = nodeOfGraph(type.name)) return Fits(*node, link);
    if (type.make.family != kImageNode) {
        const Node* node = scratchNode(type.name);
        return node != nullptr && Fits(*node, link);
    }
    const auto key = std::make_pair(std::string(type.name), source.getType());
    auto answer = imageAnswers_.find(key);
    if (answer == imageAnswers_.end()) {
        const Node* node = scratchNode(type.name);
        answer = imageAnswers_.emplace(key, node != nullptr && Fits(*node, link)).first;
        scratch_->deleteNode(type.name);
    }
    return answer->second;
}

bool NodeTypeCatalog::fits(const std::string& typeName, const OpenLink& link) {
    const NodeType* type = BuiltIn(engine_, typeName);
    if (type == nullptr) {
        const NodeScript* script = ScriptOf(engine_, typeName);
        return script != nullptr && scriptFits(*script, link);
    }
    if (link.source != nullptr) return takesSource(*type, *link.source);
    if (type->make.family == kImageNode) return Fits(AnyImage(engine_), link);
    const Node* node = scratchNode(typeName);
    return node != nullptr && Fits(*node, link);
}

std::vector<OfferedType> NodeTypeCatalog::fittingTypes(const OpenLink& link) {
    if (link.source == nullptr && link.target == nullptr) return allTypes();
    std::vector<OfferedType> result;
    for (OfferedType& type : allTypes()) {
        if (fits(type.name, link)) result.push_back(std::move(type));
    }
    return result;
}
