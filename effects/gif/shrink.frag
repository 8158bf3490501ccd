// Averages each block of the picture into one opaque pixel.

uniform sampler2D image;
uniform vec2 block;   // size of a block, in texture coordinates
uniform float taps;   // samples along each side of a block
uniform float lift;   // added to every colour

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
    gl_FragColor = vec4(colour + lift, 1.0);
}
