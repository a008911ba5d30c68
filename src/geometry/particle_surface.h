// The smooth surface around charged points: where the sum of squared charge over squared distance
// is the threshold. Pure functions without OpenGL; any thread.
#pragma once

#include <span>
#include <vector>

#include "geometry/marching_cubes.h"

struct Particle {
    float x = 0, y = 0, z = 0;
    float r = 0;  // the charge; alone it makes a sphere of this radius
};

// The grid that surfaces are cut from; nothing is drawn outside of it.
inline constexpr CubeGrid kParticleGrid = {61, 10.0f};
inline constexpr float kParticleThreshold = 1.0f;

// The field at every point of the grid, in the grid's order.
std::vector<float> ParticleFieldValues(const CubeGrid& grid, std::span<const Particle> particles);
// Points out of the surface: half the field's descent.
Vec3 ParticleFieldGradient(std::span<const Particle> particles, const Vec3& point);

// Three vertices a triangle, counter-clockwise seen from outside; normals of length 1 point out.
std::vector<MeshVertex> ParticleSurface(std::span<const Particle> particles);
