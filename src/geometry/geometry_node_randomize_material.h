// Hands on the objects of its input, each with one of a table of varied copies of one material, in
// turn. The colours drift with a phase. Type name "Randomize Material". Main thread.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "core/geometry_node.h"
#include "geometry/random_materials.h"

class GeometryNode_RandomizeMaterial : public GeometryNode {
  public:
    // "Count" is text that anybody may have written.
    static constexpr std::size_t kMaxMaterials = std::size_t{1} << 17;

    GeometryNode_RandomizeMaterial(Engine* owner, const std::string& nodeId);

    bool canConnect(int port, const Node* source) const override;
    bool process() override;

    // What the copies are made from; its `illumColor` is the parameter "Illum Color".
    MaterialData materialTemplate;
    // One for each of "Count"; while there are none, objects keep the material that they came with.
    std::vector<std::shared_ptr<MaterialData>> materials;

    std::string count;
    float illumination;
    float reflection;
    float fresnel;
    float illuminatedShare;  // "Illu%": the share of the copies that glow
    MaterialVariation variation;
    float randomSeed;

  private:
    void takeImages();
    void resizeTable();
    void fillTable();
    void vary(MaterialData& entry) const;
    void takeObjects(const GeometryNode& source);
};
