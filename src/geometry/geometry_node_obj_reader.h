// Loads an OBJ file, one drawable object for each object in it, moved as a whole. The file is read
// again when its name or one of the flags changes, within process; in the load pass other threads
// have read it ahead. Type name "ObjReader". Main thread, with the OpenGL context.
#pragma once

#include <cstdint>
#include <future>
#include <memory>
#include <string>

#include "core/geometry_node.h"
#include "geometry/read_obj_file.h"

class GeometryNode_ObjReader : public GeometryNode {
  public:
    GeometryNode_ObjReader(Engine* owner, const std::string& nodeId);

    bool canConnect(int port, const Node* source) const override;
    void prepareLoad(TaskPool& pool) override;
    bool process() override;

    std::string filename;
    std::string loadedFilename;
    std::uint32_t loadedFlags = 0;
    Vec3 translate;
    Vec3 rotate;  // degrees
    float scale;
    bool normalize;
    bool center;
    bool unwrap;

  private:
    // A file's meshes, and what it was asked for with.
    struct Model {
        std::string name;
        std::uint32_t flags = 0;
        std::unique_ptr<ObjObjects> objects;
        std::string fault;
    };
    static Model readModel(const std::string& name, std::uint32_t flags);
    std::uint32_t flags() const;
    bool needsLoad() const;
    Model takeModel();
    void rebuild();

    std::future<Model> ahead_;  // being read on another thread, for the load pass
};
