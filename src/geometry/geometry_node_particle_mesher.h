// Offers the smooth surface around charged points as one object, "Blob". The charges are fixed;
// the mesh is made in the first run, and again when the file name changes. Type name "Particle
// Mesher". Main thread, with the OpenGL context.
#pragma once

#include <string>

#include "core/geometry_node.h"

class GeometryNode_ParticleMesher : public GeometryNode {
  public:
    GeometryNode_ParticleMesher(Engine* owner, const std::string& nodeId);

    bool canConnect(int port, const Node* source) const override;
    bool process() override;

    std::string filename;  // no file is read: a new name is an order to rebuild
    std::string lastFilename;
    Vec3 translate;
    Vec3 rotate;  // degrees
    float scale;

  private:
    void rebuild();
    bool built_ = false;
};
