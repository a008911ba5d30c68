#version 330 core
// A broken video signal: coloured bands and blocks over transparent black (premultiplied, made to lie over a picture).
//
//   i = floor(clamp(Intensity, 0, 1) * 100) / 100; i = 0 gives vec4(0) everywhere.
//   hash(co) = fract(sin(dot(co, vec2(12.9898, 78.233) + RandOffset * 10)) * 43758.5453)
//   noise(n, k) = hash(vec2(n, k) * 0.0131 + 0.17), n the row, k the place in the list below.
// Bands: count = floor(StripCount * 30 * i), none at 0. y = fract(texcoord.y + (noise(0, 1) - 0.5) *
//   StripTranslationIntensity * i). Row n = floor(y * count), place in it f = fract(y * count). The row holds a
//   band when noise(n, 2) < StripIntensity * i; it covers f from a = 0.7 * noise(n, 3) to a + 0.1 + 0.5 * noise(n, 4).
// Blocks: count = floor(BlockCount * 30 * i), none at 0. Row n = floor(texcoord.y * count). The row holds a block when
//   noise(n, 6) < BlockIntensity * i; it covers texcoord.x from a = noise(n, 7) * (1 - w) to a + w,
//   w = clamp(BlockWidth, 0, 1) * (0.25 + 0.75 * noise(n, 8)).
// Colour, by c = noise(n, 5) for a band and noise(n, 9) for a block: below 0.25 red, below 0.5 green, below 0.75 blue,
//   else grey 0.7. Blocks lie over bands; alpha is 1 where something is drawn.
uniform float StripCount;
uniform float StripIntensity;
uniform float BlockCount;
uniform float BlockWidth;
uniform float BlockIntensity;
uniform float StripTranslationIntensity;
uniform vec2 RandOffset;
uniform float Intensity;

in vec2 texcoord;
in vec2 texcoord_Input[8];

out vec4 frag[1];

float hash(vec2 co)
{
    return fract(sin(dot(co, vec2(12.9898, 78.233) + RandOffset * 10.0)) * 43758.5453);
}

float noise(float row, float place)
{
    return hash(vec2(row, place) * 0.0131 + 0.17);
}

vec4 signalColor(float c)
{
    if (c < 0.25)
        return vec4(1.0, 0.0, 0.0, 1.0);
    if (c < 0.5)
        return vec4(0.0, 1.0, 0.0, 1.0);
    if (c < 0.75)
        return vec4(0.0, 0.0, 1.0, 1.0);
    return vec4(vec3(0.7), 1.0);
}

void main()
{
    float intensity = floor(clamp(Intensity, 0.0, 1.0) * 100.0) / 100.0;
    vec4 color = vec4(0.0);

    float stripCount = floor(StripCount * 30.0 * intensity);
    if (stripCount >= 1.0) {
        float shift = (noise(0.0, 1.0) - 0.5) * StripTranslationIntensity * intensity;
        float y = fract(texcoord.y + shift) * stripCount;
        float row = floor(y);
        float from = 0.7 * noise(row, 3.0);
        float to = from + 0.1 + 0.5 * noise(row, 4.0);
        if (noise(row, 2.0) < StripIntensity * intensity && fract(y) >= from && fract(y) < to)
            color = signalColor(noise(row, 5.0));
    }

    float blockCount = floor(BlockCount * 30.0 * intensity);
    if (blockCount >= 1.0) {
        float row = floor(texcoord.y * blockCount);
        float width = clamp(BlockWidth, 0.0, 1.0) * (0.25 + 0.75 * noise(row, 8.0));
        float from = noise(row, 7.0) * (1.0 - width);
        if (noise(row, 6.0) < BlockIntensity * intensity && texcoord.x >= from && texcoord.x < from + width)
            color = signalColor(noise(row, 9.0));
    }

    frag[0] = color;
}
