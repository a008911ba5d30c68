#version 330 core
// The quad of the blur and of what is composed with it: texture coordinates as they stand, and as two
// inputs see them.
in vec2 uv;
in vec4 vertex;
out vec2 texcoord;
out vec2 texcoord_Input[2];
uniform mat4 projectionMatrix;
uniform mat4 textureMatrix_Input[2];

void main() {
    texcoord = uv;
    texcoord_Input[0] = (textureMatrix_Input[0] * vec4(uv, 0.0, 1.0)).xy;
    texcoord_Input[1] = (textureMatrix_Input[1] * vec4(uv, 0.0, 1.0)).xy;
    gl_Position = projectionMatrix * vec4(vertex.xy, 0.0, 1.0);
}
