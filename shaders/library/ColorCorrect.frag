#version 330 core
// Grading.
//
//   range(v, lo, hi) = (v - lo) / (hi - lo), hi - lo held away from 0 by 1e-4 with its sign kept (0 counts as
//   positive).
//   c = Source.rgb / Source.a (0 where alpha is 0);
//   c = range(c, LowColor.rgb, HiColor.rgb), not below 0;
//   c = pow(c, (Exp_R, Exp_G, Exp_B)), exponents not below 0.001;
//   c = range(c, Blackpoint, Whitepoint), not below 0;
//   c = pow(c, 1 / max(Gamma, 0.001));
//   c = (c - 0.5) * Contrast + 0.5;
//   c = c + Brightness, not below 0.
//   result = vec4(c * Source.a, Source.a).
uniform sampler2D Source;
uniform vec2 ng_sampleSize;
uniform float ng_aspectRatio;
uniform float Gamma;
uniform vec4 LowColor;
uniform vec4 HiColor;
uniform float Blackpoint;
uniform float Whitepoint;
uniform float Exp_R;
uniform float Exp_G;
uniform float Exp_B;
uniform float Brightness;
uniform float Contrast;

in vec2 texcoord;
in vec2 texcoord_Input[8];

out vec4 frag[1];

float width(float lo, float hi)
{
    float w = hi - lo;
    return w < 0.0 ? min(w, -1e-4) : max(w, 1e-4);
}

vec3 range(vec3 v, vec3 lo, vec3 hi)
{
    return (v - lo) / vec3(width(lo.r, hi.r), width(lo.g, hi.g), width(lo.b, hi.b));
}

void main()
{
    vec4 source = texture(Source, texcoord_Input[0]);
    vec3 color = source.a > 0.0 ? source.rgb / source.a : vec3(0.0);
    color = max(range(color, LowColor.rgb, HiColor.rgb), 0.0);
    color = pow(color, max(vec3(Exp_R, Exp_G, Exp_B), 0.001));
    color = max(range(color, vec3(Blackpoint), vec3(Whitepoint)), 0.0);
    color = pow(color, vec3(1.0 / max(Gamma, 0.001)));
    color = (color - 0.5) * Contrast + 0.5;
    color = max(color + Brightness, 0.0);
    frag[0] = vec4(color * source.a, source.a);
}
