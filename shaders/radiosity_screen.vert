#version 330 core
// The quad of the screen-space passes. The projection turns it upside down, so that what they draw
// lies with the top of the picture in the first row.
in vec2 uv;
in vec4 vertex;
out vec2 texcoord;
uniform mat4 projectionMatrix;

void main() {
    texcoord = uv;
    gl_Position = projectionMatrix * vec4(vertex.xy, 0.0, 1.0);
}
