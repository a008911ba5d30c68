// How long the surface around charged points takes to make, beside the plain way of doing it, and a
// frame of falling copies.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "core/engine.h"
#include "geometry/geometry_node_falling_models.h"
#include "geometry/particle_surface.h"

namespace {

using Particles = std::vector<Particle>;

// 0: the two charges that the mesher has. 1: one charge that fills the grid. 2: a swarm.
Particles ParticlesOf(std::int64_t setting) {
    if (setting == 0) return {{0, 0, 0, 1}, {0, 0, 0, 1}};
    if (setting == 1) return {{0, 0, 0, 9.5f}};
    Particles swarm;
    for (int i = 0; i < 32; ++i) {
        const float turn = static_cast<float>(i);
        swarm.push_back({6 * std::sin(turn), 6 * std::sin(turn * 1.7f), 6 * std::cos(turn), 0.6f});
    }
    return swarm;
}

void SetTriangles(benchmark::State& state, std::size_t vertices) {
    state.counters["triangles"] = static_cast<double>(vertices) / 3;
}

void Surface(benchmark::State& state) {
    const Particles particles = ParticlesOf(state.range(0));
    std::size_t vertices = 0;
    for (auto _ : state) {
        const auto mesh = ParticleSurface(particles);
        vertices = mesh.size();
        benchmark::DoNotOptimize(mesh.data());
    }
    SetTriangles(state, vertices);
}
BENCHMARK(Surface)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

void FieldOnly(benchmark::State& state) {
    const Particles particles = ParticlesOf(state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(ParticleFieldValues(kParticleGrid, particles).data());
    }
}
BENCHMARK(FieldOnly)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

// The plain way: position, gradient and value kept for every point, and each cell taken by itself.
struct PlainPoint {
    Vec3 position, gradient;
    float value = 0;
};

void AddParticle(PlainPoint& point, const Particle& p) {
    const Vec3 delta = {point.position.x - p.x, point.position.y - p.y, point.position.z - p.z};
    const float d2 = std::max(delta.x * delta.x + delta.y * delta.y + delta.z * delta.z, 0.0001f);
    point.value += p.r * p.r / d2;
    point.gradient.x += p.r * p.r / (d2 * d2) * delta.x;
    point.gradient.y += p.r * p.r / (d2 * d2) * delta.y;
    point.gradient.z += p.r * p.r / (d2 * d2) * delta.z;
}

std::vector<PlainPoint> PlainGrid(const Particles& particles) {
    std::vector<PlainPoint> grid(kParticleGrid.pointCount());
    for (int k = 0; k < 61; ++k) {
        for (int j = 0; j < 61; ++j) {
            for (int i = 0; i < 61; ++i) {
                PlainPoint& point = grid[kParticleGrid.index(i, j, k)];
                point.position = {kParticleGrid.coordinate(i), kParticleGrid.coordinate(j),
                                  kParticleGrid.coordinate(k)};
                for (const Particle& p : particles) AddParticle(point, p);
            }
        }
    }
    return grid;
}

MeshVertex PlainCut(const PlainPoint& a, const PlainPoint& b) {
    const float t = (1.0f - a.value) / (b.value - a.value);
    const auto mix = [t](const Vec3& from, const Vec3& to) {
        return Vec3{from.x + t * (to.x - from.x), from.y + t * (to.y - from.y),
                    from.z + t * (to.z - from.z)};
    };
    return {mix(a.position, b.position), Vec3Normalise(mix(a.gradient, b.gradient)), {}};
}

void PlainCell(const std::vector<PlainPoint>& grid, int i, int j, int k,
               std::vector<MeshVertex>& mesh) {
    PlainPoint corners[8];
    unsigned row = 0;
    for (unsigned c = 0; c < 8; ++c) {
        const auto& step = kCellCorners[c];
        corners[c] = grid[kParticleGrid.index(i + step[0], j + step[1], k + step[2])];
        if (1.0f > corners[c].value) row |= 1u << c;
    }
    for (const std::int8_t edge : kTriangleTable[row]) {
        if (edge < 0) break;
        mesh.push_back(PlainCut(corners[kCellEdges[edge][0]], corners[kCellEdges[edge][1]]));
    }
}

std::vector<MeshVertex> PlainSurface(const Particles& particles) {
    const std::vector<PlainPoint> grid = PlainGrid(particles);
    std::vector<MeshVertex> mesh;
    for (int k = 0; k < 60; ++k) {
        for (int j = 0; j < 60; ++j) {
            for (int i = 0; i < 60; ++i) PlainCell(grid, i, j, k, mesh);
        }
    }
    return mesh;
}

void SurfaceThePlainWay(benchmark::State& state) {
    const Particles particles = ParticlesOf(state.range(0));
    const std::size_t vertices = PlainSurface(particles).size();
    if (vertices != ParticleSurface(particles).size()) std::abort();
    for (auto _ : state) benchmark::DoNotOptimize(PlainSurface(particles).data());
    SetTriangles(state, vertices);
}
BENCHMARK(SurfaceThePlainWay)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

class ModelNode : public GeometryNode {
  public:
    ModelNode(Engine* owner, const std::string& nodeId) : GeometryNode(owner, nodeId) {
        GeometryObject object;
        object.name = "a name that is too long to be kept without an allocation";
        AppendObject(object);
    }
    bool canConnect(int, const Node*) const override { return false; }
    bool process() override { return true; }
};

void FallingCopies(benchmark::State& state) {
    Engine engine({}, nullptr);
    engine.addNode("model", std::make_unique<ModelNode>(&engine, "model"));
    engine.addNode("falling", std::make_unique<GeometryNode_FallingModels>(&engine, "falling"));
    engine.connect("model", "falling", 0);
    auto& falling = static_cast<GeometryNode_FallingModels&>(*engine.findNode("falling"));
    falling.count = std::to_string(state.range(0));
    engine.time = 0;
    for (auto _ : state) {
        engine.time += 1.0f / 60;
        falling.process();
        benchmark::DoNotOptimize(falling.objects.data());
    }
}
BENCHMARK(FallingCopies)->Arg(32)->Arg(1000)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
