#version 330 core
// Vertex stage of all node scripts: the quad, with its texture coordinates as the node itself and as
// each of its inputs sees them.
in vec2 uv;
in vec4 vertex;
out vec2 texcoord;
out vec2 texcoord_Input[8];
uniform mat4 textureMatrix;
uniform mat4 textureMatrix_Input[8];

void main() {
    texcoord = (textureMatrix * vec4(uv, 0.0, 1.0)).xy;
    for (int i = 0; i < 8; ++i) {
        texcoord_Input[i] = (textureMatrix_Input[i] * vec4(uv, 0.0, 1.0)).xy;
    }
    gl_Position = vec4(vertex.xy, 0.0, 1.0);
}
