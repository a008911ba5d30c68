#version 330 core
// The outline of a slice: a Sobel filter over its brightness.
in vec2 texcoord;
out vec4 frag[1];

uniform sampler2D slide;
uniform float edgeStep;  // in texture coordinates
uniform float brightness;
uniform vec4 color;

float intensity(float x, float y) {
    vec3 c = texture(slide, texcoord + vec2(x, y) * edgeStep).xyz;
    return sqrt(c.x * c.x + c.y * c.y + c.z * c.z);
}

void main() {
    float tleft = intensity(-1.0, 1.0);
    float left = intensity(-1.0, 0.0);
    float bleft = intensity(-1.0, -1.0);
    float top = intensity(0.0, 1.0);
    float bottom = intensity(0.0, -1.0);
    float tright = intensity(1.0, 1.0);
    float right = intensity(1.0, 0.0);
    float bright = intensity(1.0, -1.0);
    float x = tleft + 2.0 * left + bleft - tright - 2.0 * right - bright;
    float y = -tleft - 2.0 * top - tright + bleft + 2.0 * bottom + bright;
    float sofac = sqrt(x * x + y * y) * brightness;
    frag[0] = vec4(color.rgb * sofac, sofac);
}
