#version 330 core
// A picture and its halo on top. Both are read upside down: the quad is drawn so.
in vec2 texcoord;
in vec2 texcoord_Input[2];
out vec4 frag[1];

uniform sampler2D image;
uniform sampler2D blurImage;
uniform float blurIntensity;

void main() {
    vec4 color = texture(image, vec2(texcoord_Input[0].x, 1.0 - texcoord_Input[0].y));
    vec4 blur = texture(blurImage, vec2(texcoord.x, 1.0 - texcoord.y));
    frag[0] = color + blur * blurIntensity;
}
