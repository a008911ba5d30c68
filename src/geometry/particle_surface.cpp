#include "geometry/particle_surface.h"

#include <cstddef>

namespace {

// Nearer points count as this far away, so that the field stays finite.
constexpr float kLeastSquaredDistance = 0.0001f;

float AtLeastTheLeast(float squaredDistance) {
    return squaredDistance > kLeastSquaredDistance ? squaredDistance : kLeastSquaredDistance;
}

// Adds one particle to a row of points that differ in x only. The compiler makes vector code of it.
void AddToRow(const Particle& particle, std::span<const float> xs, float y, float z, float* row) {
    const float charge = particle.r * particle.r;
    const float dy = y - particle.y, dz = z - particle.z;
    for (std::size_t i = 0; i < xs.size(); ++i) {
        const float dx = xs[i] - particle.x;
        row[i] += charge / AtLeastTheLeast(dx * dx + dy * dy + dz * dz);
    }
}

}  // namespace

std::vector<float> ParticleFieldValues(const CubeGrid& grid, std::span<const Particle> particles) {
    const int n = grid.pointsPerAxis;
    std::vector<float> coordinates(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) coordinates[static_cast<std::size_t>(i)] = grid.coordinate(i);
    std::vector<float> values(grid.pointCount(), 0.0f);
    float* row = values.data();
    for (const float z : coordinates) {
        for (const float y : coordinates) {
            for (const Particle& particle : particles) AddToRow(particle, coordinates, y, z, row);
            row += n;
        }
    }
    return values;
}

Vec3 ParticleFieldGradient(std::span<const Particle> particles, const Vec3& point) {
    Vec3 gradient;
    for (const Particle& particle : particles) {
        const float dx = point.x - particle.x, dy = point.y - particle.y, dz = point.z - particle.z;
        const float d2 = AtLeastTheLeast(dx * dx + dy * dy + dz * dz);
        const float weight = particle.r * particle.r / (d2 * d2);
        gradient.x += weight * dx;
        gradient.y += weight * dy;
        gradient.z += weight * dz;
    }
    return gradient;
}

// The gradient is needed next to the surface only, so it is not kept for the whole grid.
std::vector<MeshVertex> ParticleSurface(std::span<const Particle> particles) {
    const std::vector<float> values = ParticleFieldValues(kParticleGrid, particles);
    return MarchCubes(kParticleGrid, values, kParticleThreshold, [particles](const Vec3& point) {
        return ParticleFieldGradient(particles, point);
    });
}
