// Directions: x points right, y up, z into the screen. The surface of the ball is the unit sphere.

uniform sampler2D image;
uniform samplerCube surroundings;  // the engine replaces it by an equirectangular picture
uniform vec2 size;                 // size of the picture, in pixels
uniform vec2 middle;               // centre of the ball, in pixels from the top left
uniform float radius;              // pixels
uniform int material;              // 1 glass, 2 chrome, 3 pearl
uniform float density;             // refractive index
uniform float reflection;
uniform float exposure;            // stops
uniform float turn;                // degrees
uniform vec4 tint;
uniform float shadow;

const vec3 FORWARD = vec3(0.0, 0.0, 1.0);

vec3 surroundingsAt(vec3 direction) {
    float a = radians(turn);
    vec3 d = vec3(cos(a) * direction.x + sin(a) * direction.z, direction.y, cos(a) * direction.z - sin(a) * direction.x);
    vec3 light = textureCube(surroundings, normalize(d)).rgb;
    return light * exp2(exposure);
}

// Returns the layer's colour along the ray that leaves the ball. The layer is directly behind the ball.
vec4 layerThrough(vec3 point) {
    vec3 inner = refract(FORWARD, point, 1.0 / density);
    vec3 leave = point - 2.0 * dot(point, inner) * inner;
    vec3 outer = refract(inner, -leave, density);
    float far = (3.4 - leave.z) / max(outer.z, 0.15);
    vec2 hit = leave.xy + outer.xy * far;
    return texture2D(image, (middle + radius * vec2(hit.x, -hit.y)) / size);
}

vec4 over(vec4 front, vec4 back, float cover) {
    float f = front.a * cover;
    float b = back.a * (1.0 - f);
    return f + b > 0.0 ? vec4((front.rgb * f + back.rgb * b) / (f + b), f + b) : vec4(0.0);
}

void main() {
    vec2 pixel = gl_TexCoord[0].xy * size;
    vec4 layer = texture2D(image, gl_TexCoord[0].xy);
    vec2 p = (pixel - middle) / radius * vec2(1.0, -1.0);
    float away = length(p);

    vec2 q = (p + vec2(0.10, 0.16)) / 1.12;
    float dark = shadow * smoothstep(1.12, 0.72, length(q));
    vec4 behind = over(vec4(0.0, 0.0, 0.0, 1.0), layer, dark);

    vec3 point = vec3(p, -sqrt(max(1.0 - away * away, 0.0)));
    point = away > 0.999 ? normalize(vec3(p * 0.999 / away, -0.0447)) : point;
    float facing = -point.z;
    float fresnel = pow(1.0 - facing, 5.0);
    vec3 mirrored = surroundingsAt(reflect(FORWARD, point));

    vec4 ball;
    if (material == 1) {
        vec4 through = layerThrough(point);
        vec3 glass = mix(surroundingsAt(vec3(-p * 0.6, 0.8)), through.rgb, through.a) * tint.rgb;
        ball = vec4(mix(glass, mirrored, min(reflection * (0.10 + 0.90 * fresnel), 1.0)), 1.0);
    } else if (material == 2) {
        ball = vec4(mirrored * mix(tint.rgb, vec3(1.0), fresnel) * reflection, 1.0);
    } else {
        vec3 soft = tint.rgb * (0.35 + 0.5 * max(dot(point, normalize(vec3(0.5, 0.6, -0.6))), 0.0));
        vec3 shimmer = 0.06 * cos(6.2832 * (1.6 * facing + vec3(0.0, 0.33, 0.67)));
        ball = vec4(mix(soft + shimmer, mirrored, min(reflection * (0.12 + 0.88 * fresnel), 1.0)), 1.0);
    }
    float edge = clamp((1.0 - away) * radius + 0.5, 0.0, 1.0);
    gl_FragColor = over(ball, behind, edge);
}
