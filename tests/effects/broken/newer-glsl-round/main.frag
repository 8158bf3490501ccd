uniform sampler2D image;
void main() {
    gl_FragColor = round(texture2D(image, gl_TexCoord[0].xy) * 4.0) / 4.0;
}
