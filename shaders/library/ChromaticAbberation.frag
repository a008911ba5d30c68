#version 330 core
// The colour fringes of a cheap lens.
//
//   shift = (texcoord - 0.5) * 0.1 * Factor; s(k) = Source at texcoord + k * shift.
//   Mode 0 takes red from s(1), green from s(0), blue from s(-1); mode 1 takes green from s(1), blue from s(0), red
//   from s(-1); mode 2 (and every other number) takes blue from s(1), red from s(0), green from s(-1).
//   Alpha is the mean of the three samples' alphas, a third each.
uniform sampler2D Source;
uniform vec2 ng_sampleSize;
uniform float ng_aspectRatio;
uniform float Factor;
uniform int Mode;

in vec2 texcoord;
in vec2 texcoord_Input[8];

out vec4 frag[1];

void main()
{
    vec2 shift = (texcoord - 0.5) * 0.1 * Factor;
    vec4 outer = texture(Source, texcoord + shift);
    vec4 middle = texture(Source, texcoord);
    vec4 inner = texture(Source, texcoord - shift);
    vec3 color = vec3(middle.r, inner.g, outer.b);
    if (Mode == 0)
        color = vec3(outer.r, middle.g, inner.b);
    else if (Mode == 1)
        color = vec3(inner.r, outer.g, middle.b);
    frag[0] = vec4(color, (outer.a + middle.a + inner.a) / 3.0);
}
