#version 330 core
// A part of a slice as a square in space, upright; its texture lies with v downwards.
in vec2 uv;
in vec4 vertex;
out vec2 texcoord;

uniform vec4 part;  // left, low, right, high in texture coordinates
uniform float halfSize;
uniform float scaleHolo;
uniform vec3 layerCenter;
uniform mat4 viewMatrix;
uniform mat4 projectionMatrix;

void main() {
    texcoord = mix(part.xy, part.zw, uv);
    vec2 place = vec2(2.0 * texcoord.x - 1.0, 1.0 - 2.0 * texcoord.y) * halfSize;
    gl_Position = projectionMatrix * viewMatrix *
        vec4(place * scaleHolo + layerCenter.xy, layerCenter.z, 1.0);
}
