#version 330 core
// Makes the dark parts of a picture transparent.
//
//   c = Source.rgb / Source.a (0 where alpha is 0), luma = 0.299 r + 0.587 g + 0.114 b of c.
//   result = vec4(c / luma * luma, luma), vec4(0) where luma is not above 0: the colour at full strength,
//   premultiplied by the new alpha.
uniform sampler2D Source;
uniform vec2 ng_sampleSize;
uniform float ng_aspectRatio;
// Declared so that projects may set it; the luma is taken as it is.
uniform float Exponent;

in vec2 texcoord;
in vec2 texcoord_Input[8];

out vec4 frag[1];

void main()
{
    vec4 source = texture(Source, texcoord_Input[0]);
    vec3 color = source.a > 0.0 ? source.rgb / source.a : vec3(0.0);
    float luma = dot(color, vec3(0.299, 0.587, 0.114));
    frag[0] = vec4(0.0);
    if (luma > 0.0) {
        vec3 normalised = color / luma;
        frag[0] = vec4(normalised * luma, luma);
    }
}
