#version 330 core
// White noise, a new value for every pixel.
//
//   n = hash(texcoord + fract(Seed * 0.618034)), hash(co) = fract(sin(dot(co, vec2(12.9898, 78.233))) * 43758.5453).
//   c = n * Color.rgb, then pow(c, 1 / max(Gamma, 0.001)), then (c.rbg - 0.5) * Contrast + 0.5: the swizzle exchanges
//   green and blue, so that a tint comes out with the two exchanged. Then + Brightness, not below 0, times the alpha
//   Color.a: the result is premultiplied.
uniform int Seed;
uniform float Brightness;
uniform float Contrast;
uniform float Gamma;
uniform vec4 Color;

in vec2 texcoord;
in vec2 texcoord_Input[8];

out vec4 frag[1];

float hash(vec2 co)
{
    return fract(sin(dot(co, vec2(12.9898, 78.233))) * 43758.5453);
}

void main()
{
    float n = hash(texcoord + fract(float(Seed) * 0.618034));
    vec3 color = pow(max(n * Color.rgb, 0.0), vec3(1.0 / max(Gamma, 0.001)));
    color = (color.rbg - 0.5) * Contrast + 0.5;
    color = max(color + Brightness, 0.0);
    frag[0] = vec4(color * Color.a, Color.a);
}
