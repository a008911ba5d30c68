#version 330 core
// A layer that brightens what lies behind it, by colour dodge; it is not blended but reads the layers
// behind it as they were before.
in vec2 texcoord;
in vec2 vtpos;
out vec4 frag[2];  // colour, neon
uniform sampler2D image;         // premultiplied
uniform sampler2D neon;          // the same picture for a neon layer, else black
uniform sampler2D maskedEffect;  // shown through mask layers
uniform sampler2D background;
uniform sampler2D backgroundNeon;
uniform float alpha;
uniform float neonIntensity;
uniform float maskedEffectIntensity;

float dodge(float base, float blend) {
    return blend == 1.0 ? blend : min(base / (1.0 - blend), 1.0);
}

vec3 dodge(vec3 base, vec3 blend, float opacity) {
    vec3 bright = vec3(dodge(base.r, blend.r), dodge(base.g, blend.g), dodge(base.b, blend.b));
    return bright * opacity + base * (1.0 - opacity);
}

void main() {
    vec4 col = texture(image, texcoord);
    vec4 ncol = texture(neon, texcoord);
    vec4 fx = texture(maskedEffect, texcoord) * (maskedEffectIntensity * col.a);
    // The neon behind is read through the layer's own coordinates: wanted, the glow of scenes is
    // tuned to it.
    vec4 bgcol = texture(background, vtpos);
    vec4 bgneon = texture(backgroundNeon, texcoord);
    col *= alpha;
    col.rgb = dodge(bgcol.rgb, col.rgb, col.a);
    frag[0] = mix(col, fx, maskedEffectIntensity);
    vec4 glow = vec4(vec3((ncol.r + ncol.g + ncol.b) * neonIntensity / 3.0) * col.a, col.a);
    frag[1] = vec4(dodge(bgneon.rgb, glow.rgb, alpha), glow.a);
}
