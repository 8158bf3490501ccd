// Adds the light to the layer. Outside the layer the alpha comes from the light.

uniform sampler2D image;
uniform sampler2D light;
uniform vec2 scale;       // factor from output coordinates to layer coordinates
uniform vec2 offset;
uniform float intensity;
uniform int source;       // 1 bright areas, 2 whole shape

void main() {
    vec2 place = gl_TexCoord[0].xy * scale + offset;
    vec2 inside = step(vec2(0.0), place) * step(place, vec2(1.0));
    vec4 layer = texture2D(image, place) * inside.x * inside.y;
    vec3 glow = intensity * texture2D(light, gl_TexCoord[0].xy).rgb;
    if (source == 2) {
        glow *= 1.0 - layer.a; // the light of a shape is drawn behind the shape
    }
    float shine = min(max(glow.r, max(glow.g, glow.b)), 1.0);
    float alpha = layer.a + (1.0 - layer.a) * shine;
    // Bright areas receive less light, so that details in white areas stay visible.
    vec3 sum = layer.rgb * layer.a + glow * max(1.0 - 0.8 * layer.rgb * layer.a, 0.0);
    gl_FragColor = alpha > 0.0 ? vec4(sum / alpha, alpha) : vec4(0.0);
}
