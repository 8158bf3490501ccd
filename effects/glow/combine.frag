// The layer with its light added. Where the layer is not, the light brings its own alpha.

uniform sampler2D image;
uniform sampler2D light;
uniform vec2 scale;       // from the output's coordinates to the layer's
uniform vec2 offset;
uniform float intensity;
uniform int source;       // 1 bright areas, 2 whole shape

void main() {
    vec2 place = gl_TexCoord[0].xy * scale + offset;
    vec2 inside = step(vec2(0.0), place) * step(place, vec2(1.0));
    vec4 layer = texture2D(image, place) * inside.x * inside.y;
    vec3 glow = intensity * texture2D(light, gl_TexCoord[0].xy).rgb;
    if (source == 2) {
        glow *= 1.0 - layer.a; // the shape's own light stays behind it
    }
    float shine = min(max(glow.r, max(glow.g, glow.b)), 1.0);
    float alpha = layer.a + (1.0 - layer.a) * shine;
    // Bright areas take up less light, so that white does not swallow everything.
    vec3 sum = layer.rgb * layer.a + glow * max(1.0 - 0.8 * layer.rgb * layer.a, 0.0);
    gl_FragColor = alpha > 0.0 ? vec4(sum / alpha, alpha) : vec4(0.0);
}
