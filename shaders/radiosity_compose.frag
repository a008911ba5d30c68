#version 330 core
// Colour under its occlusion and in its gathered light, with illumination and reflection on top.
// Occlusion and light come from passes that are drawn upside down. Where additive surfaces lie, the
// colour's alpha counts the layers, and the colour is their mean.
in vec2 texcoord;
out vec4 frag[1];
uniform sampler2D image;
uniform sampler2D aoData;
uniform sampler2D giData;
uniform sampler2D ilData;
uniform sampler2D refData;
uniform float giIntensity;

void main() {
    vec2 flipped = vec2(texcoord.x, 1.0 - texcoord.y);
    vec4 color = texture(image, texcoord);
    vec4 ao = texture(aoData, flipped);
    vec4 giColor = texture(giData, flipped);
    vec4 illumination = texture(ilData, texcoord);
    vec4 reflection = texture(refData, texcoord);
    color.rgb *= ao.r;
    color.rgb /= color.a > 0.0 ? color.a : 1.0;
    vec3 lit = mix(color.rgb, color.rgb * giColor.rgb, giIntensity);
    frag[0] = vec4(reflection.rgb + lit + illumination.rgb, color.a);
}
