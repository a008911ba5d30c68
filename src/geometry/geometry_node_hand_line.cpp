#include "geometry/geometry_node_hand_line.h"

#include <algorithm>
#include <cstdlib>
#include <span>

#include "core/engine.h"
#include "geometry/geometry_node_kinect_model.h"
#include "geometry/material_node.h"

namespace {

// Seconds of the capture's clock in which the hand draws.
struct DrawSpan {
    float startSeconds, stopSeconds;
};

constexpr DrawSpan kSpans[] = {{171.679f, 173.046f}, {175.746f, 177.146f}, {179.246f, 181.546f},
                               {183.146f, 184.847f}, {188.626f, 190.426f}, {191.526f, 192.926f},
                               {194.193f, 195.093f}, {197.127f, 198.661f}};
constexpr int kSpanCount = static_cast<int>(std::size(kSpans));

// The spans from number `from` up to, and without, number `to`, as texts.
std::span<const DrawSpan> ChosenSpans(const std::string& from, const std::string& to) {
    const int first = std::clamp(std::atoi(from.c_str()), 0, kSpanCount);
    const int end = std::clamp(std::atoi(to.c_str()), first, kSpanCount);
    return std::span(kSpans).subspan(static_cast<std::size_t>(first),
                                     static_cast<std::size_t>(end - first));
}

bool LiesInASpan(std::span<const DrawSpan> spans, float timeSeconds) {
    return std::any_of(spans.begin(), spans.end(), [=](const DrawSpan& span) {
        return span.startSeconds <= timeSeconds && timeSeconds <= span.stopSeconds;
    });
}

// Two triangles in the x-y plane around each point.
std::vector<MeshVertex> SquaresAround(std::span<const Vec3> points) {
    constexpr float kHalfSide = 0.01f;
    constexpr float kCorners[6][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 0}, {1, 1}, {0, 1}};
    std::vector<MeshVertex> vertices;
    vertices.reserve(points.size() * std::size(kCorners));
    for (const Vec3& p : points) {
        for (const auto& [u, v] : kCorners) {
            const float x = u > 0 ? p.x + kHalfSide : p.x - kHalfSide;
            const float y = v > 0 ? p.y - kHalfSide : p.y + kHalfSide;
            vertices.push_back({{x, y, p.z}, {0, 0, 1}, {u, v}});
        }
    }
    return vertices;
}

}  // namespace

GeometryNode_HandLine::GeometryNode_HandLine(Engine* owner, const std::string& nodeId)
    : GeometryNode(owner, nodeId) {
    setInputCount(2);
    inputNames = {"Material", "Puppet"};
    engine->declareString(this, "From", from, "");
    engine->declareString(this, "To", to, "");
}

bool GeometryNode_HandLine::canConnect(int port, const Node* source) const {
    if (port == 0) return IsMaterialSource(source);
    return port == 1 && dynamic_cast<const GeometryNode_KinectModel*>(source) != nullptr;
}

const GeometryNode_KinectModel* GeometryNode_HandLine::connectedPuppet() const {
    return dynamic_cast<const GeometryNode_KinectModel*>(getInput(1));
}

// The puppet's load number also tells of a capture or a model that came after the link.
bool GeometryNode_HandLine::isStale(const GeometryNode_KinectModel* source) const {
    const std::uint64_t loadId = source == nullptr ? 0 : source->loadId;
    return objects.empty() || source != puppet || loadId != builtLoadId_ || from != builtFrom_ ||
           to != builtTo_;
}

// Samples at every hundredth of a second of a minute, as far as they lie in the spans.
std::vector<Vec3> GeometryNode_HandLine::sampleHand(const GeometryNode_KinectModel& source) {
    constexpr int kSteps = 6000;
    constexpr double kStepSeconds = 0.01;
    std::vector<PuppetLimb> limbs = source.limbs;
    const auto hand = std::find_if(limbs.begin(), limbs.end(), [](const PuppetLimb& limb) {
        return limb.kind == LimbKind::kRightHand;
    });
    std::vector<Vec3> points;
    if (hand == limbs.end()) return points;
    const std::span<const DrawSpan> spans = ChosenSpans(from, to);
    const double startSeconds = std::atof(source.startTime.c_str());
    for (int step = 1; step <= kSteps; ++step) {
        const auto seconds = static_cast<float>(step * kStepSeconds - startSeconds);
        if (!LiesInASpan(spans, seconds)) continue;
        source.pose(seconds, std::span(&*hand, 1));
        const Mat4& matrix = hand->transform;
        points.push_back({matrix[12], matrix[13], matrix[14]});
        growth.push_back({seconds, static_cast<int>(points.size())});
    }
    return points;
}

void GeometryNode_HandLine::rebuild(const GeometryNode_KinectModel* source) {
    puppet = source;
    builtLoadId_ = source == nullptr ? 0 : source->loadId;
    builtFrom_ = from;
    builtTo_ = to;
    growth.clear();
    std::vector<Vec3> points;
    if (source != nullptr) points = sampleHand(*source);
    ClearObjects();
    GeometryObject line;
    CreateMeshBuffers(line, SquaresAround(points));
    AppendObject(line);
}

// The last count whose time has passed.
int GeometryNode_HandLine::samplesBefore(float timeSeconds) const {
    const auto next = std::partition_point(
        growth.begin(), growth.end(), [=](const Growth& g) { return g.timeSeconds < timeSeconds; });
    return next == growth.begin() ? 0 : (next - 1)->sampleCount;
}

bool GeometryNode_HandLine::process() {
    const GeometryNode_KinectModel* source = connectedPuppet();
    if (isStale(source)) rebuild(source);
    transform = source == nullptr ? Mat4{} : source->placement();
    GeometryObject& line = objects.front();
    line.material = MaterialInput(*this, 0);
    line.vertexCount = samplesBefore(engine->time) * 6;
    return true;
}
