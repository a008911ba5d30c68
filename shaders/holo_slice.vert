#version 330 core
// A part of a slice, given in texture coordinates: left, low, right, high.
in vec2 uv;
in vec4 vertex;
uniform vec4 part;

void main() {
    gl_Position = vec4(mix(part.xy, part.zw, uv) * 2.0 - 1.0, 0.0, 1.0);
}
