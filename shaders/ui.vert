#version 330 core
// Every quad of the editor is four texels of `quads`: corners 0 and 1, corners 2 and 3, colour, and
// the packed rest (see UiQuad). Vertex 4 * quad + corner.
uniform mat4 projectionMatrix;
uniform usamplerBuffer quads;

flat out vec4 tint;
flat out vec4 clip;       // left, bottom, right, top in pixels of the target
flat out uint kind;       // 0: flat; width and height in the atlas; or the width of a band
out vec2 texcoord;

ivec2 signedHalves(uint word) {
    int bits = int(word);
    return ivec2((bits << 16) >> 16, bits >> 16);
}

vec2 unsignedHalves(uint word) {
    return vec2(float(word & 0xffffu), float(word >> 16));
}

void main() {
    int first = (gl_VertexID >> 2) * 4;
    int corner = gl_VertexID & 3;
    vec4 pair = uintBitsToFloat(texelFetch(quads, first + (corner >> 1)));
    uvec4 rest = texelFetch(quads, first + 3);
    vec2 place = (corner & 1) == 0 ? pair.xy : pair.zw;
    vec2 textureSize = unsignedHalves(rest.w);
    tint = uintBitsToFloat(texelFetch(quads, first + 2));
    clip = vec4(signedHalves(rest.x), signedHalves(rest.y));
    kind = rest.w;
    texcoord = unsignedHalves(rest.z) + textureSize * vec2(corner & 1, corner >> 1);
    gl_Position = projectionMatrix * vec4(place, 0.0, 1.0);
}
