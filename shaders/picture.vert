#version 330 core
// The quad as it stands: its corners fill the target.
in vec2 uv;
in vec4 vertex;
out vec2 texcoord;

void main() {
    texcoord = uv;
    gl_Position = vec4(vertex.xy, 0.0, 1.0);
}
