#version 330 core
// Depth of field: the weighted mean over a disc that grows with depth, in which bright samples
// swell. Two discs of whole sizes, the second a ring around the first, stand for one between. The
// odd constants (1980, and two lengths of 16 / 9) are part of the look.
//
// skipNeutral leaves out rows and rings that hold no sample of the disc.
in vec2 texcoord;
out vec4 frag[1];
uniform sampler2D image;
uniform sampler2D position;
uniform float Radius;
uniform float CoC;
uniform bool skipNeutral;

const float Accuracy = 6.0;
const float accuracy = 1.0 + Accuracy / 20.0;
const vec2 samplingWidth = vec2(1.0 / 1980.0, 1.0 / 1080.0) * accuracy;

vec2 _texcoord;
float brightness;  // how much bright samples swell
float weight = 0.0;
vec4 sum = vec4(0.0);

// Rows of whole numbers at x that reach no further than l from the centre, rounded up.
float reach(float l, float x, float stretch) {
    return floor(sqrt(max(l * l - x * x, 0.0)) / stretch) + 1.0;
}

// Adds the samples with hole < l <= size.
void sweep(float size, float hole, float stretch, float factor) {
    for (float x = -size; x < size; x += 1.0) {
        float end = skipNeutral ? min(size, reach(size, x, stretch)) : size;
        float empty = skipNeutral && hole > abs(x) ? reach(hole, x, stretch) - 2.0 : 0.0;
        for (float _y = -end; _y < size && _y <= end; _y += 1.0) {
            if (_y > -empty && _y < empty) _y = empty;
            float y = _y * stretch;
            float l = length(vec2(x, y));
            if (l <= size && l > hole) {
                vec4 color = textureLod(image, _texcoord + vec2(x, y) * samplingWidth, 0.0);
                float avg = (color.r + color.g + color.b) * 0.3333;
                float p = avg > 0.1 ? (avg - 0.1) * 8.0 * brightness : 0.0;
                float w = (1.0 + p * (1.0 + l / size)) * factor;
                weight += w;
                sum += color * w;
            }
        }
    }
}

void main() {
    _texcoord = vec2(texcoord.x, 1.0 - texcoord.y);
    float z = texelFetch(position, ivec2(texcoord * vec2(textureSize(position, 0))), 0).z;
    float d = min(Accuracy * -(z + CoC) / 20.0, 1.0);
    float intensity = Radius * d;
    brightness = clamp(intensity * 3.0, 0.0, 1.0);
    float ff = max(1.0, 15.0 * intensity);
    float fa = floor(ff);
    float fb = ceil(ff);
    sweep(fa, -1.0, 1.777777, 1.0);
    // Without a ring between the two discs, its share is no number.
    if (fb > fa || !skipNeutral) sweep(fb, fa, 1.77777, (ff - fa) / (fb - fa));
    frag[0] = sum / weight;
}
