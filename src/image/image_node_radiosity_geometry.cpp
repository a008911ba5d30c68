// The pass of the radiosity renderer that draws the meshes.
#include <GL/glew.h>

#include <cmath>

#include "core/engine.h"
#include "core/geometry_node.h"
#include "core/node_pass.h"
#include "core/transform3d_node.h"
#include "gpu/gl_framebuffer.h"
#include "gpu/shader_program.h"
#include "image/image_node_radiosity_renderer.h"

namespace {

const GeometryNode* GeometryInput(const Node& node, int port) {
    const Node* source = node.getInput(port);
    const bool fits = GeometryNode::isGeometrySource(source);
    return fits ? static_cast<const GeometryNode*>(source) : nullptr;
}

}  // namespace

Mat4 ImageNode_RadiosityRenderer::cameraMatrix() const {
    const Node* camera = getInput(kCameraPort);
    if (camera != nullptr && camera->getType() == kTransform3DNode) {
        return static_cast<const Transform3DNode*>(camera)->matrix;
    }
    Mat4 view;
    Mat4LookAt(view, {0, 0, 1.5f}, {0, 0, -1}, {0, 1, 0});
    return view;
}

// Near plane 0.1, far plane 10000. Angles without a picture (0, 180) give numbers without one.
Mat4 ImageNode_RadiosityRenderer::projectionMatrix() const {
    Mat4 projection;
    const float t = std::tan(fovDegrees * 3.14159f / 360);
    Mat4Perspective(projection, t, 1.77777f, -1.00002f, -0.200002f);
    return projection;
}

void ImageNode_RadiosityRenderer::prepare() {
    const NodePass pass(*this, "prepare");
    prepareBuffer->Bind();
    prepareBuffer->SelectDrawBuffers();
    prepareBuffer->SetViewport();
    clearPrepareBuffer();
    bindEnvironment();
    if (const GeometryNode* geometry = GeometryInput(*this, kGeometryPort)) {
        glEnable(GL_DEPTH_TEST);
        SweepState state{Sweep::Opaque, prepareLocations_, nullptr};
        sweepObjects(*geometry, state);
        SweepState additive{Sweep::Additive, additiveLocations_, state.lastMaterial};
        sweepObjects(*geometry, additive);
    }
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_BLEND);
    glDepthMask(GL_TRUE);
    ShaderProgram::Unuse();
    GL_FrameBuffer::Unbind();
}

// The background goes into all attachments: it has a normal, a place and a light as well.
void ImageNode_RadiosityRenderer::clearPrepareBuffer() const {
    glClearColor(background[0], background[1], background[2], background[3]);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glClearColor(0, 0, 0, 0);
}

// Without an environment there is black on its unit, and on the two of the materials until a
// material brings a picture: nothing that another node has left there may be seen.
void ImageNode_RadiosityRenderer::bindEnvironment() const {
    prepareBuffer->UnbindTextures(GL_TEXTURE0);
    const ImageNode* environment = imageInput(kEnvironmentPort);
    if (environment != nullptr && environment->images[0] != nullptr) {
        environment->images[0]->BindTexture(0, GL_TEXTURE2);
    }
}

void ImageNode_RadiosityRenderer::beginSweep(const SweepState& state) const {
    const bool additive = state.sweep == Sweep::Additive;
    (additive ? prepareAdditiveShader : prepareShader)->Use();
    const Mat4 camera = cameraMatrix();
    const Mat4 projection = projectionMatrix();
    glUniformMatrix4fv(state.locations.cameraMatrix, 1, GL_FALSE, camera.m);
    glUniformMatrix4fv(state.locations.projectionMatrix, 1, GL_FALSE, projection.m);
    if (!additive) {
        glDisable(GL_BLEND);
        glDepthMask(GL_TRUE);
        return;
    }
    // The program writes one output; the other attachments stay as they are.
    const GLenum colourOnly = GL_COLOR_ATTACHMENT0;
    glDrawBuffers(1, &colourOnly);
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ONE);
    glDepthMask(GL_FALSE);
}

void ImageNode_RadiosityRenderer::sweepObjects(const GeometryNode& geometry,
                                               SweepState& state) const {
    beginSweep(state);
    Mat4 modelMatrix;
    for (const GeometryObject& object : geometry.objects) {
        if (!chooseMaterial(geometry, object, state)) continue;
        if (object.vertexArray == 0 || object.vertexCount <= 0) continue;
        Mat4Multiply(geometry.transform, modelMatrix, object.transform);
        glUniformMatrix4fv(state.locations.modelMatrix, 1, GL_FALSE, modelMatrix.m);
        glBindVertexArray(object.vertexArray);
        glDrawArrays(GL_TRIANGLES, 0, object.vertexCount);
    }
    glBindVertexArray(0);
}

// Applies the object's material if it is not there yet. False: the object belongs to the other
// sweep, or to none. An object that finds its material applied is drawn whatever its blend mode,
// and the one after it applies its own anew. One without any takes the state as it stands.
bool ImageNode_RadiosityRenderer::chooseMaterial(const GeometryNode& geometry,
                                                 const GeometryObject& object, SweepState& state) {
    const MaterialData* material =
        object.material != nullptr ? object.material.get() : geometry.material.get();
    if (material == nullptr) return true;
    if (material == state.lastMaterial) {
        state.lastMaterial = nullptr;
        return true;
    }
    if (material->blend != static_cast<int>(state.sweep)) return false;
    applyMaterial(*material, state.locations);
    state.lastMaterial = material;
    return true;
}

// A link without a picture leaves the picture of the material before.
void ImageNode_RadiosityRenderer::applyMaterial(const MaterialData& material,
                                                const SurfaceLocations& locations) {
    if (material.diffuseImage != nullptr) material.diffuseImage->BindTexture(0, GL_TEXTURE0);
    if (material.illuminationImage != nullptr) {
        material.illuminationImage->BindTexture(0, GL_TEXTURE1);
    }
    glUniform1f(locations.diffuseIntensity, material.diffuse);
    glUniform1f(locations.illuminationIntensity, material.illumination);
    glUniform1f(locations.reflectionIntensity, material.reflection);
    glUniform1f(locations.reflectionFresnel, material.refFresnel);
    glUniform4fv(locations.illuminationColor, 1, material.illumColor);
}
