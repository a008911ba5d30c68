#include "geometry/geometry_node_falling_models.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "core/engine.h"
#include "core/random.h"

namespace {

constexpr std::uint32_t kSeed = 5000;

// -1 exclusive to 1.
float Place(int randomNumber) {
    return 1.0f - static_cast<float>(randomNumber % 2000) / 1000.0f;
}

}  // namespace

GeometryNode_FallingModels::GeometryNode_FallingModels(Engine* owner, const std::string& nodeId)
    : GeometryNode(owner, nodeId) {
    setInputCount(1);
    inputNames[0] = "Model";
    engine->declareString(this, "Count", count, "32");
    engine->declareString(this, "Speed", speed, "1.0");
    engine->declareFloat(this, "Time Offset", timeOffset, -10.0f, 10.0f, 2, 0.0f, true);
    engine->declareFloat(this, "Time Alive", timeAlive, 0.0f, 10.0f, 2, 10.0f, true);
    engine->declareFloat(this, "Area", area, 0.0f, 50.0f, 2, 10.0f, true);
    engine->declareVec3(this, "Translate", &translate.x, -20.0f, 20.0f, 2, {0, 0, 0});
    engine->declareVec3(this, "Rotate", &rotate.x, 0.0f, 360.0f, 2, {0, 0, 0});
    engine->declareFloat(this, "Scale", scale, 0.0f, 10.0f, 2, 1.0f, true);
}

bool GeometryNode_FallingModels::canConnect(int, const Node* source) const {
    return isGeometrySource(source);
}

std::size_t GeometryNode_FallingModels::wantedCount() const {
    const long number = std::strtol(count.c_str(), nullptr, 10);
    return static_cast<std::size_t>(std::clamp<long>(number, 0, kMaxCount));
}

// Phases follow the lifetime of this moment; a later change of it leaves them as they are.
void GeometryNode_FallingModels::refill(std::size_t dropCount) {
    lastSpeed = speed;
    drops.resize(dropCount);
    Random::seed(kSeed);
    for (Drop& drop : drops) {
        drop.size = static_cast<float>(Random::next() % 1000) / 1000.0f;
        drop.phase = static_cast<float>(Random::next() % 10000) / 10000.0f * timeAlive;
        drop.z = Place(Random::next());
        drop.x = Place(Random::next());
        drop.y = 0.0f;
    }
}

// Writes over the copies of the frame before, whose names then need no new memory.
void GeometryNode_FallingModels::placeCopies(const GeometryNode& source) {
    const GeometryObject& model = source.objects.front();
    const double run = std::atof(speed.c_str()) * static_cast<double>(engine->time);
    const double offset = static_cast<double>(timeOffset);
    objects.resize(drops.size());
    for (std::size_t i = 0; i < drops.size(); ++i) {
        const Drop& drop = drops[i];
        const double age = run + static_cast<double>(drop.phase) - offset;
        const float base = std::fmod(static_cast<float>(age), timeAlive);
        const float fall = base * base;
        const float size = std::min(fall, 1.0f);

        Mat4 place, grow, placed, joined;
        Mat4Translation(place, {area * drop.x, -fall, area * drop.z});
        Mat4Scale(grow, {size, size, size});
        objects[i] = model;
        Mat4Multiply(
            Mat4Multiply(Mat4Multiply(place, placed, model.transform), joined, source.transform),
            objects[i].transform, grow);
    }
}

bool GeometryNode_FallingModels::process() {
    if (engine->renderEnabled == 0) return true;
    const std::size_t dropCount = wantedCount();
    if (drops.size() != dropCount || speed != lastSpeed) refill(dropCount);
    // Also where nothing was drawn from it: nodes that take random numbers later in the frame
    // begin from here.
    Random::seed(kSeed);

    const GeometryNode* source = geometryInput(0);
    if (source == nullptr || source == this || source->objects.empty()) {
        ClearObjects();
    } else {
        placeCopies(*source);
    }
    Mat4ComposeTRS(transform, translate, rotate, scale);
    return true;
}
