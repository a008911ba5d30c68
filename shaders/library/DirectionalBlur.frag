#version 330 core
// A blur along a line, as of a camera that was moved.
//
//   k = mix(1, mean of Intensity.rgb at input 1's coordinates, Mask); l = max(1, Length), in pixels.
//   n = clamp(floor(Quality), 1, 64). For i = -n .. n, f = l * i / n: the sample is Source at input 0's coordinates
//   moved by Direction * ng_sampleSize * f * k, with the weight (1 - abs(f) / l)^2 = (1 - abs(i) / n)^2.
//   result = weighted mean.
uniform sampler2D Source;
uniform sampler2D Intensity;
uniform vec2 ng_sampleSize;
uniform vec2 Direction;
uniform float Length;
uniform float Quality;
uniform float Mask;

in vec2 texcoord;
in vec2 texcoord_Input[8];

out vec4 frag[1];

// Bounds the loop whatever Quality says.
const int kMaxSamples = 64;

void main()
{
    vec3 map = texture(Intensity, texcoord_Input[1]).rgb;
    float k = mix(1.0, (map.r + map.g + map.b) / 3.0, Mask);
    float l = max(1.0, Length);
    int n = int(clamp(Quality, 1.0, float(kMaxSamples)));
    vec2 stride = Direction * ng_sampleSize * (l * k / float(n));

    vec4 sum = textureLod(Source, texcoord_Input[0], 0.0);
    float weights = 1.0;
    // The outermost pair has the weight 0 and is left out.
    for (int i = 1; i < n; ++i) {
        float weight = 1.0 - float(i) / float(n);
        weight *= weight;
        vec2 offset = stride * float(i);
        sum += weight * (textureLod(Source, texcoord_Input[0] + offset, 0.0) +
                         textureLod(Source, texcoord_Input[0] - offset, 0.0));
        weights += 2.0 * weight;
    }
    frag[0] = sum / weights;
}
