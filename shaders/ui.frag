#version 330 core
// Flat quads, and glyphs whose coverage lies in the atlas, one texel a pixel.
uniform sampler2D atlas;

flat in vec4 tint;
flat in vec4 clip;
flat in uint isGlyph;
in vec2 texcoord;
out vec4 frag[1];

void main() {
    if (any(lessThan(gl_FragCoord.xy, clip.xy)) || any(greaterThan(gl_FragCoord.xy, clip.zw))) {
        discard;
    }
    float coverage = isGlyph == 0u ? 1.0 : texelFetch(atlas, ivec2(texcoord), 0).r;
    frag[0] = vec4(tint.rgb, tint.a * coverage);
}
