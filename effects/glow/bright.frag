// Returns the areas that glow, in the tint: bright areas or the whole shape of the layer. The rest is black.

uniform sampler2D image;
uniform vec2 scale;       // factor from output coordinates to layer coordinates
uniform vec2 offset;
uniform int source;       // 1 bright areas, 2 whole shape
uniform float threshold;
uniform vec4 tint;

void main() {
    vec2 place = gl_TexCoord[0].xy * scale + offset;
    vec2 inside = step(vec2(0.0), place) * step(place, vec2(1.0));
    vec4 colour = texture2D(image, place);
    float brightness = max(colour.r, max(colour.g, colour.b));
    vec3 glow = source == 2 ? vec3(1.0) : colour.rgb * smoothstep(threshold - 0.1, threshold + 0.1, brightness);
    // A half transparent pixel glows half as much.
    gl_FragColor = vec4(glow * tint.rgb * colour.a * inside.x * inside.y, 1.0);
}
