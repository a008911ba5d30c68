#version 330 core
// Flat quads, glyphs whose coverage lies in the atlas, one texel a pixel, and bands, whose coverage
// falls to nothing over the last pixel on both sides.
uniform sampler2D atlas;

flat in vec4 tint;
flat in vec4 clip;
flat in uint kind;
in vec2 texcoord;
out vec4 frag[1];

void main() {
    if (any(lessThan(gl_FragCoord.xy, clip.xy)) || any(greaterThan(gl_FragCoord.xy, clip.zw))) {
        discard;
    }
    float coverage = 1.0;
    if (kind != 0u && (kind & 0xffffu) == 0u) {
        // texcoord.y runs across the band in 256ths of a pixel.
        float fromEdge = min(texcoord.y, float(kind >> 16) - texcoord.y) / 256.0;
        coverage = clamp(fromEdge, 0.0, 1.0);
    } else if (kind != 0u) {
        coverage = texelFetch(atlas, ivec2(texcoord), 0).r;
    }
    frag[0] = vec4(tint.rgb, tint.a * coverage);
}
