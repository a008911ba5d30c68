#version 330 core
// How much surfaces near a point stand over it, by samples on a spiral around it on the screen:
// ambient occlusion; with LIGHT defined, the light that those surfaces send.
//
//   The k-th of n samples lies at radius / p.z * k / n from the point, in texture coordinates, each
//   2.4 further around (the golden angle), from a phase that is noise.
//   d: from the point p with normal n to the sample's point; l = |d|, v = d / l.
//   weight = max(0, n.v - bias) / (1 + l * scale) * smoothstep(maxDistance, maxDistance / 2, l).
//   occlusion = max(0, 1 - intensity * mean of the weights).
//   light = intensity * mean of the samples' illumination * weight.
//
// A sample without a direction weighs nothing. skipNeutral leaves out samples of which is known
// that they weigh nothing; they are left out by the number of turns of the loop, which also a
// renderer without branches takes to heart.
in vec2 texcoord;
out vec4 frag[1];
uniform sampler2D eyeSpaceNormal;
uniform sampler2D eyeSpacePosition;
uniform bool skipNeutral;
#ifdef LIGHT
uniform sampler2D eyeSpaceIllumination;
uniform int SAMPLE_COUNT;
uniform float giIntensity;
uniform float giRadius;
uniform float giBias;
uniform float giScale;
uniform float giMaxDistance;
#define INTENSITY giIntensity
#define RADIUS giRadius
#define BIAS giBias
#define SCALE giScale
#define MAX_DISTANCE giMaxDistance
#else
const int SAMPLE_COUNT = 16;
uniform float aoIntensity;
uniform float aoRadius;
uniform float aoBias;
uniform float aoScale;
uniform float aoMaxDistance;
#define INTENSITY aoIntensity
#define RADIUS aoRadius
#define BIAS aoBias
#define SCALE aoScale
#define MAX_DISTANCE aoMaxDistance
#endif

const vec3 MOD3 = vec3(.1031, .11369, .13787);
const float GOLDEN_ANGLE = 2.4;
// A sample further than this from a point of the frame, in texture coordinates, is outside of it.
const float kOutside = 1.5;

float hash12(vec2 p) {
    vec3 p3 = fract(p.xyx * MOD3);
    p3 += dot(p3, p3.yzx + 19.19);
    return fract((p3.x + p3.y) * p3.z);
}

float sampleWeight(vec3 normal, vec3 d) {
    float l = length(d);
    float facing = dot(normal, normalize(d)) - BIAS;
    // smoothstep with its edges falling, which the language leaves open.
    float t = clamp((MAX_DISTANCE - l) / (MAX_DISTANCE * 0.5), 0.0, 1.0);
    float w = facing * (1.0 / (1.0 + l * SCALE)) * (t * t * (3.0 - 2.0 * t));
    return facing > 0.0 && l > 0.0 ? w : 0.0;
}

// Samples after which all that is left weighs nothing. Nothing stands over a point without a
// normal; and outside the frame positions are 0, which often is behind the point.
int neededSamples(vec3 p, vec3 n, float radiusStep) {
    if (!skipNeutral) return SAMPLE_COUNT;
    if (n == vec3(0.0) && BIAS >= 0.0) return 0;
    bool outsideIsNothing = sampleWeight(n, -p) == 0.0;
    float inside = kOutside / abs(radiusStep) + 1.0;
    return outsideIsNothing && inside < float(SAMPLE_COUNT) ? int(inside) : SAMPLE_COUNT;
}

void main() {
    ivec2 texel = ivec2(texcoord * vec2(textureSize(eyeSpacePosition, 0)));
    vec3 p = texelFetch(eyeSpacePosition, texel, 0).xyz;
    vec3 n = texelFetch(eyeSpaceNormal, texel, 0).xyz;
    float rad = RADIUS / p.z;
    float rotatePhase = hash12(texcoord * 100.0) * 6.28;
    float inv = 1.0 / float(max(SAMPLE_COUNT, 1));
    float rStep = inv * rad;
    float radius = 0.0;
    int needed = neededSamples(p, n, rStep);
#ifdef LIGHT
    vec3 sum = vec3(0.0);
#else
    float sum = 0.0;
#endif
    for (int i = 0; i < needed; ++i) {
        radius += rStep;
        vec2 place = texcoord + vec2(sin(rotatePhase), cos(rotatePhase)) * radius;
        vec3 d = textureLod(eyeSpacePosition, place, 0.0).xyz - p;
#ifdef LIGHT
        float w = sampleWeight(n, d);
        vec3 light = textureLod(eyeSpaceIllumination, place, 0.0).rgb;
        sum += w != 0.0 ? light * w : vec3(0.0);  // light may be infinite
#else
        sum += sampleWeight(n, d);
#endif
        rotatePhase += GOLDEN_ANGLE;
    }
#ifdef LIGHT
    frag[0] = vec4(sum * inv * INTENSITY, 1.0);
#else
    frag[0] = vec4(vec3(max(0.0, 1.0 - sum * inv * INTENSITY)), 1.0);
#endif
}
