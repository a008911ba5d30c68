#version 330 core
// Pushes the pixels of Image about by the channels of another picture.
//
//   m = Displacement at input 1's coordinates; channel(c): 0 r, 1 g, 2 b, 3 a, 4 (and every other number)
//   0.299 r + 0.587 g + 0.114 b.
//   result = Image at mod(uv + (channel(Horizontal) - 0.5, channel(Vertical) - 0.5) * (Distort_H, Distort_V), 1),
//   uv being input 0's coordinates.
uniform sampler2D Image;
uniform sampler2D Displacement;
uniform int Horizontal;
uniform int Vertical;
uniform float Distort_H;
uniform float Distort_V;

in vec2 texcoord;
in vec2 texcoord_Input[8];

out vec4 frag[1];

float channel(vec4 map, int number)
{
    if (number == 0)
        return map.r;
    if (number == 1)
        return map.g;
    if (number == 2)
        return map.b;
    if (number == 3)
        return map.a;
    return dot(map.rgb, vec3(0.299, 0.587, 0.114));
}

void main()
{
    vec4 map = texture(Displacement, texcoord_Input[1]);
    vec2 offset = (vec2(channel(map, Horizontal), channel(map, Vertical)) - 0.5) * vec2(Distort_H, Distort_V);
    // Level 0: where the coordinates wrap, their derivatives would choose the smallest level and draw a seam.
    frag[0] = textureLod(Image, mod(texcoord_Input[0] + offset, 1.0), 0.0);
}
