#version 330 core
// The blur of a lens out of focus: a disc in which bright spots swell.
//
//   m = mix(1, mean of Mask.rgb at input 1's coordinates, MaskIntensity), not below 0.
//   radius = clamp(15 * Radius * m, 0, 240), in pixels.
//   result = mix(disc(floor(radius)), disc(ceil(radius)), fract(radius)).
//   disc(0) is Source itself. disc(size): step = max(1 + max(Accuracy, 0) / 20, size / 64), n = floor(size / step);
//   over all whole x, y from -n to n with l = length(x, y) * step <= size, the weighted mean of
//   Source at uv + (x, y * aspect) * step * ng_sampleSize.x, so that the disc is round on the screen. The weight is 1,
//   and 1 + p * (1 + l / size), p = (avg - 0.1) * 8 * clamp(m * 3, 0, 1), for a sample whose mean of r, g, b, avg, is
//   above 0.1.
uniform sampler2D Source;
uniform sampler2D Mask;
uniform vec2 ng_sampleSize;
uniform float ng_aspectRatio;
uniform float Radius;
uniform float Accuracy;
uniform float MaskIntensity;

in vec2 texcoord;
in vec2 texcoord_Input[8];

out vec4 frag[1];

// Steps from the centre of the disc to its rim at most: bounds the loops whatever the parameters say.
const int kMaxSteps = 64;

vec4 disc(float size, float mask)
{
    vec2 uv = texcoord_Input[0];
    if (size < 1.0)
        return textureLod(Source, uv, 0.0);
    float stepPixels = max(1.0 + max(Accuracy, 0.0) / 20.0, size / float(kMaxSteps));
    int n = min(int(size / stepPixels + 1e-4), kMaxSteps);
    float swell = 8.0 * clamp(mask * 3.0, 0.0, 1.0);
    vec2 scale = vec2(1.0, ng_aspectRatio) * ng_sampleSize.x * stepPixels;
    vec4 sum = vec4(0.0);
    float weights = 0.0;
    for (int y = -n; y <= n; ++y) {
        for (int x = -n; x <= n; ++x) {
            vec2 offset = vec2(x, y);
            float l = length(offset) * stepPixels;
            if (l > size + 1e-3)
                continue;
            vec4 color = textureLod(Source, uv + offset * scale, 0.0);
            float average = (color.r + color.g + color.b) / 3.0;
            float weight = 1.0 + max(average - 0.1, 0.0) * swell * (1.0 + l / size);
            sum += color * weight;
            weights += weight;
        }
    }
    return sum / weights;
}

void main()
{
    vec3 map = texture(Mask, texcoord_Input[1]).rgb;
    float mask = max(mix(1.0, (map.r + map.g + map.b) / 3.0, MaskIntensity), 0.0);
    float radius = clamp(15.0 * Radius * mask, 0.0, 240.0);
    float part = fract(radius);
    vec4 color = disc(floor(radius), mask);
    if (part > 0.0)
        color = mix(color, disc(ceil(radius), mask), part);
    frag[0] = color;
}
