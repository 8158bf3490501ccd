uniform sampler2D image;
void main() {
    gl_FragColor = texture(image, gl_TexCoord[0].xy);
}
