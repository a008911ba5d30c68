#version 330 core
// A mesh as its camera sees it. Textures lie with their top row at v = 0, meshes count v upwards.
in vec4 vertex;
in vec3 normal;
in vec2 texcoord;
out vec2 uv;
out vec3 eyeNormal;
out vec3 worldNormal;
out vec3 eyePosition;
out vec3 viewDirection;
uniform mat4 cameraMatrix;
uniform mat4 projectionMatrix;
uniform mat4 modelMatrix;
// The two programs that share this stage must agree on every depth.
invariant gl_Position;

void main() {
    uv = vec2(texcoord.x, 1.0 - texcoord.y);
    eyeNormal = normalize((cameraMatrix * modelMatrix * vec4(normalize(normal), 0.0)).xyz);
    worldNormal = (modelMatrix * vec4(normal, 0.0)).xyz;
    vec4 worldPos = modelMatrix * vec4(vertex.xyz, 1.0);
    eyePosition = (cameraMatrix * worldPos).xyz;
    viewDirection = -eyePosition;
    gl_Position = projectionMatrix * vec4(eyePosition, 1.0);
}
