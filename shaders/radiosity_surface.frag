#version 330 core
// What a surface looks like: its own colour, its light, and its environment in it. Writes colour,
// normal, position, illumination and reflection; with ADDITIVE defined only the colour, reflection
// and all. The environment is a latitude-longitude map. A direction in eye space is reflected about
// a normal in world space, and pictures are made with that.
in vec2 uv;
in vec3 eyeNormal;
in vec3 worldNormal;
in vec3 eyePosition;
in vec3 viewDirection;
uniform sampler2D diffuseTexture;
uniform sampler2D illuminationTexture;
uniform sampler2D reflectionTexture;
uniform float diffuseIntensity;
uniform float illuminationIntensity;
uniform float reflectionIntensity;
uniform float reflectionFresnel;
uniform vec4 illuminationColor;
#ifdef ADDITIVE
out vec4 frag[1];
#else
out vec4 frag[5];
#endif

const float PI = 3.14159265;
const float PI2 = 6.28318531;

vec2 environmentPlace(vec3 r) {
    return vec2(0.5 + atan(r.x, r.z) / PI2, 0.5 + atan(r.y, sqrt(r.x * r.x + r.z * r.z)) / PI);
}

// Where the map closes, its left edge follows its right one; that is no leap, and must not choose the
// smallest mipmap.
vec3 environment(vec2 place) {
    vec2 alongX = dFdx(place), alongY = dFdy(place);
    alongX.x -= round(alongX.x);
    alongY.x -= round(alongY.x);
    return textureGrad(reflectionTexture, place, alongX, alongY).rgb;
}

void main() {
    vec3 viewDir = normalize(viewDirection);
    vec3 worldNorm = normalize(worldNormal);
    vec3 reflectionDirection = normalize(reflect(viewDir, worldNorm));
    vec2 envTexCoord = environmentPlace(reflectionDirection);
    vec3 envColor = environment(envTexCoord) * reflectionIntensity;
    vec3 diffColor = texture(diffuseTexture, uv).rgb * diffuseIntensity;
    vec3 illumColor = texture(illuminationTexture, uv).rgb * illuminationIntensity;

    float illuma = dot(illumColor, vec3(0.299, 0.587, 0.114));
    float incident = clamp(dot(eyeNormal, viewDir), 0.0, 1.0);
    float fresnel = pow(1.0 - incident, reflectionFresnel);
    illuma *= pow(incident, reflectionFresnel * 2.0) * 0.2 + 0.8;
    fresnel *= 1.0 - clamp(illuma, 0.0, 1.0);
    float own = 1.0 - fresnel * reflectionIntensity;
    diffColor += illumColor * own * illuminationColor.rgb;
    vec3 color = diffColor * own;

#ifdef ADDITIVE
    frag[0] = vec4(color + envColor * fresnel, 1.0);
#else
    frag[0] = vec4(color, 1.0);
    frag[1] = vec4(eyeNormal, 1.0);
    frag[2] = vec4(eyePosition, 1.0);
    frag[3] = vec4(illumColor * illuminationColor.rgb, 0.0);
    frag[4] = vec4(envColor * fresnel, 0.0);
#endif
}
