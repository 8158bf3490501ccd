uniform sampler2D image;

void main() {
    // texture2D(image, a comment is no read)
    vec2 at = gl_TexCoord[0].xy;
    gl_FragColor = mix(texture2D(image, at),texture2D(image, 1.0 - at), 0.5);
}
