#version 330 core
// A layer of a scene: the quad laid into a rectangle of clip space.
in vec2 uv;
out vec2 texcoord;
out vec2 vtpos;             // place in the target, 0 to 1
uniform vec4 rect;          // clip space: where uv is (0, 0), and where it is (1, 1)
uniform mat4 textureMatrix;

void main() {
    vec2 place = mix(rect.xy, rect.zw, uv);
    texcoord = (textureMatrix * vec4(uv, 0.0, 1.0)).xy;
    vtpos = place * 0.5 + 0.5;
    gl_Position = vec4(place, 0.0, 1.0);
}
