#version 330 core
// A layer as it is blended over the layers behind it: its colour, and what of it glows.
in vec2 texcoord;
out vec4 frag[2];  // colour, neon
uniform sampler2D image;         // premultiplied
uniform sampler2D neon;          // the same picture for a neon layer, else black
uniform sampler2D maskedEffect;  // shown through mask layers
uniform float alpha;
uniform float neonIntensity;
uniform float maskedEffectIntensity;

void main() {
    vec4 col = texture(image, texcoord);
    vec4 ncol = texture(neon, texcoord);
    vec4 fx = texture(maskedEffect, texcoord) * (maskedEffectIntensity * col.a);
    col *= alpha;
    frag[0] = mix(col, fx, maskedEffectIntensity);
    float nint = max(neonIntensity, maskedEffectIntensity);
    frag[1] = vec4(vec3((ncol.r + ncol.g + ncol.b) * nint / 3.0) * col.a, col.a);
}
