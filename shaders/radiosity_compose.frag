#version 330 core
// Colour under its occlusion and in its gathered light, with illumination and reflection on top.
// Occlusion and light come from passes that are drawn upside down. Where additive surfaces lie, the
// colour's alpha counts the layers, and the colour is their mean. Every texel is taken alone: at the
// edges of surfaces, a trace of the neighbour's alpha would be a divisor.
in vec2 texcoord;
out vec4 frag[1];
uniform sampler2D image;
uniform sampler2D aoData;
uniform sampler2D giData;
uniform sampler2D ilData;
uniform sampler2D refData;
uniform float giIntensity;

void main() {
    ivec2 size = textureSize(image, 0);
    ivec2 place = ivec2(texcoord * vec2(size));
    ivec2 flipped = ivec2(place.x, size.y - 1 - place.y);
    vec4 color = texelFetch(image, place, 0);
    vec4 ao = texelFetch(aoData, flipped, 0);
    vec4 giColor = texelFetch(giData, flipped, 0);
    vec4 illumination = texelFetch(ilData, place, 0);
    vec4 reflection = texelFetch(refData, place, 0);
    color.rgb *= ao.r;
    color.rgb /= color.a > 0.0 ? color.a : 1.0;
    vec3 lit = mix(color.rgb, color.rgb * giColor.rgb, giIntensity);
    frag[0] = vec4(reflection.rgb + lit + illumination.rgb, color.a);
}
