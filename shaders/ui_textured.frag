#version 330 core
// A picture, multiplied by the current colour.
uniform sampler2D tex;

flat in vec4 tint;
flat in vec4 clip;
in vec2 texcoord;
out vec4 frag[1];

void main() {
    vec4 picture = texture(tex, texcoord);
    if (any(lessThan(gl_FragCoord.xy, clip.xy)) || any(greaterThan(gl_FragCoord.xy, clip.zw))) {
        discard;
    }
    frag[0] = picture * tint;
}
