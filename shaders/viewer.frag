#version 330 core
// The picture on show, unchanged.
in vec2 texcoord;
out vec4 frag[1];
uniform sampler2D tex;

void main() {
    frag[0] = texture(tex, texcoord);
}
