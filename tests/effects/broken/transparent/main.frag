uniform sampler2D image;
void main() {
    gl_FragColor = texture2D(image, gl_TexCoord[0].xy) * vec4(1.0, 1.0, 1.0, 0.0);
}
