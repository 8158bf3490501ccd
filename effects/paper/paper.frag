uniform sampler2D image;
uniform sampler2D sheet;  // height of the paper; mid grey is the mean height
uniform vec2 size;        // size of the picture, in pixels
uniform vec2 tile;        // size of the sheet, in pixels
uniform vec4 colour;
uniform float grain;
uniform float relief;
uniform float light;      // degrees, clockwise from above
uniform float margin;     // width of the bare margin, in pixels
uniform float fade;
uniform bool behind;      // true fills the frame with paper; otherwise the paper ends with the layer

float heightAt(vec2 pixel) {
    return texture2D(sheet, pixel / tile).r;
}

void main() {
    vec2 pixel = gl_TexCoord[0].xy * size;
    vec4 layer = texture2D(image, gl_TexCoord[0].xy);
    float height = heightAt(pixel);

    // The light comes from the side, so the slope towards it gives the brightness.
    vec2 toLight = vec2(sin(radians(light)), -cos(radians(light))) * tile.x / 256.0;
    float slope = height - heightAt(pixel + toLight);
    vec3 bare = colour.rgb * clamp(1.0 + 0.35 * grain * (height - 0.5) + 1.2 * relief * slope, 0.0, 1.3);

    // The pigment is faded. It is missing on the highest grains and along the ragged edge.
    vec3 pigment = mix(layer.rgb, 0.12 + 0.82 * layer.rgb, fade);
    vec2 inner = min(pixel, size - pixel);
    float ragged = margin * (0.6 + 1.4 * (heightAt(pixel * 0.23) - 0.35) + 0.5 * (height - 0.5));
    float printed = margin > 0.0 ? smoothstep(-1.5, 1.5, min(inner.x, inner.y) - ragged) : 1.0;
    float held = clamp(1.0 - 0.9 * grain * smoothstep(0.60, 0.95, height), 0.0, 1.0);
    float inked = printed * held * (behind ? layer.a : 1.0);
    gl_FragColor = vec4(bare * mix(vec3(1.0), pigment, inked), behind ? 1.0 : layer.a);
}
