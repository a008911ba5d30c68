#version 330 core
// One picture, unchanged.
in vec2 texcoord;
out vec4 frag[1];
uniform sampler2D image;

void main() {
    frag[0] = texture(image, texcoord);
}
