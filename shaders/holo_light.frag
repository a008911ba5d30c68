#version 330 core
// The light of the balls on a level plane, fading towards a circle's rim.
out vec4 frag[1];

uniform float pixel;  // in texture coordinates
uniform float dimension;
uniform vec3 layerCenter;
uniform vec4 lballs[20];

void main() {
    vec2 texcoord = gl_FragCoord.xy * pixel;
    vec2 p = (texcoord * 2.0 - 1.0) * dimension;
    vec3 position = layerCenter + vec3(p.x, 0.0, p.y);
    float scalar = 0.0;
    for (int i = 0; i < 20; ++i)
        scalar += lballs[i].w / max(0.001, length(lballs[i].xyz - position));
    frag[0] = vec4(scalar * max(0.0, 1.0 - 2.0 * length(texcoord - vec2(0.5))));
}
