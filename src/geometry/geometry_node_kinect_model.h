// Plays a recorded skeleton and poses a jointed model with it. Type name "Kinect2Puppet". How a
// model is built is told in puppet_pose.h. Main thread, with the OpenGL context.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "core/geometry_node.h"
#include "geometry/puppet_pose.h"
#include "geometry/read_obj_file.h"
#include "geometry/skeleton_capture.h"

class GeometryNode_KinectModel : public GeometryNode {
  public:
    GeometryNode_KinectModel(Engine* owner, const std::string& nodeId);

    bool canConnect(int port, const Node* source) const override;
    bool process() override;

    // Poses limbs as this puppet stands when the demo's clock shows a time. Without a capture they
    // stay as they are.
    void pose(float demoTimeSeconds, std::span<PuppetLimb> limbsToPose) const;
    // Second on the capture's clock at which the puppet starts.
    float startSeconds() const;
    // The matrix of the parameters; what follows the puppet takes it too.
    Mat4 placement() const;

    std::string kinectFile, modelFile;
    float timeOffset, playerSpeed;
    Vec3 translate, rotate;  // rotation in degrees
    float scale;
    std::string smoothing, startTime;
    PuppetShape shape;

    std::vector<PuppetLimb> limbs;
    ObjObjects lineModel;  // a second model that is read along with the first; nothing draws it
    // Another number after every load of a capture or model, in any puppet of the program, so that
    // it also tells a new puppet from one that was deleted.
    std::uint64_t loadId;

  private:
    void loadCapture();
    void loadModel();

    std::string loadedKinectFile_, loadedStartTime_, loadedSmoothing_, loadedModelFile_;
    std::vector<CaptureFrame> frames_;
};
