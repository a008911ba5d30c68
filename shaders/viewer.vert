#version 330 core
// The quad, with the texture coordinates of the picture on show.
in vec2 uv;
in vec4 vertex;
out vec2 texcoord;
uniform mat4 projectionMatrix;
uniform mat4 textureMatrix;

void main() {
    texcoord = (textureMatrix * vec4(uv, 0.0, 1.0)).xy;
    gl_Position = projectionMatrix * vec4(vertex.xy, 0.0, 1.0);
}
