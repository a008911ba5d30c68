#version 330 core
// Streaks of light that run outwards from Center.
//
//   k = mix(1, mean of Intensity.rgb at input 1's coordinates, Mask), not below 0.
//   d = distance in pixels from Center to the fragment's texcoord; L = max(Length, 0) * k;
//   l = min(2 * L, d), so that no sample lies beyond the centre.
//   n = clamp(floor(Quality), 1, 64). For i = 0 .. n - 1, f = -l * i / n: the sample is Source at input 0's coordinates
//   moved by f pixels along the ray from Center, with the weight (1 - abs(f) / l)^2 = (1 - i / n)^2.
//   result = weighted mean + Source(unmoved) * Oooooze; alpha is capped at 1.
// Center is in coordinates of the screen: (0, 0) its top left, (1, 1) its bottom right.
uniform sampler2D Source;
uniform sampler2D Intensity;
uniform vec2 ng_sampleSize;
uniform float Length;
uniform float Quality;
uniform float Mask;
uniform float Oooooze;
uniform vec2 Center;

in vec2 texcoord;
in vec2 texcoord_Input[8];

out vec4 frag[1];

// Bounds the loop whatever Quality says.
const int kMaxSamples = 64;

void main()
{
    vec3 map = texture(Intensity, texcoord_Input[1]).rgb;
    float k = max(mix(1.0, (map.r + map.g + map.b) / 3.0, Mask), 0.0);
    vec2 ray = (texcoord - Center) / ng_sampleSize;
    float distancePixels = length(ray);
    float reach = min(2.0 * max(Length, 0.0) * k, distancePixels);
    vec2 direction = distancePixels > 0.0 ? ray / distancePixels : vec2(0.0);
    int count = int(clamp(Quality, 1.0, float(kMaxSamples)));
    vec2 stride = -direction * ng_sampleSize * reach / float(count);

    vec4 original = textureLod(Source, texcoord_Input[0], 0.0);
    vec4 sum = original;
    float weights = 1.0;
    for (int i = 1; i < count; ++i) {
        float weight = 1.0 - float(i) / float(count);
        weight *= weight;
        sum += textureLod(Source, texcoord_Input[0] + stride * float(i), 0.0) * weight;
        weights += weight;
    }
    vec4 color = sum / weights + original * Oooooze;
    color.a = min(color.a, 1.0);
    frag[0] = color;
}
