// Dresses a puppet in lights: gives its objects 15 varied copies of one material in turn, and lets
// the object of the right hand glow by itself. Type name "LightScreenEffect". Main thread.
#pragma once

#include <array>
#include <memory>
#include <string>

#include "core/geometry_node.h"
#include "geometry/random_materials.h"

class GeometryNode_ScreenEffectKinect : public GeometryNode {
  public:
    GeometryNode_ScreenEffectKinect(Engine* owner, const std::string& nodeId);

    bool canConnect(int port, const Node* source) const override;
    bool process() override;

    static constexpr std::size_t count = 15;

    MaterialData materialTemplate;
    std::array<std::shared_ptr<MaterialData>, count> materials;  // never null
    std::shared_ptr<MaterialData> handMaterial;                  // never null

    float illumination, reflection, fresnel;
    float handlight;
    MaterialVariation variation;
    float randomSeed;

  private:
    void takeImages();
    void fillMaterials();
    void dress(const GeometryNode& source);
};
