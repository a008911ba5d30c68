#version 330 core
// A blur along one direction, weighted by a mask.
//
//   l = max(1, Length), quality = 1 + Length / 10. For f = -l, -l + 0.75, ... while f <= l:
//   w = (1 - |f| / l)^2
//   tc = Direction * f * ng_sampleSize * min(1, Length) * quality
//   result = sum of Source(texcoord_Input[0] + tc) * w * mix(1, Intensity(texcoord_Input[1] + tc).r, Mask)
//            over the sum of w.
//
// The sum of the weights does not depend on the pixel: it comes as `fullWeight`, the number of taps as
// `tapCount`. Taps that cannot touch a texel of a picture with a transparent border add exact zeros, and
// the loop leaves them out; the others are added in their order, so the result is the same bit for bit.
// Stepping f from -l by 0.75 is exact in single precision, so that any f can be had directly.
//
// MIPMAPS: an input has smaller copies of itself. Their level then follows from the distance between
// pixels, which does not depend on f.
in vec2 texcoord_Input[2];
out vec4 frag[1];

uniform vec2 ng_sampleSize;
uniform sampler2D Source;
uniform sampler2D Intensity;
uniform vec2 Direction;
uniform float Length;
uniform float Mask;
uniform float fullWeight;
uniform int tapCount;
uniform int boundTaps;     // 0: every tap is taken
uniform int maskTouches;   // 0: there is no mask whose texels have to be kept in the loop
uniform ivec2 mostLevels;  // the highest mipmap level of each input
uniform int showTaps;      // not 0: the number of taps is the result

#ifdef MIPMAPS
#define TAP(image, at, n) textureGrad(image, at, acrossX[n], acrossY[n])
#else
#define TAP(image, at, n) textureLod(image, at, 0.0)
#endif

// Half a texel, in texture coordinates, of the coarsest level that a tap may be mixed from.
vec2 reach(ivec2 size, int mostLevel, vec2 alongX, vec2 alongY) {
    vec2 texels = vec2(size);
    float span = max(max(length(alongX * texels), length(alongY * texels)), 1.0);
    int level = min(int(min(ceil(log2(span)), 30.0)) + 1, mostLevel);
    return 0.5 / vec2(max(size >> level, ivec2(1)));
}

// Narrows `taps`, the first and last tap as fractions, to those that fall between `low` and `high` on
// one axis. `perUnit`: how far one unit of f goes.
void narrow(inout vec2 taps, float l, float at, float perUnit, float low, float high) {
    if (abs(perUnit) < 1e-5)
        return;  // as good as standing still
    vec2 f = (vec2(low, high) - at) / perUnit;
    vec2 k = (f + l) / 0.75;
    taps = vec2(max(taps.x, min(k.x, k.y)), min(taps.y, max(k.x, k.y)));
}

// The taps that may touch a picture: first and last, as fractions.
vec2 touching(float l, vec2 at, vec2 perUnit, vec2 margin) {
    vec2 taps = vec2(0.0, float(tapCount - 1));
    margin += 2e-6 * (1.0 + abs(at));  // rounding of the coordinates
    narrow(taps, l, at.x, perUnit.x, -margin.x, 1.0 + margin.x);
    narrow(taps, l, at.y, perUnit.y, -margin.y, 1.0 + margin.y);
    return taps;
}

void main() {
    float l = max(1.0, Length);
    float quality = 1.0 + Length / 10.0;
    float scale = min(1.0, Length);
    int first = 0;
    int last = tapCount - 1;
    vec2 acrossX[2] = vec2[2](dFdx(texcoord_Input[0]), dFdx(texcoord_Input[1]));
    vec2 acrossY[2] = vec2[2](dFdy(texcoord_Input[0]), dFdy(texcoord_Input[1]));
    if (boundTaps != 0) {
        vec2 perUnit = Direction * ng_sampleSize * scale * quality;
        vec2 taps = touching(l, texcoord_Input[0], perUnit,
            reach(textureSize(Source, 0), mostLevels.x, acrossX[0], acrossY[0]));
        if (maskTouches != 0) {
            vec2 masked = touching(l, texcoord_Input[1], perUnit,
                reach(textureSize(Intensity, 0), mostLevels.y, acrossX[1], acrossY[1]));
            if (masked.x <= masked.y)
                taps = taps.x <= taps.y ? vec2(min(taps.x, masked.x), max(taps.y, masked.y)) : masked;
        }
        // Half a tap to either side is far more than single precision can be off here.
        ivec2 whole = ivec2(floor(clamp(taps, -1.0, float(tapCount)) + 0.5));
        first = max(whole.x, first);
        last = min(whole.y, last);
    }
    vec4 color = vec4(0.0);
    for (int k = first; k <= last; ++k) {
        float f = 0.75 * float(k) - l;
        float part = 1.0 - abs(f) / l;
        float w = part * part;
        vec2 tc = Direction * f * ng_sampleSize * scale * quality;
        vec4 intensity = mix(vec4(1.0), TAP(Intensity, texcoord_Input[1] + tc, 1), Mask);
        color += TAP(Source, texcoord_Input[0] + tc, 0) * w * intensity.x;
    }
    frag[0] = showTaps != 0 ? vec4(max(last - first + 1, 0)) : color / fullWeight;
}
