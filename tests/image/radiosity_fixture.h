// A graph with the radiosity renderer and a scene for it, which the tests also see as rays in
// double precision.
#pragma once

#include <cmath>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/geometry_node.h"
#include "core/transform3d_node.h"
#include "image/image_node_radiosity_renderer.h"
#include "support/graph_fixture.h"
#include "support/scene_meshes.h"

// Offers the objects that it was given.
class MeshNode : public GeometryNode {
  public:
    using GeometryNode::GeometryNode;
    bool canConnect(int, const Node*) const override { return false; }
    bool process() override { return true; }
};

class CameraNode : public Transform3DNode {
  public:
    using Transform3DNode::Transform3DNode;
    bool canConnect(int, const Node*) const override { return false; }
    bool process() override { return true; }
};

class RadiosityTest : public GraphTest {
  protected:
    using Renderer = ImageNode_RadiosityRenderer;
    using Material = std::shared_ptr<MaterialData>;

    RadiosityTest() { link(geometry, node, Renderer::kGeometryPort); }

    static Material surface(float diffuse, int blend = MaterialData::kNormal) {
        auto material = std::make_shared<MaterialData>();
        material->diffuse = diffuse;
        material->blend = blend;
        return material;
    }

    static Mat4 placed(const Vec3& translate, const Vec3& rotateDegrees = {0, 0, 0},
                       float scale = 1) {
        Mat4 matrix;
        Mat4ComposeTRS(matrix, translate, rotateDegrees, scale);
        return matrix;
    }

    GeometryObject& addObject(const MeshVertices& mesh, const Material& material,
                              const Mat4& transform) {
        GeometryObject object;
        CreateMeshBuffers(object, mesh);
        object.material = material;
        object.transform = transform;
        geometry.AppendObject(object);
        meshes.push_back(mesh);
        return geometry.objects.back();
    }

    CameraNode& addCamera(const Vec3& eye, const Vec3& target) {
        auto& camera = add<CameraNode>("camera");
        Mat4LookAt(camera.matrix, eye, target, {0, 1, 0});
        link(camera, node, Renderer::kCameraPort);
        cameraMatrix = camera.matrix;
        return camera;
    }

    // A picture of one colour.
    static std::shared_ptr<GL_Image> plain(const Vec4& colour) {
        return ReferencePicture(2, 2, [&](int, int) { return colour; }).upload();
    }

    // A floor, two boxes, one of them a lamp, and a sphere, in front of a plain background.
    void buildRoom() {
        addCamera({0.6f, 1.6f, 4.5f}, {0, 0.3f, 0});
        addObject(SquareMesh(), surface(0.75f), placed({0, -0.6f, 0}, {-90, 0, 0}, 3));
        addObject(BoxMesh(), surface(0.5f), placed({-1.1f, 0, -0.2f}, {0, 30, 0}, 0.6f));
        const Material lamp = surface(0.25f);
        lamp->illumination = 2;
        lamp->illuminationImage = plain({1, 0.5f, 0.25f, 1});
        addObject(BoxMesh(), lamp, placed({1.3f, -0.2f, 0.3f}, {0, -20, 10}, 0.35f));
        addObject(SphereMesh(24, 12), surface(0.5f), placed({0.2f, 0, 0.2f}, {0, 0, 0}, 0.6f));
        for (const GeometryObject& object : geometry.objects) {
            if (object.material->diffuseImage == nullptr) {
                object.material->diffuseImage = plain({1, 0.75f, 0.5f, 1});
            }
        }
    }

    SceneTracer tracer() const {
        std::vector<TracedObject> traced;
        for (std::size_t i = 0; i < meshes.size(); ++i) {
            Mat4 model;
            Mat4Multiply(geometry.transform, model, geometry.objects[i].transform);
            traced.push_back({meshes[i], model});
        }
        const double t = std::tan(static_cast<double>(node.fovDegrees) * 3.14159 / 360);
        return {std::move(traced), cameraMatrix, t, 1.77777};
    }

    // A place of the frame, in pixels from the bottom left, as the tracer counts it.
    static double acrossOf(double x) { return (x + 0.5) / kFrameWidth * 2 - 1; }
    static double upOf(double y) { return (y + 0.5) / kFrameHeight * 2 - 1; }

    // What a target holds, for sampling in double precision.
    static ReferencePicture picture(const GL_FrameBuffer& target, int attachment = 0) {
        const std::vector<float> rgba = ReadTarget(target, attachment);
        return {target.width, target.height, [&](int x, int y) -> Vec4 {
                    const float* texel = &rgba[static_cast<std::size_t>(y * target.width + x) * 4];
                    return {texel[0], texel[1], texel[2], texel[3]};
                }};
    }
    ReferencePicture prepared(int attachment) const {
        return picture(*node.prepareBuffer, attachment);
    }

    // One texel of the geometry targets.
    Vec4 preparedAt(int x, int y, int attachment = Renderer::kColour) const {
        return texelOf(*node.prepareBuffer, x, y, attachment);
    }
    static Vec4 texelOf(const GL_FrameBuffer& target, int x, int y, int attachment = 0) {
        Vec4 texel;
        glBindFramebuffer(GL_READ_FRAMEBUFFER, target.framebuffer);
        glReadBuffer(GL_COLOR_ATTACHMENT0 + static_cast<GLenum>(attachment));
        glFinish();  // Mesa's software renderer does not wait for a clear that nothing followed
        glReadPixels(x, y, 1, 1, GL_RGBA, GL_FLOAT, &texel);
        glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
        return texel;
    }

    std::vector<MeshVertices> meshes;  // of the objects
    Mat4 cameraMatrix = placed({0, 0, -1.5f});
    MeshNode& geometry = add<MeshNode>("geometry");
    Renderer& node = add<Renderer>("render");
};
