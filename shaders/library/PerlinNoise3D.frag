#version 330 core
// Clouds: simplex noise in three dimensions, a slice of it at the depth Phase.
//
//   p = vec3((texcoord - Translation) * Direction.yx * Density - 0.5, Phase).
//   Octaves is clamped to 1 .. 8; octave o (from 0) adds simplex(p * 2^o, Seed + o) with the weight 2^-o, the last one
//   of a broken count with its weight times the fraction. n = 0.5 + 0.5 * (sum / sum of the weights), held in 0 .. 1.
//   c = n * Color.rgb, then pow(c, 1 / max(Gamma, 0.001)), then (c.rbg - 0.5) * Contrast + 0.5: the swizzle exchanges
//   green and blue, so that a tint comes out with the two exchanged. Then + Brightness, not below 0, times the alpha
//   Color.a: the result is premultiplied.
//
//   simplex(p, seed): the lattice is skewed by (x + y + z) / 3 and unskewed by / 6; each of the four corners of the
//   simplex at distance d adds max(0.5 - dot(d, d), 0)^4 * dot(g, d); the sum is scaled by 76. The gradient g is one of
//   the twelve vectors to the middles of a cube's edges, number (h >> 16) * 12 >> 16 with
//   h = cornerHash(corner, seed) below, in 32-bit unsigned arithmetic.
uniform int Seed;
uniform float Density;
uniform float Octaves;
uniform float Phase;
uniform vec2 Direction;
uniform float Brightness;
uniform float Contrast;
uniform float Gamma;
uniform vec2 Translation;
uniform vec4 Color;

in vec2 texcoord;
in vec2 texcoord_Input[8];

out vec4 frag[1];

const int kMaxOctaves = 8;

uint cornerHash(ivec3 corner, int seed)
{
    uint h = uint(corner.x) * 0x8da6b343u + uint(corner.y) * 0xd8163841u + uint(corner.z) * 0xcb1ab31fu;
    h ^= uint(seed) * 0x165667b1u;
    h ^= h >> 15;
    h *= 0x2c1b3c6du;
    h ^= h >> 12;
    h *= 0x297a2d39u;
    h ^= h >> 15;
    return h;
}

// Gradient number g: 0..3 lie in the plane xy, 4..7 in yz, 8..11 in zx; bit 0 turns the first sign, bit 1 the second.
float edgeDot(ivec3 corner, int seed, vec3 d)
{
    uint g = ((cornerHash(corner, seed) >> 16) * 12u) >> 16;
    float a = g < 4u ? d.x : (g < 8u ? d.y : d.z);
    float b = g < 4u ? d.y : (g < 8u ? d.z : d.x);
    return ((g & 1u) != 0u ? -a : a) + ((g & 2u) != 0u ? -b : b);
}

float cornerPart(ivec3 corner, int seed, vec3 d)
{
    float t = max(0.5 - dot(d, d), 0.0);
    t *= t;
    return t * t * edgeDot(corner, seed, d);
}

float simplex(vec3 p, int seed)
{
    vec3 base = floor(p + (p.x + p.y + p.z) / 3.0);
    vec3 d0 = p - base + (base.x + base.y + base.z) / 6.0;
    // The order of the coordinates says which of the six simplices of the cell holds the point.
    vec3 rank = vec3(float(d0.x >= d0.y) + float(d0.x >= d0.z), float(d0.y > d0.x) + float(d0.y >= d0.z),
                     float(d0.z > d0.x) + float(d0.z > d0.y));
    vec3 o1 = step(2.0, rank);
    vec3 o2 = step(1.0, rank);
    ivec3 corner = ivec3(base);
    float sum = cornerPart(corner, seed, d0);
    sum += cornerPart(corner + ivec3(o1), seed, d0 - o1 + 1.0 / 6.0);
    sum += cornerPart(corner + ivec3(o2), seed, d0 - o2 + 1.0 / 3.0);
    sum += cornerPart(corner + ivec3(1), seed, d0 - 0.5);
    return 76.0 * sum;
}

void main()
{
    vec3 p = vec3((texcoord - Translation) * Direction.yx * Density - 0.5, Phase);
    float octaves = clamp(Octaves, 1.0, float(kMaxOctaves));
    float sum = 0.0;
    float weights = 0.0;
    float weight = 1.0;
    for (int o = 0; o < kMaxOctaves; ++o) {
        float part = weight * min(octaves - float(o), 1.0);
        if (part <= 0.0)
            break;
        sum += part * simplex(p, Seed + o);
        weights += part;
        weight *= 0.5;
        p *= 2.0;
    }
    float n = clamp(0.5 + 0.5 * sum / weights, 0.0, 1.0);
    vec3 color = pow(max(n * Color.rgb, 0.0), vec3(1.0 / max(Gamma, 0.001)));
    color = (color.rbg - 0.5) * Contrast + 0.5;
    color = max(color + Brightness, 0.0);
    frag[0] = vec4(color * Color.a, Color.a);
}
