#version 330 core
// The quad as it stands, with texture coordinates as the first input sees them.
in vec2 uv;
in vec4 vertex;
out vec2 texcoord;
uniform mat4 textureMatrix_Input[8];

void main() {
    texcoord = (textureMatrix_Input[0] * vec4(uv, 0.0, 1.0)).xy;
    gl_Position = vec4(vertex.xy, 0.0, 1.0);
}
