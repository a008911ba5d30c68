#include "app/builtin_node_types.h"

#include <type_traits>

#include "core/image_node_sequence.h"
#include "core/image_node_time_switch.h"
#include "core/transform3d_node_time_switch.h"
#include "editor/ui_viewer_node.h"
#include "geometry/geometry_node_combine_geometry.h"
#include "geometry/geometry_node_falling_models.h"
#include "geometry/geometry_node_hand_line.h"
#include "geometry/geometry_node_kinect_model.h"
#include "geometry/geometry_node_obj_reader.h"
#include "geometry/geometry_node_particle_mesher.h"
#include "geometry/geometry_node_primitives.h"
#include "geometry/geometry_node_randomize_material.h"
#include "geometry/geometry_node_screen_effect_kinect.h"
#include "geometry/material_node.h"
#include "geometry/transform3d_node_orbit_camera.h"
#include "image/image_node_2d_parallax_renderer.h"
#include "image/image_node_compose.h"
#include "image/image_node_glow.h"
#include "image/image_node_holo_ball.h"
#include "image/image_node_motion_blur.h"
#include "image/image_node_radiosity_renderer.h"
#include "image/image_node_random_dots.h"
#include "image/image_node_reader.h"
#include "image/image_node_transform2d.h"

namespace {

template <typename NodeClass>
std::unique_ptr<Node> MakeNode(Engine& engine, const std::string& id) {
    return std::make_unique<NodeClass>(&engine, id);
}

template <typename NodeClass>
constexpr int FamilyOf() {
    if (std::is_base_of_v<OutputNode, NodeClass>) return kOutputNode;
    if (std::is_base_of_v<ImageNode, NodeClass>) return kImageNode;
    if (std::is_base_of_v<GeometryNode, NodeClass>) return kGeometryNode;
    if (std::is_base_of_v<Transform3DNode, NodeClass>) return kTransform3DNode;
    static_assert(std::is_base_of_v<Node, NodeClass>);
    return kMaterialNode;
}

template <typename NodeClass>
const NodeFactory Make = {MakeNode<NodeClass>, FamilyOf<NodeClass>()};

// What the inputs of nodes take that are slow to make just to ask them.
constexpr int kNothing = 0, kPictures = 1 << kImageNode;
constexpr int kCameras = 1 << kTransform3DNode, kShapes = 1 << kGeometryNode;

template <typename NodeClass>
NodeFactory MakeTaking(int families) {
    return {MakeNode<NodeClass>, FamilyOf<NodeClass>(), families};
}

std::unique_ptr<Node> MakeViewer(Engine& engine, const std::string& id) {
    return std::make_unique<UI_ViewerNode>(&engine, id, engine.viewerTarget);
}

}  // namespace

std::vector<NodeType> BuiltInNodeTypes() {
    return {
        {"Viewer", {MakeViewer, kOutputNode}},
        {"Reader", MakeTaking<ImageNode_Reader>(kNothing)},
        {"Transform2D", MakeTaking<ImageNode_Transform2D>(kPictures)},
        {"ObjReader", Make<GeometryNode_ObjReader>},
        {"OrbitCamera", Make<Transform3DNode_OrbitCamera>},
        {"Material", Make<MaterialNode>},
        {"3DRender_RAD", MakeTaking<ImageNode_RadiosityRenderer>(kShapes | kCameras | kPictures)},
        {"3DPrimitive", Make<GeometryNode_Primitives>},
        {"MotionBlur", MakeTaking<ImageNode_MotionBlur>(kPictures)},
        {"Kinect2Puppet", Make<GeometryNode_KinectModel>},
        {"LightScreenEffect", Make<GeometryNode_ScreenEffectKinect>},
        {"Time Switch Image", MakeTaking<ImageNode_TimeSwitch>(kPictures)},
        {"Time Switch Camera", Make<Transform3DNode_TimeSwitch>},
        {"Combine Geometry", Make<GeometryNode_CombineGeometry>},
        {"Random Dots", MakeTaking<ImageNode_RandomDots>(kNothing)},
        {"HandLine", Make<GeometryNode_HandLine>},
        {"FallingModel", Make<GeometryNode_FallingModels>},
        {"Randomize Material", Make<GeometryNode_RandomizeMaterial>},
        {"2D Parallax Engine", MakeTaking<ImageNode_2DParallaxRenderer>(kPictures)},
        {"Particle Mesher", Make<GeometryNode_ParticleMesher>},
        {"Glow", MakeTaking<ImageNode_Glow>(kPictures)},
        {"Sequencer", MakeTaking<ImageNode_Sequence>(kPictures)},
        {"Compose", MakeTaking<ImageNode_Compose>(kPictures)},
        {"HoloBall", MakeTaking<ImageNode_HoloBall>(kCameras)},
    };
}
