#version 330 core
// A slice as a level square in space.
in vec2 uv;
in vec4 vertex;
out vec2 texcoord;

uniform float halfSize;
uniform vec3 layerCenter;
uniform mat4 viewMatrix;
uniform mat4 projectionMatrix;

void main() {
    texcoord = uv;
    vec2 place = vec2(2.0 * uv.x - 1.0, 1.0 - 2.0 * uv.y) * halfSize;
    gl_Position = projectionMatrix * viewMatrix *
        vec4(vec3(place.x, 0.0, place.y) + layerCenter, 1.0);
}
