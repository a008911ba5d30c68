#version 330 core
// One moment of a picture, blended into the mean of all of them.
in vec2 texcoord;
out vec4 frag[1];
uniform sampler2D tex;

void main() {
    frag[0] = texture(tex, texcoord);
}
