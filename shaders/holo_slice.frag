#version 330 core
// A slice through the field of the balls: 1 where it is above the threshold.
out vec4 frag[1];

uniform float pixel;  // in texture coordinates
uniform float dimension;
uniform vec3 layerCenter;
uniform float threshold;
uniform vec4 balls[20];

void main() {
    vec2 texcoord = gl_FragCoord.xy * pixel;
    vec3 position = layerCenter + vec3((texcoord * 2.0 - 1.0) * dimension, 0.0);
    float scalar = 0.0;
    for (int i = 0; i < 20; ++i)
        scalar += balls[i].w / max(0.001, length(balls[i].xyz - position));
    frag[0] = vec4(scalar > threshold ? 1.0 : 0.0);
}
