#version 330 core
// A slice in colour.
in vec2 texcoord;
out vec4 frag[1];

uniform sampler2D slide;
uniform vec4 color;

void main() {
    frag[0] = texture(slide, texcoord) * color;
}
