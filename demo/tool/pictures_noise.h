// Chance for the painters: a small seeded generator, and smooth gradient noise that can repeat.
// Pure arithmetic; the same seed gives the same picture on every machine.
#pragma once

#include <cstdint>

namespace pictures {

// Scrambles a lattice point into 32 even bits.
uint32_t hashPoint(int x, int y, uint32_t seed);

class Random {
  public:
    explicit Random(uint32_t seed) : state(seed * 2654435769u + 1u) {}

    uint32_t next();
    float unit();                        // 0 to below 1
    float range(float low, float high);  // low to below high
    int below(int count);                // 0 to count - 1
    bool chance(float probability) { return unit() < probability; }

  private:
    uint32_t state;
};

// How a noise field repeats, in lattice cells; 0 is never.
struct Period {
    int x = 0, y = 0;
};

// Gradient noise over a unit lattice, about -1 to 1, zero at lattice points (Perlin's, with his
// later quintic fade).
float gradientNoise(float x, float y, uint32_t seed, Period period = {});

// Sum of `octaves` of gradient noise, each twice as fine and half as strong, about -1 to 1.
float fractalNoise(float x, float y, int octaves, uint32_t seed, Period period = {});

// Like fractalNoise, folded so that its zero lines become crests; 0 to 1, crests at 1.
float ridgedNoise(float x, float y, int octaves, uint32_t seed);

}  // namespace pictures
