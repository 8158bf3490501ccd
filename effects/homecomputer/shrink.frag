// Averages each block of the picture into one pixel and adjusts its colours for the palette.

uniform sampler2D image;
uniform vec2 block;        // size of a block, in texture coordinates
uniform float taps;        // samples along each side of a block
uniform float brightness;  // added to every colour
uniform float contrast;    // 1 changes nothing
uniform float saturation;  // 1 changes nothing, 0 is grey
uniform float lift;        // added last; the result may leave 0..1

void main() {
    vec2 corner = gl_TexCoord[0].xy - 0.5 * block;
    vec4 sum = vec4(0.0);
    for (float y = 0.5; y < taps; y += 1.0) {
        for (float x = 0.5; x < taps; x += 1.0) {
            vec4 colour = texture2D(image, corner + block * vec2(x, y) / taps);
            sum += vec4(colour.rgb * colour.a, colour.a);
        }
    }
    vec3 colour = sum.a > 0.0 ? clamp(sum.rgb / sum.a, 0.0, 1.0) : vec3(0.0);
    float grey = dot(colour, vec3(0.299, 0.587, 0.114));
    colour = mix(vec3(grey), colour, saturation);
    colour = clamp((colour - 0.5) * contrast + 0.5 + brightness, 0.0, 1.0);
    // The pixel is opaque like every colour of a palette, because the search for the nearest colour compares alpha, too.
    gl_FragColor = vec4(colour + lift, 1.0);
}
